import assert from 'node:assert/strict';
import * as vscode from 'vscode';
import { propertyUri } from '../../Source/attributes/propertyFiles';
import { answering, row } from './answers';
import type { HostTest } from './runner';
import {
  becomes,
  extension,
  file,
  folder,
  item,
  lines,
  run,
  svn,
  text,
  workingCopy,
} from './window';

export const attributeTests: readonly HostTest[] = [
  [
    'a changed file goes into a new changelist, and out of it',
    async () => {
      await answering(
        { showQuickPick: [row('New changelist')], showInputBox: ['calibration'] },
        () => run('quen.moveToChangelist', file('src/station.c')),
      );
      assert.equal((await item('src/station.c'))?.changelist, 'calibration');
      const { controls } = await extension();
      const committable = async () =>
        controls.committable(await workingCopy()).map(({ path }) => path);
      assert.ok((await committable()).includes(file('src/station.c').path));
      await answering({ showQuickPick: [row('ignore-on-commit')] }, () =>
        run('quen.moveToChangelist', file('src/station.c')),
      );
      assert.equal((await committable()).includes(file('src/station.c').path), false);
      await run('quen.removeFromChangelist', file('src/station.c'));
      assert.equal((await item('src/station.c'))?.changelist, undefined);
    },
  ],
  [
    'a property is an editor: what is saved there is set',
    async () => {
      const uri = propertyUri(file('README.md'), 'reviewed-by');
      const document = await vscode.workspace.openTextDocument(uri);
      const edit = new vscode.WorkspaceEdit();
      edit.insert(uri, new vscode.Position(0, 0), 'ann\nben\n');
      await vscode.workspace.applyEdit(edit);
      assert.ok(await document.save());
      assert.equal(svn('propget', '--no-newline', 'reviewed-by', 'README.md'), 'ann\nben\n');
      await run('quen.setProperty', file('README.md'), 'reviewed-by', null);
      assert.equal(svn('proplist', '--quiet', 'README.md').includes('reviewed-by'), false);
      await run('workbench.action.closeAllEditors');
    },
  ],
  [
    'a pattern joins the names that are ignored',
    async () => {
      await text(file('docs/x.log'), 'x');
      await text(file('docs/y.log'), 'y');
      await becomes('docs/y.log', 'unversioned');
      await answering({ showInputBox: [(options: unknown) => valueOf(options)] }, () =>
        run('quen.ignorePattern', file('docs/x.log')),
      );
      assert.equal(svn('propget', 'svn:ignore', 'docs').trim(), '*.log');
      await becomes('docs/y.log', undefined);
      svn('revert', 'docs');
      for (const name of ['x', 'y']) await vscode.workspace.fs.delete(file(`docs/${name}.log`));
    },
  ],
  [
    'a lock is got with its comment, shown, and released',
    async () => {
      await answering({ showInputBox: ['new calibration'] }, () =>
        run('quen.lock', file('README.md')),
      );
      assert.equal((await item('README.md'))?.lock?.comment, 'new calibration');
      await run('quen.unlock', file('README.md'));
      assert.equal((await item('README.md'))?.lock, undefined);
    },
  ],
  [
    'a lock of somebody else is taken only after a question that says whose it is',
    async () => {
      const url = svn('info', '--show-item', 'url', 'README.md').trim();
      svn('lock', '--force-log', '-m', 'theirs', url);
      const refused = await answering({ showInputBox: [''] }, () =>
        run('quen.lock', file('README.md')),
      );
      const question = refused.find(({ asking }) => asking === 'showWarningMessage');
      assert.match(JSON.stringify(question?.arguments), /already locked by user/);
      assert.equal((await item('README.md'))?.lock, undefined);
      await answering({ showInputBox: ['mine'], showWarningMessage: ['Take the Lock'] }, () =>
        run('quen.lock', file('README.md')),
      );
      assert.equal((await item('README.md'))?.lock?.comment, 'mine');
      await run('quen.unlock', file('README.md'));
    },
  ],
  [
    'a patch names files from the top, and is applied to another state',
    async () => {
      await run('quen.createPatch', file('src/station.c'));
      const document = vscode.window.activeTextEditor?.document;
      assert.equal(document?.languageId, 'diff');
      assert.match(document.getText(), /^Index: src\/station\.c\n/);
      const changed = await lines(file('src/station.c'));
      svn('revert', 'src/station.c');
      await becomes('src/station.c', undefined);
      await run('quen.applyPatch', folder());
      await becomes('src/station.c', 'modified');
      assert.deepEqual(await lines(file('src/station.c')), changed);
      await run('workbench.action.revertAndCloseActiveEditor');
    },
  ],
  [
    'shelved changes are gone, and come back as they were',
    async () => {
      const changed = await lines(file('src/station.c'));
      await answering({ showInputBox: ['two decimals'] }, () =>
        run('quen.shelve', file('src/station.c'), [file('src/station.c'), file('src/wind.c')]),
      );
      await becomes('src/station.c', undefined);
      await becomes('src/wind.c', undefined);
      await answering({ showQuickPick: [row('two decimals')] }, () =>
        run('quen.unshelve', folder()),
      );
      await becomes('src/station.c', 'modified');
      await becomes('src/wind.c', 'added');
      assert.deepEqual(await lines(file('src/station.c')), changed);
    },
  ],
  [
    'what a patch cannot hold is not shelved',
    async () => {
      await text(file('bytes.bin'), Uint8Array.from([0, 1, 2, 0, 255]));
      svn('add', '--quiet', 'bytes.bin');
      await becomes('bytes.bin', 'added');
      const asked = await answering({}, () => run('quen.shelve', file('bytes.bin')));
      assert.match(JSON.stringify(asked), /not text cannot be shelved/);
      assert.equal((await item('bytes.bin'))?.status, 'added');
      svn('revert', '--remove-added', 'bytes.bin');
      await becomes('bytes.bin', undefined);
    },
  ],
];

function valueOf(options: unknown): string {
  const { value } = options as { value: string };
  return value;
}
