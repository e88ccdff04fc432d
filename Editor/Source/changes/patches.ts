// Patches: made of changes, applied, and kept aside as a shelf until they are wanted again.

import * as vscode from 'vscode';
import { command } from '../commands';
import type { WorkingCopy } from '../model/workingCopy';
import { succeeded } from '../server/failures';
import type { Services } from '../services';
import { byCopy, copyFrom, pathsOf, urisFrom, type Argument } from '../targets';
import type { SourceControls } from '../view/sourceControls';
import { perform } from '../work';
import { planOf } from './plans';
import { list } from './commit';

const binaryMark = 'Cannot display: file marked as a binary type.';
const ending = '.patch';

export function registerPatches(services: Services, controls: SourceControls): vscode.Disposable {
  return vscode.Disposable.from(
    command('quen.createPatch', async (...args: Argument[]) => {
      const targets = byCopy(services, urisFrom(controls, args));
      for (const { uris } of targets) await createPatch(services, pathsOf(uris));
    }),
    command('quen.applyPatch', async (...args: Argument[]) => {
      const copy = await copyFrom(services, controls, args);
      if (copy) await applyPatch(services, copy);
    }),
    command('quen.shelve', async (...args: Argument[]) => {
      for (const { copy, uris } of byCopy(services, urisFrom(controls, args))) {
        await shelve(services, copy, pathsOf(uris));
      }
    }),
    command('quen.unshelve', async (...args: Argument[]) => {
      const copy = await copyFrom(services, controls, args);
      if (copy) await unshelve(services, copy);
    }),
  );
}

async function patchOf(services: Services, paths: readonly string[]): Promise<Buffer> {
  const { base64 } = succeeded(await services.server.request('diff/text', { paths }));
  return Buffer.from(base64 ?? '', 'base64');
}

async function createPatch(services: Services, paths: readonly string[]): Promise<void> {
  const content = (await patchOf(services, paths)).toString('utf8');
  if (content === '') {
    void vscode.window.showInformationMessage(vscode.l10n.t('There are no changes in these.'));
    return;
  }
  const document = await vscode.workspace.openTextDocument({ language: 'diff', content });
  await vscode.window.showTextDocument(document);
}

async function applyPatch(services: Services, copy: WorkingCopy): Promise<void> {
  const active = vscode.window.activeTextEditor?.document;
  if (active?.languageId === 'diff') {
    await apply(services, copy, Buffer.from(active.getText(), 'utf8'));
    return;
  }
  const [file] =
    (await vscode.window.showOpenDialog({
      title: vscode.l10n.t('Apply which patch?'),
      openLabel: vscode.l10n.t('Apply'),
    })) ?? [];
  if (file) await apply(services, copy, Buffer.from(await vscode.workspace.fs.readFile(file)));
}

/** Answers whether everything fitted; where it did not, the person is told which files. */
async function apply(services: Services, copy: WorkingCopy, patch: Buffer): Promise<boolean> {
  const work = { title: vscode.l10n.t('Applying the patch'), copy, isLong: true };
  const params = { workingCopy: copy.path, base64: patch.toString('base64') };
  const { items } = await perform(services, work, 'change/patch', params);
  const refused = items.filter(({ action }) => action === 'conflicted' || action === 'skipped');
  if (refused.length === 0) {
    const done = vscode.l10n.t('Patched files: {0}', items.length);
    vscode.window.setStatusBarMessage(`$(check) ${done}`, 10_000);
    return true;
  }
  void vscode.window.showWarningMessage(
    vscode.l10n.t(
      'The patch did not fit everywhere. What is left stands beside each file, in .svnpatch.rej: {0}',
      refused.map(({ path }) => vscode.workspace.asRelativePath(path)).join(', '),
    ),
  );
  return false;
}

function shelfOf(services: Services, copy: WorkingCopy): vscode.Uri {
  const { storageUri, globalStorageUri } = services.context;
  const place = Buffer.from(copy.path).toString('base64url');
  return vscode.Uri.joinPath(storageUri ?? globalStorageUri, 'shelf', place);
}

/** What a patch cannot hold: bytes that are not text, and where something was copied from. */
function unfit(copy: WorkingCopy, paths: readonly string[], patch: Buffer): readonly string[] {
  const copied = paths.filter((path) => copy.items.get(path)?.copied === true);
  return patch.includes(binaryMark) ? paths : copied;
}

async function shelve(
  services: Services,
  copy: WorkingCopy,
  chosen: readonly string[],
): Promise<void> {
  const plan = await planOf(services, copy, 'revert', chosen);
  const paths = plan.items.map(({ path }) => path);
  const patch = await patchOf(services, chosen);
  const problems = unfit(copy, paths, patch);
  if (patch.length === 0 || problems.length > 0) {
    void vscode.window.showWarningMessage(
      patch.length === 0
        ? vscode.l10n.t('There are no changes in these.')
        : vscode.l10n.t('Copies and files that are not text cannot be shelved.'),
      { modal: true, detail: list('', problems) },
    );
    return;
  }
  const name = await vscode.window.showInputBox({
    title: vscode.l10n.t('Shelve under which name?'),
    ignoreFocusOut: true,
    validateInput: (text) =>
      /^[^/\\]+$/.test(text) ? undefined : vscode.l10n.t('A name without slashes.'),
  });
  if (name === undefined) return;
  const added = paths.filter((path) => copy.items.get(path)?.status === 'added');
  const file = vscode.Uri.joinPath(shelfOf(services, copy), name + ending);
  await writeNew(file, patch);
  const work = { title: vscode.l10n.t('Shelving'), copy, isLong: true };
  await perform(services, work, 'change/revert', { paths: chosen });
  // They are in the patch, byte for byte; the patch makes them again.
  for (const path of added) await vscode.workspace.fs.delete(vscode.Uri.file(path));
  await services.server.notify('workingCopy/didChange', { paths: added });
}

/** Never over another shelf; read again before the changes are taken away. */
async function writeNew(file: vscode.Uri, patch: Buffer): Promise<void> {
  const { fs } = vscode.workspace;
  const isThere = await fs.stat(file).then(
    () => true,
    () => false,
  );
  if (isThere) throw new Error(vscode.l10n.t('There is a shelf of that name already.'));
  await fs.writeFile(file, patch);
  if (!patch.equals(await fs.readFile(file))) {
    throw new Error(vscode.l10n.t('The shelf could not be written: {0}', file.fsPath));
  }
}

async function unshelve(services: Services, copy: WorkingCopy): Promise<void> {
  const { fs } = vscode.workspace;
  const shelf = shelfOf(services, copy);
  const files = await fs.readDirectory(shelf).then(
    (entries) => entries.map(([name]) => name),
    () => [], // Nothing was ever shelved here.
  );
  if (files.length === 0) {
    void vscode.window.showInformationMessage(vscode.l10n.t('Nothing is shelved.'));
    return;
  }
  const chosen = await vscode.window.showQuickPick(
    files.map((file) => ({ label: file.slice(0, -ending.length), file })),
    { title: vscode.l10n.t('Bring back what?') },
  );
  if (!chosen) return;
  const file = vscode.Uri.joinPath(shelf, chosen.file);
  const fitted = await apply(services, copy, Buffer.from(await fs.readFile(file)));
  if (fitted) await fs.delete(file); // Otherwise it stays: something of it is not in the files yet.
}
