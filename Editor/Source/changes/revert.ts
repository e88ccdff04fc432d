// Revert says what would be lost. The server keeps the contents; what was added, removed and set as a
// property is kept here, so that an undo brings all of it back.

import * as vscode from 'vscode';
import { command } from '../commands';
import type { WorkingCopy } from '../model/workingCopy';
import { propertiesOf, setProperty } from '../attributes/propertyFiles';
import { ResponseError } from 'vscode-jsonrpc/node';
import type { Item, Property, UndoResult } from '../server/protocol';
import type { Services } from '../services';
import { byCopy, copyFrom, pathsOf, urisFrom, type Argument } from '../targets';
import type { SourceControls } from '../view/sourceControls';
import { perform } from '../work';
import { list } from './commit';
import { planOf } from './plans';

interface Kept {
  readonly copy: WorkingCopy;
  readonly items: readonly Item[];
  /** Of those whose properties were changed: what they were set to. */
  readonly properties: ReadonlyMap<string, readonly Property[]>;
}

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
    command('quen.undoRevert', async (...args: Argument[]) => {
      const [first] = kept;
      const copy = first?.copy ?? (await copyFrom(services, controls, args));
      const states: readonly Kept[] =
        kept.length > 0 ? kept : copy ? [{ copy, items: [], properties: new Map() }] : [];
      kept = [];
      for (const state of states) await undoRevert(services, state);
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
  if (!(await agrees(affected, plan.lost))) return undefined;
  const items = affected.flatMap((path) => copy.items.get(path) ?? []);
  const properties = await readProperties(services, items);
  const work = { title: vscode.l10n.t('Reverting'), copy, isLong: false };
  try {
    await perform(services, work, 'change/revert', { paths });
  } catch (error) {
    if (!(await agreesToKeepNothing(error))) throw error;
    await perform(services, work, 'change/revert', { paths, notKept: true });
  }
  return { copy, items, properties };
}

/** Where the server refuses, because something cannot be kept: asks whether it may go for good. */
async function agreesToKeepNothing(error: unknown): Promise<boolean> {
  if (!(error instanceof ResponseError)) return false;
  const { notKept } = (error.data ?? {}) as { notKept?: readonly { path: string }[] };
  if (!notKept) return false;
  const yes = vscode.l10n.t('Revert for Good');
  const answer = await vscode.window.showWarningMessage(
    vscode.l10n.t('Not everything can be kept for an undo.'),
    {
      modal: true,
      detail: list(
        '',
        notKept.map(({ path }) => path),
      ),
    },
    yes,
  );
  return answer === yes;
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

async function agrees(affected: readonly string[], lost: readonly string[]): Promise<boolean> {
  const yes = vscode.l10n.t('Revert');
  const detail = [
    lost.length < affected.length ? list(vscode.l10n.t('Reverted:'), affected) : '',
    list(vscode.l10n.t('Changes that are lost:'), lost),
    vscode.l10n.t('“Undo Revert” brings them back.'),
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

async function undoRevert(services: Services, { copy, items, properties }: Kept): Promise<void> {
  const pathsWith = (status: Item['status']) =>
    items.filter((item) => item.status === status).map((item) => item.path);
  const work = { title: vscode.l10n.t('Undoing the revert'), copy, isLong: false };
  const undone = await perform(services, work, 'change/undo', { workingCopy: copy.path });
  const added = pathsWith('added');
  if (added.length > 0) await perform(services, work, 'change/add', { paths: added });
  const deleted = pathsWith('deleted');
  if (deleted.length > 0) await perform(services, work, 'change/remove', { paths: deleted });
  for (const [path, wanted] of properties) await restoreProperties(services, path, wanted);
  tellUndone(undone, items.length > 0);
}

/** What came back only in part, or not at all. */
function tellUndone({ step, items, notRestored, notes }: UndoResult, knowsMore: boolean): void {
  if (step === null && !knowsMore) {
    void vscode.window.showInformationMessage(vscode.l10n.t('There is nothing to undo.'));
  } else if (notRestored.length > 0) {
    const lines = notRestored.map(({ path, reason, beside }) =>
      beside === null ? `${path}: ${reason}` : `${path}: ${reason} (${beside})`,
    );
    void vscode.window.showWarningMessage(
      vscode.l10n.t('Not everything could be put back: {0}', lines.join('; ')),
    );
  } else if (!knowsMore && notes.length > 0) {
    void vscode.window.showWarningMessage(
      vscode.l10n.t('The texts are back. Properties are not: {0}', notes.join('; ')),
    );
  } else {
    const done = vscode.l10n.t('Put back: {0}', items.length);
    vscode.window.setStatusBarMessage(`$(check) ${done}`, 10_000);
  }
}
