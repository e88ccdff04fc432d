// A file in conflict in the merge editor: what both sides made of what they started from.

import * as vscode from 'vscode';
import { openMergeEditor } from '../proposed';
import { succeeded } from '../server/failures';
import type { Info } from '../server/protocol';
import type { Services } from '../services';

/**
 * Opens both sides of a conflict, which the client has laid beside the file: texts in the merge
 * editor, properties in the client's own words. Answers whether there was something to open.
 */
export async function openConflict(services: Services, uri: vscode.Uri): Promise<boolean> {
  const answer = await services.server.request('workingCopy/info', { paths: [uri.path] });
  const [info] = succeeded(answer).items;
  const conflict = info?.conflicts.find(({ kind }) => kind === 'text');
  if (!conflict?.base || !conflict.theirs) return openProperties(info);
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

async function openProperties(info: Info | undefined): Promise<boolean> {
  const words = info?.conflicts.find(({ properties }) => properties)?.properties;
  if (!words) return false;
  await vscode.commands.executeCommand('vscode.open', vscode.Uri.file(words), { preview: true });
  return true;
}
