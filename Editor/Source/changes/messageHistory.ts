import * as vscode from 'vscode';
import type { WorkingCopy } from '../model/workingCopy';

const keptMessages = 30;

function keyOf(copy: WorkingCopy): string {
  return `messages:${copy.path}`;
}

export function messagesOf(context: vscode.ExtensionContext, copy: WorkingCopy): readonly string[] {
  return context.workspaceState.get<string[]>(keyOf(copy), []);
}

/** Keeps a message, the newest first, each once. */
export async function keepMessage(
  context: vscode.ExtensionContext,
  copy: WorkingCopy,
  message: string,
): Promise<void> {
  const others = messagesOf(context, copy).filter((known) => known !== message);
  await context.workspaceState.update(keyOf(copy), [message, ...others].slice(0, keptMessages));
}

/** Lets the person take an earlier message into the box. */
export async function pickMessage(
  context: vscode.ExtensionContext,
  copy: WorkingCopy,
  box: vscode.SourceControlInputBox,
): Promise<void> {
  const messages = messagesOf(context, copy);
  if (messages.length === 0) {
    void vscode.window.showInformationMessage(vscode.l10n.t('There are no earlier messages yet.'));
    return;
  }
  const chosen = await vscode.window.showQuickPick(
    messages.map((message) => ({ label: firstLine(message), detail: rest(message), message })),
    { title: vscode.l10n.t('Earlier commit messages'), matchOnDetail: true },
  );
  if (chosen) box.value = chosen.message;
}

function firstLine(message: string): string {
  return message.split('\n', 1)[0] ?? '';
}

function rest(message: string): string {
  return message.split('\n').slice(1).join(' ').trim();
}
