// Small changes to the working copy: add, remove, ignore, resolve, clean up.

import * as vscode from 'vscode';
import { command } from '../commands';
import { isConflicted } from '../model/words';
import type { Method, Params } from '../server/protocol';
import type { Services } from '../services';
import { byCopy, copyFrom, pathsOf, urisFrom, type Argument } from '../targets';
import type { SourceControls } from '../view/sourceControls';
import { perform } from '../work';
import { list } from './commit';
import { planOf } from './plans';

type PathsMethod = 'change/add' | 'change/remove' | 'change/ignore' | 'change/unignore';

export function registerEdits(services: Services, controls: SourceControls): vscode.Disposable {
  const onPaths = (id: string, method: PathsMethod, title: string) =>
    command(id, async (...args: Argument[]) => {
      await eachCopy(services, urisFrom(controls, args), title, method);
    });
  return vscode.Disposable.from(
    onPaths('quen.add', 'change/add', vscode.l10n.t('Adding')),
    onPaths('quen.ignore', 'change/ignore', vscode.l10n.t('Ignoring')),
    onPaths('quen.unignore', 'change/unignore', vscode.l10n.t('Taking out of the ignored')),
    command('quen.remove', async (...args: Argument[]) => {
      await remove(services, urisFrom(controls, args));
    }),
    command('quen.resolve', async (...args: Argument[]) => {
      await resolve(services, urisFrom(controls, args));
    }),
    command('quen.deleteUnversioned', async (...args: Argument[]) => {
      await deleteUnversioned(urisFrom(controls, args));
    }),
    command('quen.cleanUp', async (...args: Argument[]) => {
      const copy = await copyFrom(services, controls, args);
      if (!copy) return;
      const work = { title: vscode.l10n.t('Cleaning up'), copy, isLong: true };
      await perform(services, work, 'workingCopy/cleanup', { paths: [copy.path] });
      await services.copies.refresh(copy);
      vscode.window.setStatusBarMessage(`$(check) ${vscode.l10n.t('Cleaned up')}`, 5000);
    }),
    command('quen.refresh', async (...args: Argument[]) => {
      const copy = await copyFrom(services, controls, args);
      if (!copy) return;
      await services.copies.refresh(copy);
      await services.copies.open(copy.path); // Working copies inside it may have come.
      await services.copies.refreshIncoming(copy);
    }),
  );
}

async function eachCopy(
  services: Services,
  uris: readonly vscode.Uri[],
  title: string,
  method: PathsMethod,
): Promise<void> {
  for (const { copy, uris: own } of byCopy(services, uris)) {
    const params: Params<Method & PathsMethod> = { paths: pathsOf(own) };
    await perform(services, { title, copy, isLong: false }, method, params);
  }
}

async function remove(services: Services, uris: readonly vscode.Uri[]): Promise<void> {
  for (const { copy, uris: own } of byCopy(services, uris)) {
    const paths = pathsOf(own);
    const plan = await planOf(services, copy, 'remove', paths);
    if (plan.lost.length > 0 && !(await agreesToLose(plan.lost))) return;
    const work = { title: vscode.l10n.t('Removing'), copy, isLong: false };
    await perform(services, work, 'change/remove', { paths });
  }
}

async function agreesToLose(lost: readonly string[]): Promise<boolean> {
  const removeAnyway = vscode.l10n.t('Remove');
  const answer = await vscode.window.showWarningMessage(
    vscode.l10n.t('Removing these loses changes that were never committed.'),
    { modal: true, detail: list('', lost) },
    removeAnyway,
  );
  return answer === removeAnyway;
}

async function deleteUnversioned(uris: readonly vscode.Uri[]): Promise<void> {
  if (uris.length === 0) return;
  const toTrash = vscode.l10n.t('Delete');
  const answer = await vscode.window.showWarningMessage(
    vscode.l10n.t('Delete from the disk? Unversioned items: {0}', uris.length),
    { modal: true, detail: list('', pathsOf(uris)) },
    toTrash,
  );
  if (answer !== toTrash) return;
  for (const uri of uris) await vscode.workspace.fs.delete(uri, { recursive: true });
}

async function resolve(services: Services, uris: readonly vscode.Uri[]): Promise<void> {
  const conflicted = uris.filter((uri) => {
    const item = services.copies.itemOf(uri);
    return item !== undefined && isConflicted(item);
  });
  if (conflicted.length === 0) {
    void vscode.window.showInformationMessage(
      vscode.l10n.t('There is no conflict in these files.'),
    );
    return;
  }
  const chosen = await vscode.window.showQuickPick(
    [
      { label: vscode.l10n.t('As it is on disk now'), accept: 'working' as const },
      { label: vscode.l10n.t('Mine, all of it'), accept: 'mine' as const },
      { label: vscode.l10n.t('Theirs, all of it'), accept: 'theirs' as const },
      { label: vscode.l10n.t('As before both changes'), accept: 'base' as const },
    ],
    { title: vscode.l10n.t('Resolve the conflict with which text?') },
  );
  if (!chosen) return;
  for (const { copy, uris: own } of byCopy(services, conflicted)) {
    const work = { title: vscode.l10n.t('Resolving'), copy, isLong: false };
    await perform(services, work, 'change/resolve', { paths: pathsOf(own), accept: chosen.accept });
  }
}
