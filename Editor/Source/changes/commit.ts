import * as vscode from 'vscode';
import { command } from '../commands';
import type { WorkingCopy } from '../model/workingCopy';
import { describe } from '../model/words';
import type { Item, Plan } from '../server/protocol';
import type { Services } from '../services';
import { byCopy, copyFrom, pathsOf, urisFrom, type Argument } from '../targets';
import type { SourceControls } from '../view/sourceControls';
import { perform } from '../work';
import { keepMessage, pickMessage } from './messageHistory';
import { planOf } from './plans';

export function registerCommit(services: Services, controls: SourceControls): vscode.Disposable {
  return vscode.Disposable.from(
    command('quen.commit', async (...args: Argument[]) => {
      const copy = await copyFrom(services, controls, args);
      if (copy) await commitAll(services, controls, copy);
    }),
    command('quen.commitChosen', async (...args: Argument[]) => {
      const copy = await copyFrom(services, controls, args);
      if (copy) await commitPicked(services, controls, copy);
    }),
    command('quen.commitSelected', async (...args: Argument[]) => {
      for (const { copy, uris } of byCopy(services, urisFrom(controls, args))) {
        await commitPaths(services, controls, copy, pathsOf(uris));
      }
    }),
    command('quen.messageHistory', async (...args: Argument[]) => {
      const copy = await copyFrom(services, controls, args);
      const box = copy && controls.inputBoxOf(copy);
      if (box) await pickMessage(services.context, copy, box);
    }),
  );
}

async function commitAll(
  services: Services,
  controls: SourceControls,
  copy: WorkingCopy,
): Promise<void> {
  const items = controls.committable(copy);
  if (items.length === 0) {
    void vscode.window.showInformationMessage(vscode.l10n.t('There are no changes to commit.'));
    return;
  }
  await commitPaths(services, controls, copy, pathsOfItems(items));
}

async function commitPicked(
  services: Services,
  controls: SourceControls,
  copy: WorkingCopy,
): Promise<void> {
  const meant = new Set(controls.committable(copy));
  const candidates = [...copy.items.values()].filter((item) => meant.has(item) || isAddable(item));
  const chosen = await vscode.window.showQuickPick(
    candidates.map((item) => ({
      label: vscode.workspace.asRelativePath(item.path, false),
      description: describe(item),
      picked: meant.has(item),
      item,
    })),
    {
      title: vscode.l10n.t('Files to commit'),
      canPickMany: true,
      matchOnDescription: true,
      ignoreFocusOut: true,
    },
  );
  if (!chosen || chosen.length === 0) return;
  await commitPaths(services, controls, copy, pathsOfItems(chosen.map(({ item }) => item)));
}

function isAddable(item: Item): boolean {
  return item.status === 'unversioned' || item.status === 'missing';
}

function pathsOfItems(items: readonly Item[]): string[] {
  return items.map((item) => item.path);
}

async function commitPaths(
  services: Services,
  controls: SourceControls,
  copy: WorkingCopy,
  paths: readonly string[],
): Promise<void> {
  if (paths.length === 0 || !(await saveDirty(paths))) return;
  const box = controls.inputBoxOf(copy);
  const message = await messageFor(box);
  if (message === undefined) return;
  const plan = await planOf(services, copy, 'commit', paths);
  if (!(await agreesTo(plan, paths))) return;
  const revisions = await commitGroups(services, copy, plan, paths, message);
  if (revisions.length === 0) return;
  // Only now, and only where nobody has typed meanwhile.
  if (box?.value.trim() === message) box.value = '';
  await keepMessage(services.context, copy, message);
  services.contents.invalidate(null);
  void services.copies.refreshFacts(copy);
  vscode.window.setStatusBarMessage(
    `$(check) ${vscode.l10n.t('Committed revision {0}', revisions.join(', '))}`,
    10_000,
  );
}

async function messageFor(
  box: vscode.SourceControlInputBox | undefined,
): Promise<string | undefined> {
  const typed = box?.value.trim() ?? '';
  if (typed !== '') return typed;
  const asked = await vscode.window.showInputBox({
    title: vscode.l10n.t('Commit message'),
    ignoreFocusOut: true,
    validateInput: (text) =>
      text.trim() === '' ? vscode.l10n.t('Say what the commit changes.') : undefined,
  });
  return asked?.trim();
}

/** Saves what is open and changed among the paths; false where the person cancelled it. */
async function saveDirty(paths: readonly string[]): Promise<boolean> {
  const chosen = new Set(paths);
  const dirty = vscode.workspace.textDocuments.filter(
    (document) => document.isDirty && chosen.has(document.uri.path),
  );
  if (dirty.length === 0) return true;
  const save = vscode.l10n.t('Save and Commit');
  const asIs = vscode.l10n.t('Commit as on Disk');
  const answer = await vscode.window.showWarningMessage(
    vscode.l10n.t('Files that are not saved: {0}', dirty.length),
    { modal: true, detail: dirty.map((document) => document.uri.path).join('\n') },
    save,
    asIs,
  );
  if (answer === save) await Promise.all(dirty.map((document) => document.save()));
  return answer !== undefined;
}

/** Asks only where the client would do more than what was chosen. */
async function agreesTo(plan: Plan, paths: readonly string[]): Promise<boolean> {
  const parts = [
    list(vscode.l10n.t('Also committed, because their directory is:'), plan.alsoTaken),
    list(
      vscode.l10n.t('Added first, because the chosen files lie in them:'),
      plan.needsParents.filter((parent) => !paths.includes(parent)),
    ),
    plan.groups.length > 1
      ? vscode.l10n.t('This makes {0} commits, one for each working copy.', plan.groups.length)
      : '',
  ].filter((part) => part !== '');
  if (parts.length === 0) return true;
  const commit = vscode.l10n.t('Commit');
  const answer = await vscode.window.showWarningMessage(
    vscode.l10n.t('This commit takes more along than was chosen.'),
    { modal: true, detail: parts.join('\n\n') },
    commit,
  );
  return answer === commit;
}

const listed = 20;

export function list(title: string, paths: readonly string[]): string {
  if (paths.length === 0) return '';
  const shown = paths.slice(0, listed).map((path) => vscode.workspace.asRelativePath(path));
  if (paths.length > listed) shown.push(vscode.l10n.t('... and {0} more', paths.length - listed));
  return [title, ...shown].join('\n');
}

async function commitGroups(
  services: Services,
  copy: WorkingCopy,
  plan: Plan,
  paths: readonly string[],
  message: string,
): Promise<number[]> {
  const groups = plan.groups.length > 0 ? plan.groups : [{ workingCopy: copy.path, paths }];
  const revisions: number[] = [];
  for (const group of groups) {
    const work = { title: vscode.l10n.t('Committing'), copy, isLong: true };
    const params = { paths: group.paths, message, alsoTaken: plan.alsoTaken.length > 0 };
    const { revision } = await perform(services, work, 'change/commit', params);
    if (revision !== null) revisions.push(revision);
  }
  return revisions;
}
