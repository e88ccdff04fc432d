// Files sorted into changelists, the client's own groups of changes.

import * as vscode from 'vscode';
import { command } from '../commands';
import type { Services } from '../services';
import { byCopy, pathsOf, urisFrom, type Argument, type Targets } from '../targets';
import type { SourceControls } from '../view/sourceControls';
import { perform } from '../work';

/** The changelist that a commit of everything leaves out. */
export const neverCommitted = 'ignore-on-commit';

export function registerChangelists(
  services: Services,
  controls: SourceControls,
): vscode.Disposable {
  return vscode.Disposable.from(
    command('quen.moveToChangelist', async (...args: Argument[]) => {
      const targets = byCopy(services, urisFrom(controls, args));
      if (targets.length === 0) return;
      const name = await askChangelist(targets);
      if (name !== undefined) await put(services, targets, name);
    }),
    command('quen.removeFromChangelist', async (...args: Argument[]) => {
      await put(services, byCopy(services, urisFrom(controls, args)), null);
    }),
  );
}

async function put(
  services: Services,
  targets: readonly Targets[],
  name: string | null,
): Promise<void> {
  for (const { copy, uris } of targets) {
    const work = { title: vscode.l10n.t('Sorting into changelists'), copy, isLong: false };
    await perform(services, work, 'change/changelist', { paths: pathsOf(uris), name });
  }
}

async function askChangelist(targets: readonly Targets[]): Promise<string | undefined> {
  const known = new Set<string>();
  for (const { copy } of targets) {
    for (const { changelist } of copy.items.values()) if (changelist) known.add(changelist);
  }
  const neverDetail = vscode.l10n.t('Stays out of “Commit”, until it is chosen');
  known.delete(neverCommitted);
  const other = { label: `$(add) ${vscode.l10n.t('New changelist...')}`, name: undefined };
  const chosen = await vscode.window.showQuickPick(
    [
      ...[...known].sort().map((name) => ({ label: name, name })),
      { label: neverCommitted, detail: neverDetail, name: neverCommitted },
      other,
    ],
    { title: vscode.l10n.t('Into which changelist?') },
  );
  if (!chosen) return undefined;
  return chosen.name ?? askName();
}

async function askName(): Promise<string | undefined> {
  const typed = await vscode.window.showInputBox({
    title: vscode.l10n.t('Name of the new changelist'),
    ignoreFocusOut: true,
    validateInput: (text) =>
      text.trim() === '' || text.startsWith('-')
        ? vscode.l10n.t('A name is not empty and does not begin with -.')
        : undefined,
  });
  return typed?.trim();
}
