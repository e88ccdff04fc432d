import * as vscode from 'vscode';
import { command } from '../commands';
import { compare, name } from '../content/comparisons';
import { emptyUri, revisionUri } from '../content/revisionUri';
import { copyName } from '../model/workingCopy';
import { succeeded } from '../server/failures';
import type { LogEntry, Place } from '../server/protocol';
import type { Services } from '../services';
import { copyFrom, urisFrom, type Argument } from '../targets';
import type { SourceControls } from '../view/sourceControls';
import type { Source } from './entries';
import type { HistoryView } from './historyView';
import type { EntryNode, FileNode, Node } from './nodes';
import { repositoryUrl } from './repositoryUrl';

export function registerHistory(
  services: Services,
  controls: SourceControls,
  view: HistoryView,
): vscode.Disposable {
  return vscode.Disposable.from(
    view,
    services.copies.onDidOpen(() => {
      view.refresh();
    }),
    command('quen.repositoryHistory', async (...args: Argument[]) => {
      const copy = await copyFrom(services, controls, args);
      if (!copy) return;
      const { url, repositoryRoot } = copy.facts;
      await view.show({ title: copyName(copy), place: { url }, repositoryRoot });
    }),
    command('quen.fileHistory', async (...args: Argument[]) => {
      const [uri] = urisFrom(controls, args);
      if (uri) await view.show(fileSource(services, uri));
    }),
    command('quen.selectionHistory', () => showSelection(services, view)),
    command('quen.history.more', () => view.readMore()),
    command('quen.history.refresh', () => {
      view.refresh();
    }),
    command('quen.history.search', () => search(view)),
    command('quen.history.clearSearch', () => view.searchFor({})),
    command('quen.history.openFileChange', (node: Node) => openFileChange(node)),
    command('quen.history.openAll', (node: Node) => openAll(node)),
    command('quen.history.compareSelected', (_node: Node, nodes: readonly Node[]) =>
      compareSelected(nodes),
    ),
    command('quen.history.copyRevision', async (node: Node) => {
      if (node.kind === 'entry') await vscode.env.clipboard.writeText(String(node.entry.revision));
    }),
    command('quen.history.copyMessage', async (node: Node) => {
      if (node.kind === 'entry') await vscode.env.clipboard.writeText(node.entry.message ?? '');
    }),
  );
}

function fileSource(services: Services, uri: vscode.Uri): Source {
  const repositoryRoot = services.copies.of(uri)?.facts.repositoryRoot ?? '';
  return { title: name(uri), place: { path: uri.path }, repositoryRoot, file: uri };
}

async function showSelection(services: Services, view: HistoryView): Promise<void> {
  const editor = vscode.window.activeTextEditor;
  if (!editor) return;
  const { uri } = editor.document;
  const { start, end } = editor.selection;
  const blame = succeeded(await services.server.request('file/blame', { path: uri.path }));
  const indices = new Set(blame.lines.slice(start.line, end.line + 1));
  const only = new Set([...indices].flatMap((index) => blame.revisions[index]?.revision ?? []));
  if (only.size === 0) {
    void vscode.window.showInformationMessage(
      vscode.l10n.t('These lines were not committed yet: they have no history.'),
    );
    return;
  }
  const lines = vscode.l10n.t('lines {0} to {1}', start.line + 1, end.line + 1);
  await view.show({ ...fileSource(services, uri), title: `${name(uri)}, ${lines}`, only });
}

async function search(view: HistoryView): Promise<void> {
  const typed = await vscode.window.showInputBox({
    title: vscode.l10n.t('Search the history'),
    prompt: vscode.l10n.t('Text in the message; or author: and a name, such as author:jo'),
    value: view.currentSearch.text ?? '',
    ignoreFocusOut: true,
  });
  if (typed === undefined) return;
  const author = /^author:\s*(.+)$/.exec(typed.trim())?.[1];
  await view.searchFor(author ? { author } : typed.trim() === '' ? {} : { text: typed.trim() });
}

/** The file before and after a revision. */
async function openFileChange(node: Node): Promise<void> {
  if (node.kind === 'more') return;
  const { entry, source } = node;
  const place = placeOf(node);
  if (!place) return;
  const path = node.kind === 'file' ? node.file.path : (source.file?.path ?? '');
  const [left, right] = sidesAt(place, path, entry, actionOf(node));
  await compare(
    left,
    right,
    `${name(vscode.Uri.file(path))} (r${entry.revision - 1} ↔ r${entry.revision})`,
  );
}

function placeOf(node: EntryNode | FileNode): Place | undefined {
  if (node.kind === 'file')
    return { url: repositoryUrl(node.source.repositoryRoot, node.file.path) };
  return node.source.file && { path: node.source.file.path };
}

function actionOf(node: EntryNode | FileNode): string {
  return node.kind === 'file' ? node.file.action : 'modified';
}

function sidesAt(
  place: Place,
  path: string,
  entry: LogEntry,
  action: string,
): [vscode.Uri, vscode.Uri] {
  const before = action === 'added' ? emptyUri(path) : revisionUri(place, entry.revision - 1);
  const after = action === 'deleted' ? emptyUri(path) : revisionUri(place, entry.revision);
  return [before, after];
}

async function openAll(node: Node): Promise<void> {
  if (node.kind !== 'entry') return;
  const { entry, source } = node;
  const rows = (entry.files ?? []).map((file) => {
    const place = { url: repositoryUrl(source.repositoryRoot, file.path) };
    const [before, after] = sidesAt(place, file.path, entry, file.action);
    return [vscode.Uri.file(file.path), before, after];
  });
  await vscode.commands.executeCommand('vscode.changes', `r${entry.revision}`, rows);
}

async function compareSelected(nodes: readonly Node[]): Promise<void> {
  const chosen = nodes.filter((node) => node.kind === 'entry' || node.kind === 'file');
  const [newer, older] = chosen.sort((a, b) => b.entry.revision - a.entry.revision);
  const newerPlace = newer && placeOf(newer);
  const olderPlace = older && placeOf(older);
  if (!newerPlace || !olderPlace) {
    void vscode.window.showInformationMessage(
      vscode.l10n.t('Choose two revisions in the history of a file.'),
    );
    return;
  }
  await compare(
    revisionUri(olderPlace, older.entry.revision),
    revisionUri(newerPlace, newer.entry.revision),
    `r${older.entry.revision} ↔ r${newer.entry.revision}`,
  );
}
