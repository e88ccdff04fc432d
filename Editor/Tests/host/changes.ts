import assert from 'node:assert/strict';
import * as vscode from 'vscode';
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

async function box(): Promise<vscode.SourceControlInputBox> {
  const { controls } = await extension();
  const found = controls.inputBoxOf(await workingCopy());
  assert.ok(found);
  return found;
}

export const changesTests: readonly HostTest[] = [
  [
    'a rename in the explorer keeps the history',
    async () => {
      const edit = new vscode.WorkspaceEdit();
      edit.renameFile(file('src/sensor.h'), file('src/probe.h'));
      await vscode.workspace.applyEdit(edit);
      await becomes('src/probe.h', 'added');
      assert.equal((await item('src/probe.h'))?.copied, true);
      assert.match(svn('info', 'src/probe.h'), /Moved From: src\/sensor\.h/);
    },
  ],
  [
    'a delete in the explorer is a removal, not a missing file',
    async () => {
      const edit = new vscode.WorkspaceEdit();
      edit.deleteFile(file('base.txt'));
      await vscode.workspace.applyEdit(edit);
      await becomes('base.txt', 'deleted');
    },
  ],
  [
    'add and ignore change what the view says',
    async () => {
      await text(file('new.txt'), 'new\n');
      await becomes('new.txt', 'unversioned');
      await vscode.commands.executeCommand('quen.add', file('new.txt'));
      await becomes('new.txt', 'added');
      await vscode.commands.executeCommand('quen.ignore', file('notes.txt'));
      await becomes('notes.txt', undefined);
    },
  ],
  [
    'a commit of chosen files takes those alone, and empties the box afterwards',
    async () => {
      const input = await box();
      input.value = 'Add new.txt';
      await vscode.commands.executeCommand('quen.commitSelected', file('new.txt'));
      assert.equal(input.value, '');
      await becomes('new.txt', undefined);
      assert.match(svn('log', '-v', '-l', '1', '-r', 'HEAD', '.'), /A \/trunk\/new\.txt/);
      assert.equal((await item('src/station.c'))?.status, 'modified');
    },
  ],
  [
    'a commit that fails leaves the message in the box',
    async () => {
      const input = await box();
      svn('update');
      // Out of date: the same line was changed in the repository meanwhile.
      const url = svn('info', '--show-item', 'url').trim();
      svn('checkout', '--quiet', url, '/tmp/quen-colleague-' + String(process.pid));
      const theirs = vscode.Uri.file(`/tmp/quen-colleague-${process.pid}/new.txt`);
      await text(theirs, 'theirs\n');
      svn('commit', '-m', 'Theirs', theirs.path);
      await text(file('new.txt'), 'mine\n');
      await becomes('new.txt', 'modified');
      input.value = 'Will be refused';
      await vscode.commands.executeCommand('quen.commitSelected', file('new.txt'));
      assert.equal(input.value, 'Will be refused');
      input.value = '';
      await vscode.workspace.fs.delete(vscode.Uri.file(`/tmp/quen-colleague-${process.pid}`), {
        recursive: true,
      });
    },
  ],
  [
    'an earlier message comes back into the box',
    async () => {
      const input = await box();
      await answering({ showQuickPick: [row('Add new.txt')] }, () => run('quen.messageHistory'));
      assert.equal(input.value, 'Add new.txt');
      input.value = '';
    },
  ],
  [
    'what is missing is removed in one step, and brought back by a revert',
    async () => {
      if ((await item('Makefile')) === undefined) {
        await vscode.workspace.fs.delete(file('Makefile')); // An update has brought it back.
      }
      await becomes('Makefile', 'missing');
      await run('quen.remove', file('Makefile'));
      await becomes('Makefile', 'deleted');
      await answering({ showWarningMessage: ['Revert'] }, () =>
        run('quen.revert', file('Makefile')),
      );
      await becomes('Makefile', undefined);
    },
  ],
  [
    'a revert is undone with texts, properties, additions and removals',
    async () => {
      await text(file('Makefile'), 'all:\n');
      svn('propset', '--quiet', 'p', 'v', 'Makefile');
      await becomes('Makefile', 'modified');
      const chosen = ['Makefile', 'src/wind.c', 'docs/old.md', 'src/station.c'].map(file);
      const before = await lines(file('src/station.c'));
      const asked = await answering(
        { showWarningMessage: ['Revert'], showInformationMessage: [undefined] },
        () => run('quen.revert', chosen[0], chosen),
      );
      assert.match(JSON.stringify(asked[0]?.arguments), /Makefile.*station\.c/);
      await becomes('src/station.c', undefined);
      await run('quen.undoRevert');
      await becomes('src/station.c', 'modified');
      await becomes('src/wind.c', 'added');
      await becomes('docs/old.md', 'deleted');
      assert.deepEqual(await lines(file('src/station.c')), before);
      assert.equal(svn('propget', '--no-newline', 'p', 'Makefile'), 'v');
      svn('revert', '--quiet', 'Makefile');
    },
  ],
  [
    'an ignored name is seen again once it is taken out',
    async () => {
      await run('quen.unignore', file('notes.txt'));
      await becomes('notes.txt', 'unversioned');
    },
  ],
  [
    'incoming changes are a list of their own',
    async () => {
      const { services } = await extension();
      const copy = await workingCopy();
      await services.copies.refreshIncoming(copy);
      assert.deepEqual(
        copy.incoming.map(({ path, incoming }) => [path, incoming]),
        [[file('new.txt').path, 'modified']],
      );
    },
  ],
  [
    'nothing of the extension ran in the opened folder',
    async () => {
      const names = (await vscode.workspace.fs.readDirectory(folder())).map(([name]) => name);
      assert.equal(names.filter((name) => name.startsWith('quen')).length, 0);
    },
  ],
];
