// A file in conflict in the merge editor: what both sides made of what they started from.

import * as vscode from 'vscode';
import { openMergeEditor } from '../proposed';
import { succeeded } from '../server/failures';
import type { Services } from '../services';

/** Answers whether there was something to merge: the client lays it beside a conflict in the text. */
export async function openConflict(services: Services, uri: vscode.Uri): Promise<boolean> {
  const answer = await services.server.request('workingCopy/info', { paths: [uri.path] });
  const [info] = succeeded(answer).items;
  const conflict = info?.conflicts.find(({ kind }) => kind === 'text');
  if (!conflict?.base || !conflict.theirs) return false;
  const mine = conflict.mine ?? uri.path;
  return openMergeEditor({
    base: vscode.Uri.file(conflict.base),
    theirs: {
      uri: vscode.Uri.file(conflict.theirs),
      title: vscode.l10n.t('Theirs'),
      description: vscode.l10n.t('from the repository'),
    },
    mine: {
      uri: vscode.Uri.file(mine),
      title: vscode.l10n.t('Mine'),
      description: vscode.l10n.t('before the conflict'),
    },
    output: uri,
  });
}
