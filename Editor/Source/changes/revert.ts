// Revert says what would be lost, and keeps it until the next revert.

import * as vscode from 'vscode';
import { command } from '../commands';
import type { WorkingCopy } from '../model/workingCopy';
import { propertiesOf, setProperty } from '../attributes/propertyFiles';
import type { Item, Property } from '../server/protocol';
import type { Services } from '../services';
import { byCopy, copyFrom, pathsOf, urisFrom, type Argument } from '../targets';
import type { SourceControls } from '../view/sourceControls';
import { perform } from '../work';
import { list } from './commit';
import { planOf } from './plans';

interface Kept {
  readonly copy: WorkingCopy;
  readonly items: readonly Item[];
  readonly texts: ReadonlyMap<string, Uint8Array>;
  /** Of those whose properties were changed: what they were set to. */
  readonly properties: ReadonlyMap<string, readonly Property[]>;
}

const mostKeptBytes = 64 * 1024 * 1024;

export function registerRevert(services: Services, controls: SourceControls): vscode.Disposable {
  let kept: Kept[] = [];
  const revertThese = async (targets: ReturnType<typeof byCopy>) => {
    const undo: Kept[] = [];
    for (const { copy, uris } of targets) {
      const done = await revert(services, copy, pathsOf(uris));
      if (done) undo.push(done);
    }
    if (undo.length === 0) return;
    kept = undo;
    void offerUndo(undo);
  };
  return vscode.Disposable.from(
    command('quen.revert', (...args: Argument[]) =>
      revertThese(byCopy(services, urisFrom(controls, args))),
    ),
    command('quen.revertAll', async (...args: Argument[]) => {
      const copy = await copyFrom(services, controls, args);
      if (copy) await revertThese([{ copy, uris: [copy.uri] }]);
    }),
    command('quen.undoRevert', async () => {
      if (kept.length === 0) {
        void vscode.window.showInformationMessage(vscode.l10n.t('There is no revert to undo.'));
        return;
      }
      for (const one of kept) await undoRevert(services, one);
      kept = [];
    }),
  );
}

async function revert(
  services: Services,
  copy: WorkingCopy,
  paths: readonly string[],
): Promise<Kept | undefined> {
  const plan = await planOf(services, copy, 'revert', paths);
  const affected = plan.items.map(({ path }) => path);
  if (affected.length === 0) {
    void vscode.window.showInformationMessage(vscode.l10n.t('There is nothing to revert.'));
    return undefined;
  }
  const texts = await readAll(plan.lost);
  if (!(await agrees(affected, plan.lost, texts !== undefined))) return undefined;
  const items = affected.flatMap((path) => copy.items.get(path) ?? []);
  const properties = await readProperties(services, items);
  const work = { title: vscode.l10n.t('Reverting'), copy, isLong: false };
  await perform(services, work, 'change/revert', { paths });
  return texts && { copy, items, texts, properties };
}

async function readProperties(
  services: Services,
  items: readonly Item[],
): Promise<Map<string, readonly Property[]>> {
  const changed = items.filter(({ property }) => property === 'modified');
  const read = changed.map(
    async ({ path }) => [path, await propertiesOf(services, vscode.Uri.file(path))] as const,
  );
  return new Map(await Promise.all(read));
}

/** Sets what differs again; one whose value is not text stays as it is. */
async function restoreProperties(
  services: Services,
  path: string,
  wanted: readonly Property[],
): Promise<void> {
  const uri = vscode.Uri.file(path);
  const now = await propertiesOf(services, uri);
  for (const { name } of now) {
    if (!wanted.some((each) => each.name === name)) await setProperty(services, uri, name, null);
  }
  for (const { name, value } of wanted) {
    const isSame = now.some((each) => each.name === name && each.value === value);
    if (!isSame && value !== null) await setProperty(services, uri, name, value);
  }
}

/** The bytes of files that are there; undefined where they are too many to keep. */
async function readAll(paths: readonly string[]): Promise<Map<string, Uint8Array> | undefined> {
  const texts = new Map<string, Uint8Array>();
  let total = 0;
  for (const path of paths) {
    const uri = vscode.Uri.file(path);
    const size = await sizeOf(uri);
    if (size === undefined) continue; // A directory, or already gone: it has no text to lose.
    total += size;
    if (total > mostKeptBytes) return undefined;
    texts.set(path, await vscode.workspace.fs.readFile(uri));
  }
  return texts;
}

async function sizeOf(uri: vscode.Uri): Promise<number | undefined> {
  try {
    const stat = await vscode.workspace.fs.stat(uri);
    return stat.type === vscode.FileType.File ? stat.size : undefined;
  } catch {
    return undefined;
  }
}

async function agrees(
  affected: readonly string[],
  lost: readonly string[],
  canUndo: boolean,
): Promise<boolean> {
  const yes = vscode.l10n.t('Revert');
  const detail = [
    lost.length < affected.length ? list(vscode.l10n.t('Reverted:'), affected) : '',
    list(vscode.l10n.t('Changes that are lost:'), lost),
    canUndo
      ? vscode.l10n.t('“Undo Revert” brings them back, as long as this window is open.')
      : vscode.l10n.t('They are too big to be kept: this cannot be undone.'),
  ];
  const answer = await vscode.window.showWarningMessage(
    affected.length === 1 && affected[0] !== undefined
      ? vscode.l10n.t('Revert {0}?', vscode.workspace.asRelativePath(affected[0]))
      : vscode.l10n.t('Revert {0} items?', affected.length),
    { modal: true, detail: detail.filter((part) => part !== '').join('\n\n') },
    yes,
  );
  return answer === yes;
}

async function offerUndo(kept: readonly Kept[]): Promise<void> {
  const count = kept.reduce((sum, { items }) => sum + items.length, 0);
  const undo = vscode.l10n.t('Undo');
  const answer = await vscode.window.showInformationMessage(
    vscode.l10n.t('Reverted items: {0}', count),
    undo,
  );
  if (answer === undo) await vscode.commands.executeCommand('quen.undoRevert');
}

async function undoRevert(
  services: Services,
  { copy, items, texts, properties }: Kept,
): Promise<void> {
  const pathsWith = (status: Item['status']) =>
    items.filter((item) => item.status === status).map((item) => item.path);
  for (const [path, bytes] of texts)
    await vscode.workspace.fs.writeFile(vscode.Uri.file(path), bytes);
  const work = { title: vscode.l10n.t('Undoing the revert'), copy, isLong: false };
  const added = pathsWith('added');
  if (added.length > 0) await perform(services, work, 'change/add', { paths: added });
  const deleted = pathsWith('deleted');
  if (deleted.length > 0) await perform(services, work, 'change/remove', { paths: deleted });
  for (const [path, wanted] of properties) await restoreProperties(services, path, wanted);
  await services.server.notify('workingCopy/didChange', { paths: [...texts.keys()] });
}
