// What brings the repository's changes in: update, switch, merge, checkout.

import * as vscode from 'vscode';
import { command } from '../commands';
import { list } from '../changes/commit';
import { planOf } from '../changes/plans';
import type { WorkingCopy } from '../model/workingCopy';
import type { Method, Params, PlanKind, UpdateResult } from '../server/protocol';
import type { Services } from '../services';
import { byCopy, copyFrom, isResource, pathsOf, urisFrom, type Argument } from '../targets';
import type { Resource } from '../view/resource';
import type { SourceControls } from '../view/sourceControls';
import { perform } from '../work';
import { askBranch, askRevision } from './questions';

export function registerUpdate(services: Services, controls: SourceControls): vscode.Disposable {
  const withCopy = (id: string, run: (copy: WorkingCopy) => Promise<void>) =>
    command(id, async (...args: Argument[]) => {
      const copy = await copyFrom(services, controls, args);
      if (copy) await run(copy);
    });
  return vscode.Disposable.from(
    withCopy('quen.update', (copy) => update(services, copy, [copy.path])),
    withCopy('quen.updateToRevision', async (copy) => {
      const revision = await askRevision(services, { path: copy.path }, copy.facts.revision);
      if (revision !== undefined) await update(services, copy, [copy.path], revision);
    }),
    withCopy('quen.switch', async (copy) => {
      const url = await askBranch(services, copy, vscode.l10n.t('Switch to which branch?'));
      if (url === undefined || !(await agrees(services, 'switch', copy, [copy.path], url))) return;
      const title = vscode.l10n.t('Switching');
      await run(services, copy, title, 'workingCopy/switch', { workingCopy: copy.path, url });
    }),
    withCopy('quen.merge', async (copy) => {
      const url = await askBranch(
        services,
        copy,
        vscode.l10n.t('Merge which branch into this one?'),
      );
      if (url === undefined || !(await agrees(services, 'merge', copy, [copy.path], url))) return;
      const title = vscode.l10n.t('Merging');
      await run(services, copy, title, 'branch/merge', { workingCopy: copy.path, url });
    }),
    withCopy('quen.recordMerge', async (copy) => {
      const url = await askBranch(
        services,
        copy,
        vscode.l10n.t('Mark which branch as merged, without its changes?'),
      );
      if (url === undefined) return;
      const work = { title: vscode.l10n.t('Recording the merge'), copy, isLong: true };
      await perform(services, work, 'branch/recordMerge', { workingCopy: copy.path, url });
    }),
    withCopy('quen.checkIncoming', async (copy) => {
      await services.copies.refreshIncoming(copy);
    }),
    command('quen.updateSelected', async (...args: Argument[]) => {
      for (const { copy, uris } of byCopy(services, urisFrom(controls, args))) {
        await update(services, copy, pathsOf(uris));
      }
    }),
    command('quen.settledDone', async (...args: Argument[]) => {
      for (const row of args.flat().filter(isResource)) await lookedAt(services, row);
    }),
  );
}

/** What was kept beside the file goes: the repository has it. */
async function lookedAt({ copies, server }: Services, { copy, item, settled }: Resource) {
  copy.settled = copy.settled.filter(({ path }) => path !== item.path);
  copies.touch(copy);
  const theirs = settled?.theirs;
  if (typeof theirs !== 'string') return;
  await vscode.workspace.fs.delete(vscode.Uri.file(theirs));
  await server.notify('workingCopy/didChange', { paths: [theirs] });
}

async function update(
  services: Services,
  copy: WorkingCopy,
  paths: readonly string[],
  revision?: number,
): Promise<void> {
  if (!(await agrees(services, 'update', copy, paths))) return;
  const params = revision === undefined ? { paths } : { paths, revision };
  await run(services, copy, vscode.l10n.t('Updating'), 'workingCopy/update', params);
}

/** Before anything is brought in: what both sides changed, and what becomes of it. */
async function agrees(
  services: Services,
  kind: PlanKind,
  copy: WorkingCopy,
  paths: readonly string[],
  url?: string,
): Promise<boolean> {
  if (!vscode.workspace.getConfiguration('quen').get<boolean>('update.askFirst', true)) return true;
  const plan = await planOf(services, copy, kind, paths, url);
  if (plan.decidedForMine.length === 0 && plan.lost.length === 0) return true;
  const goOn = vscode.l10n.t('Continue');
  const answer = await vscode.window.showWarningMessage(
    vscode.l10n.t(
      'Changed both here and in the repository: {0}',
      plan.decidedForMine.length + plan.lost.length,
    ),
    {
      modal: true,
      detail: [
        list(
          vscode.l10n.t('Where the changes touch, yours stay; theirs are kept beside them:'),
          plan.decidedForMine,
        ),
        list(vscode.l10n.t('Changes that would be lost:'), plan.lost),
      ]
        .join('\n\n')
        .trim(),
    },
    goOn,
  );
  return answer === goOn;
}

type Bringing = 'workingCopy/update' | 'workingCopy/switch' | 'branch/merge';

async function run<M extends Bringing & Method>(
  services: Services,
  copy: WorkingCopy,
  title: string,
  method: M,
  params: Params<M>,
): Promise<void> {
  const base = copy.facts.revision;
  const result = await perform(services, { title, copy, isLong: true }, method, params);
  await settle(services, copy, base, result, method !== 'branch/merge');
}

/** Takes in what an operation has brought: facts, contents, and what waits to be looked at. */
export async function settle(
  services: Services,
  copy: WorkingCopy,
  base: number,
  result: UpdateResult,
  isTheirsBase: boolean,
): Promise<void> {
  services.contents.invalidate(null);
  const settled = result.settled.map((file) => ({ ...file, base, isTheirsBase }));
  const again = new Set(settled.map(({ path }) => path));
  copy.settled = [...copy.settled.filter(({ path }) => !again.has(path)), ...settled];
  const updated = new Set(result.items.map(({ path }) => path));
  copy.incoming = copy.incoming.filter(({ path }) => !updated.has(path));
  await services.copies.refreshFacts(copy);
  void services.copies.refreshIncoming(copy, true).catch(() => undefined); // `update` has just told of it.
  tell(services, copy, result);
}

function tell(services: Services, copy: WorkingCopy, result: UpdateResult): void {
  const { revision, items, settled, conflicts } = result;
  const text = vscode.l10n.t('Revision {0}. Items brought in: {1}.', revision ?? '?', items.length);
  const open = settled.length + conflicts.length;
  if (open === 0) {
    vscode.window.setStatusBarMessage(`$(check) ${text}`, 10_000);
    return;
  }
  const show = vscode.l10n.t('Show');
  void vscode.window
    .showWarningMessage(
      `${text} ${vscode.l10n.t('Changed on both sides, to be looked at: {0}', open)}`,
      show,
    )
    .then((answer) => {
      if (answer !== show) return undefined;
      const first = copy.settled[0];
      return first
        ? vscode.commands.executeCommand('quen.openSettled', vscode.Uri.file(first.path))
        : vscode.commands.executeCommand('workbench.view.scm');
    });
  services.copies.touch(copy);
}
