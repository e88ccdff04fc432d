// What is done seldom: import, copies with history, relocation, new words for an old message.

import * as vscode from 'vscode';
import { command } from '../commands';
import { isHistoryNode } from '../history/nodes';
import type { HistoryView } from '../history/historyView';
import type { WorkingCopy } from '../model/workingCopy';
import type { Services } from '../services';
import { copyFrom, urisFrom, type Argument } from '../targets';
import type { SourceControls } from '../view/sourceControls';
import { perform } from '../work';
import { askUrl } from './questions';

export function registerUpkeep(
  services: Services,
  controls: SourceControls,
  history: HistoryView,
): vscode.Disposable {
  return vscode.Disposable.from(
    command('quen.copyTo', async (...args: Argument[]) => {
      const [uri] = urisFrom(controls, args);
      if (uri) await copyTo(services, uri);
    }),
    command('quen.import', (...args: Argument[]) => importFolder(services, args)),
    command('quen.relocate', async (...args: Argument[]) => {
      const copy = await copyFrom(services, controls, args);
      if (copy) await relocate(services, copy);
    }),
    command('quen.history.editMessage', async (node: unknown) => {
      if (!isHistoryNode(node) || node.kind !== 'entry') return;
      const { entry, source } = node;
      const message = await askMessage(
        vscode.l10n.t('Message of revision {0}', entry.revision),
        entry.message ?? '',
      );
      if (message === undefined || message === entry.message) return;
      const work = { title: vscode.l10n.t('Changing the message'), isLong: true };
      const url = source.repositoryRoot;
      await perform(services, work, 'history/setMessage', {
        url,
        revision: entry.revision,
        message,
      });
      history.refresh();
    }),
  );
}

/** One line in a box; a message of several lines in an editor. */
async function askMessage(title: string, value: string): Promise<string | undefined> {
  if (!value.trim().includes('\n')) {
    return vscode.window.showInputBox({ title, value: value.trim(), ignoreFocusOut: true });
  }
  const document = await vscode.workspace.openTextDocument({ content: value });
  await vscode.window.showTextDocument(document);
  const use = vscode.l10n.t('Use This Text');
  const answer = await vscode.window.showInformationMessage(title, use);
  return answer === use ? document.getText() : undefined;
}

async function copyTo(services: Services, uri: vscode.Uri): Promise<void> {
  const copy = services.copies.of(uri);
  if (!copy) return;
  const to = await vscode.window.showSaveDialog({
    title: vscode.l10n.t('Copy with history to'),
    defaultUri: uri,
    saveLabel: vscode.l10n.t('Copy'),
  });
  if (!to) return;
  const work = { title: vscode.l10n.t('Copying'), copy, isLong: true };
  await perform(services, work, 'change/copy', { from: uri.path, to: to.path });
}

async function importFolder(services: Services, args: readonly Argument[]): Promise<void> {
  const [argument] = args;
  const [folder] =
    argument instanceof vscode.Uri
      ? [argument]
      : ((await vscode.window.showOpenDialog({
          title: vscode.l10n.t('Import which folder?'),
          canSelectFiles: false,
          canSelectFolders: true,
          openLabel: vscode.l10n.t('Import'),
        })) ?? []);
  if (!folder) return;
  const url = await askUrl(vscode.l10n.t('Import to which URL?'));
  if (url === undefined) return;
  const message = await askMessage(vscode.l10n.t('Commit message'), vscode.l10n.t('Import'));
  if (message === undefined) return;
  const work = { title: vscode.l10n.t('Importing'), isLong: true };
  const params = { path: folder.path, url, message };
  const { revision } = await perform(services, work, 'repository/import', params);
  const done = vscode.l10n.t('Imported as revision {0}', revision ?? '?');
  vscode.window.setStatusBarMessage(`$(check) ${done}`, 10_000);
}

async function relocate(services: Services, copy: WorkingCopy): Promise<void> {
  const title = vscode.l10n.t('Where is {0} now?', copy.facts.url);
  const url = await askUrl(title, copy.facts.url);
  if (url === undefined || url === copy.facts.url) return;
  const work = { title: vscode.l10n.t('Relocating'), copy, isLong: true };
  await perform(services, work, 'workingCopy/relocate', { workingCopy: copy.path, url });
  await services.copies.refreshFacts(copy);
}
