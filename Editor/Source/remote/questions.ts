// What is asked before remote work: a revision, a branch, a place.

import * as vscode from 'vscode';
import type { WorkingCopy } from '../model/workingCopy';
import { succeeded } from '../server/failures';
import type { Place } from '../server/protocol';
import type { Services } from '../services';

const offeredRevisions = 50;

/** A revision from the newest ones of a place, or one that is typed. */
export async function askRevision(
  services: Services,
  place: Place,
  current?: number,
): Promise<number | undefined> {
  const log = succeeded(
    await services.server.request('history/log', {
      ...place,
      from: 'HEAD',
      limit: offeredRevisions,
    }),
  );
  const other = {
    label: `$(edit) ${vscode.l10n.t('Another revision...')}`,
    revision: -1,
    description: '',
  };
  const entries = log.entries.map(({ revision, author, message }) => ({
    label: `r${revision}${revision === current ? ' $(check)' : ''}`,
    description: author ?? '',
    detail: message?.split('\n', 1)[0] ?? '',
    revision,
  }));
  const chosen = await vscode.window.showQuickPick([...entries, other], {
    title: vscode.l10n.t('Which revision?'),
    matchOnDescription: true,
    matchOnDetail: true,
  });
  return chosen?.revision === -1 ? typedRevision() : chosen?.revision;
}

async function typedRevision(): Promise<number | undefined> {
  const typed = await vscode.window.showInputBox({
    title: vscode.l10n.t('Revision'),
    ignoreFocusOut: true,
    validateInput: (text) =>
      /^\d+$/.test(text) ? undefined : vscode.l10n.t('A revision is a number, such as 12.'),
  });
  return typed === undefined ? undefined : Number(typed);
}

/** The URL of a branch: one that the repository's layout names, or one that is typed. */
export async function askBranch(
  services: Services,
  copy: WorkingCopy,
  title: string,
): Promise<string | undefined> {
  const { branches } = succeeded(
    await services.server.request('branch/list', { workingCopy: copy.path }),
  );
  const other = { label: `$(edit) ${vscode.l10n.t('Another URL...')}`, url: '' };
  const chosen = await vscode.window.showQuickPick(
    [
      ...branches.map((branch) => ({
        label: branch.name,
        description: branch.url === copy.facts.url ? vscode.l10n.t('current') : '',
        url: branch.url,
      })),
      other,
    ],
    { title },
  );
  return chosen?.url === '' ? askUrl(title, copy.facts.url) : chosen?.url;
}

export function askUrl(title: string, value = ''): Thenable<string | undefined> {
  return vscode.window.showInputBox({
    title,
    value,
    ignoreFocusOut: true,
    prompt: vscode.l10n.t(
      'The URL of a directory in the repository, such as svn://host/project/trunk',
    ),
    validateInput: (text) =>
      text.includes('://')
        ? undefined
        : vscode.l10n.t('A URL starts with svn://, http://, https://, svn+ssh:// or file://.'),
  });
}
