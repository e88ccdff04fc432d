// Opening files and comparing them: with BASE, with HEAD, with any revision, with each other.

import * as vscode from 'vscode';
import { command } from '../commands';
import { openMergeEditor } from '../proposed';
import { isConflicted } from '../model/words';
import type { SettledFile } from '../model/workingCopy';
import { askRevision } from '../remote/questions';
import type { Item, Revision } from '../server/protocol';
import type { Services } from '../services';
import { fileOf, urisFrom, type Argument } from '../targets';
import type { SourceControls } from '../view/sourceControls';
import { openConflict } from './conflicts';
import { emptyUri, revisionUri, scheme } from './revisionUri';
import { snapshotOf } from './snapshots';

export function registerComparisons(
  services: Services,
  controls: SourceControls,
): vscode.Disposable {
  const onEach = (id: string, run: (uri: vscode.Uri) => Promise<void>) =>
    command(id, async (...args: Argument[]) => {
      for (const uri of urisFrom(controls, args)) await run(uri);
    });
  return vscode.Disposable.from(
    onEach('quen.openChange', (uri) => openChange(services, uri)),
    onEach('quen.openFile', (uri) => open(uri)),
    onEach('quen.openBase', (uri) => open(revisionUri({ path: uri.path }, 'BASE'))),
    onEach('quen.openHead', (uri) => open(revisionUri({ path: uri.path }, 'HEAD'))),
    onEach('quen.compareWithBase', (uri) => compareWith(uri, 'BASE')),
    onEach('quen.compareWithHead', (uri) => compareWith(uri, 'HEAD')),
    onEach('quen.compareWithRevision', async (uri) => {
      const revision = await askRevision(services, { path: uri.path });
      if (revision !== undefined) await compareWith(uri, revision);
    }),
    onEach('quen.openRevision', async (uri) => {
      const revision = await askRevision(services, { path: uri.path });
      if (revision !== undefined) await open(revisionUri({ path: uri.path }, revision));
    }),
    onEach('quen.openIncomingChange', (uri) => openIncoming(services, uri)),
    onEach('quen.openSettled', (uri) => openSettled(services, uri)),
    command('quen.openAllChanges', async (...args: Argument[]) => {
      await openAll(services, urisFrom(controls, args));
    }),
    command('quen.compareSelected', async (...args: Argument[]) => {
      const [left, right] = urisFrom(controls, args);
      if (left && right) await compare(left, right, `${name(left)} ↔ ${name(right)}`);
    }),
  );
}

async function open(uri: vscode.Uri): Promise<void> {
  const options: vscode.TextDocumentShowOptions = { preview: true };
  const label = uri.scheme === scheme ? revisionTitle(uri) : undefined;
  await vscode.commands.executeCommand('vscode.open', uri, options, label);
}

export async function compare(left: vscode.Uri, right: vscode.Uri, title: string): Promise<void> {
  await vscode.commands.executeCommand('vscode.diff', left, right, title, { preview: true });
}

async function compareWith(uri: vscode.Uri, revision: Revision): Promise<void> {
  const title = vscode.l10n.t('{0} ({1} ↔ on disk)', name(uri), inWords(revision));
  await compare(revisionUri({ path: uri.path }, revision), uri, title);
}

async function openChange(services: Services, uri: vscode.Uri): Promise<void> {
  const item = services.copies.itemOf(fileOf(uri));
  if (item && isConflicted(item) && (await openConflict(services, uri))) return;
  if (await isDirectory(uri)) {
    await vscode.commands.executeCommand('revealInExplorer', uri);
    return;
  }
  const { left, right } = sidesOf(uri, item);
  if (!left && right) await open(right);
  else if (left && !right) await open(left);
  else if (left && right)
    await compare(left, right, vscode.l10n.t('{0} (BASE ↔ on disk)', name(uri)));
}

/** What is on each side of a change; nothing where it was not, or is no longer. */
function sidesOf(
  uri: vscode.Uri,
  item: Item | undefined,
): { left?: vscode.Uri; right?: vscode.Uri } {
  const base = revisionUri({ path: uri.path }, 'BASE');
  switch (item?.status) {
    case 'unversioned':
    case 'ignored':
      return { right: uri };
    case 'added':
      if (item.copied) return { left: base, right: uri };
      return { right: uri };
    case 'deleted':
    case 'missing':
      return { left: base };
    default:
      return { left: base, right: uri };
  }
}

async function isDirectory(uri: vscode.Uri): Promise<boolean> {
  try {
    return (await vscode.workspace.fs.stat(uri)).type === vscode.FileType.Directory;
  } catch {
    return false; // Deleted: then it is shown as it was.
  }
}

async function openAll(services: Services, uris: readonly vscode.Uri[]): Promise<void> {
  const rows = uris.map((uri) => {
    const { left, right } = sidesOf(uri, services.copies.itemOf(uri));
    return [uri, left ?? emptyUri(uri.path), right ?? emptyUri(uri.path)];
  });
  await vscode.commands.executeCommand('vscode.changes', vscode.l10n.t('Changes'), rows);
}

async function openIncoming(services: Services, uri: vscode.Uri): Promise<void> {
  const copy = services.copies.of(uri);
  const incoming = copy?.incoming.find(({ path }) => path === uri.path)?.incoming;
  const base = incoming === 'added' ? emptyUri(uri.path) : revisionUri({ path: uri.path }, 'BASE');
  const head =
    incoming === 'deleted' ? emptyUri(uri.path) : revisionUri({ path: uri.path }, 'HEAD');
  await compare(base, head, vscode.l10n.t('{0} (BASE ↔ HEAD)', name(uri)));
}

function theirsOf(settled: SettledFile): vscode.Uri | undefined {
  if (settled.theirs !== null) return vscode.Uri.file(settled.theirs);
  return settled.isTheirsBase ? revisionUri({ path: settled.path }, 'BASE') : undefined;
}

/** Theirs beside mine; what is chosen goes into the file. */
async function openSettled(services: Services, uri: vscode.Uri): Promise<void> {
  const settled = services.copies.of(uri)?.settled.find(({ path }) => path === uri.path);
  const theirs = settled && theirsOf(settled);
  if (!theirs || settled.kind !== 'text') {
    await openChange(services, uri);
    return;
  }
  const document = await vscode.workspace.openTextDocument(uri);
  const isOpen =
    settled.base !== null &&
    (await openMergeEditor({
      base: revisionUri({ path: uri.path }, settled.base),
      theirs: {
        uri: theirs,
        title: vscode.l10n.t('Theirs'),
        description: vscode.l10n.t('from the repository'),
      },
      mine: {
        uri: snapshotOf(document),
        title: vscode.l10n.t('Mine'),
        description: vscode.l10n.t('kept'),
      },
      output: uri,
    }));
  if (!isOpen) await compare(theirs, uri, vscode.l10n.t('{0} (theirs ↔ mine)', name(uri)));
}

export function name(uri: vscode.Uri): string {
  return vscode.workspace.asRelativePath(uri, false);
}

function inWords(revision: Revision): string {
  return typeof revision === 'number' ? `r${revision}` : revision;
}

function revisionTitle(uri: vscode.Uri): string {
  const { revision } = JSON.parse(uri.query) as { revision: Revision };
  return `${name(vscode.Uri.file(uri.path))} (${inWords(revision)})`;
}
