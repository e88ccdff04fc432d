// How a person is told that something went wrong: what, where, and what to do.

import * as vscode from 'vscode';
import { Cancelled, OperationFailed, ServerUnavailable } from './server/failures';

let channel: vscode.LogOutputChannel | undefined;

export function reportTo(log: vscode.LogOutputChannel): void {
  channel = log;
}

/** Logs the error and tells it; resolves when the message was answered or went away. */
export async function report(error: unknown): Promise<void> {
  if (error instanceof Cancelled) {
    if (error.mayHaveLeftLock) await tellLeftLock();
  } else if (error instanceof OperationFailed) {
    channel?.error(fullText(error));
    await tellFailure(error);
  } else {
    const text = error instanceof Error ? error.message : String(error);
    channel?.error(text);
    // A missing server has a welcome view and an entry in the status bar.
    if (!(error instanceof ServerUnavailable)) await tell(text, []);
  }
}

/** For work that no person asked for: the log has it, and the status bar where it matters. */
export function reportQuietly(error: unknown): void {
  if (error instanceof OperationFailed) channel?.warn(fullText(error));
  else channel?.warn(error instanceof Error ? error.message : String(error));
}

interface Action {
  readonly title: string;
  readonly command: string;
}

function signIn(): Action {
  return { title: vscode.l10n.t('Sign In'), command: 'quen.signIn' };
}

function cleanUp(): Action {
  return { title: vscode.l10n.t('Clean Up'), command: 'quen.cleanUp' };
}

function actionsFor(error: OperationFailed): Action[] {
  if (error.failure === 'notAuthorised') return [signIn()];
  if (error.failure === 'locked') return [cleanUp()];
  return [];
}

async function tellFailure(error: OperationFailed): Promise<void> {
  if (error.failure === 'cancelled') return;
  const suggestion = error.error?.suggestion;
  const said = error.error?.description ?? failureInWords(error.failure);
  await tell(suggestion ? `${said} ${suggestion}` : said, actionsFor(error));
}

async function tellLeftLock(): Promise<void> {
  const text = vscode.l10n.t('The cancelled command may have left the working copy locked.');
  await tell(text, [cleanUp()]);
}

async function tell(text: string, actions: readonly Action[]): Promise<void> {
  const showLog: Action = { title: vscode.l10n.t('Show Log'), command: 'quen.showLog' };
  const all = [...actions, showLog];
  const chosen = await vscode.window.showErrorMessage(text, ...all.map((action) => action.title));
  const action = all.find((candidate) => candidate.title === chosen);
  if (action) await vscode.commands.executeCommand(action.command);
}

function failureInWords(failure: OperationFailed['failure']): string {
  switch (failure) {
    case 'timedOut':
      return vscode.l10n.t('Subversion took longer than the limit and was ended.');
    case 'fellSilent':
      return vscode.l10n.t('Subversion wrote nothing for too long and was ended.');
    case 'couldNotStart':
      return vscode.l10n.t('Subversion could not be started.');
    case 'killed':
      return vscode.l10n.t('Subversion was ended by a signal.');
    case 'offline':
      return vscode.l10n.t('The repository could not be reached.');
    case 'notAuthorised':
      return vscode.l10n.t('The repository wants you to sign in.');
    case 'untrusted':
      return vscode.l10n.t('The certificate of the repository is not trusted.');
    case 'locked':
      return vscode.l10n.t('The working copy is locked.');
    case 'cancelled':
      return vscode.l10n.t('Cancelled.');
    case 'other':
      return vscode.l10n.t('Subversion failed.');
  }
}

function fullText(error: OperationFailed): string {
  const { error: said, failure } = error;
  const lines = [`${failure}: ${said?.description ?? ''}`, ...(said?.causes ?? [])];
  if (said?.clientText) lines.push(said.clientText);
  return lines.join('\n');
}
