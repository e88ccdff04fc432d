import * as vscode from 'vscode';
import { command } from '../commands';
import type { WorkingCopy } from '../model/workingCopy';
import type { Services } from '../services';
import { copyFrom, type Argument } from '../targets';
import type { SourceControls } from '../view/sourceControls';
import { perform } from '../work';
import { askBranch, askUrl } from './questions';

export function registerBranches(services: Services, controls: SourceControls): vscode.Disposable {
  const withCopy = (id: string, run: (copy: WorkingCopy) => Promise<void>) =>
    command(id, async (...args: Argument[]) => {
      const copy = await copyFrom(services, controls, args);
      if (copy) await run(copy);
    });
  return vscode.Disposable.from(
    withCopy('quen.createBranch', (copy) => create(services, copy, 'branch/create')),
    withCopy('quen.createTag', (copy) => create(services, copy, 'tag/create')),
    withCopy('quen.deleteBranch', (copy) => deleteBranch(services, copy)),
    command('quen.checkout', () => checkout(services)),
  );
}

async function askName(title: string): Promise<string | undefined> {
  const typed = await vscode.window.showInputBox({
    title,
    ignoreFocusOut: true,
    validateInput: (text) => (text.trim() === '' ? vscode.l10n.t('It needs a name.') : undefined),
  });
  return typed?.trim();
}

function askMessage(value: string): Thenable<string | undefined> {
  return vscode.window.showInputBox({
    title: vscode.l10n.t('Commit message'),
    value,
    ignoreFocusOut: true,
  });
}

async function create(
  services: Services,
  copy: WorkingCopy,
  method: 'branch/create' | 'tag/create',
): Promise<void> {
  const isTag = method === 'tag/create';
  const name = await askName(
    isTag ? vscode.l10n.t('Name of the new tag') : vscode.l10n.t('Name of the new branch'),
  );
  if (name === undefined) return;
  const message = await askMessage(
    isTag ? vscode.l10n.t('Create tag {0}', name) : vscode.l10n.t('Create branch {0}', name),
  );
  if (message === undefined) return;
  const work = { title: vscode.l10n.t('Creating {0}', name), copy, isLong: true };
  await perform(services, work, method, { workingCopy: copy.path, name, message });
  vscode.window.setStatusBarMessage(`$(check) ${vscode.l10n.t('Created {0}', name)}`, 10_000);
}

async function deleteBranch(services: Services, copy: WorkingCopy): Promise<void> {
  const url = await askBranch(services, copy, vscode.l10n.t('Delete which branch?'));
  if (url === undefined) return;
  const yes = vscode.l10n.t('Delete');
  const answer = await vscode.window.showWarningMessage(
    vscode.l10n.t('Delete {0} in the repository?', url),
    {
      modal: true,
      detail: vscode.l10n.t('Its history stays, and earlier revisions still have it.'),
    },
    yes,
  );
  if (answer !== yes) return;
  const message = await askMessage(vscode.l10n.t('Delete branch {0}', url));
  if (message === undefined) return;
  const work = { title: vscode.l10n.t('Deleting'), copy, isLong: true };
  await perform(services, work, 'branch/delete', { workingCopy: copy.path, url, message });
}

async function checkout(services: Services): Promise<void> {
  const url = await askUrl(vscode.l10n.t('Check out which URL?'));
  if (url === undefined) return;
  await checkoutFrom(services, url);
}

export async function checkoutFrom(services: Services, url: string): Promise<void> {
  const [parent] =
    (await vscode.window.showOpenDialog({
      title: vscode.l10n.t('Check out into which folder?'),
      canSelectFiles: false,
      canSelectFolders: true,
      openLabel: vscode.l10n.t('Check Out Here'),
    })) ?? [];
  if (!parent) return;
  const name = await askName(vscode.l10n.t('Name of the new folder in {0}', parent.path));
  if (name === undefined) return;
  const folder = vscode.Uri.joinPath(parent, name);
  const work = { title: vscode.l10n.t('Checking out'), isLong: true };
  await perform(services, work, 'workingCopy/checkout', { url, path: folder.path });
  const open = vscode.l10n.t('Open Folder');
  const answer = await vscode.window.showInformationMessage(
    vscode.l10n.t('Checked out into {0}.', folder.path),
    open,
  );
  if (answer === open) await vscode.commands.executeCommand('vscode.openFolder', folder);
}
