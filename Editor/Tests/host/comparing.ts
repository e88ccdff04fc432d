import assert from 'node:assert/strict';
import * as vscode from 'vscode';
import { repositoryUrl } from '../../Source/history/repositoryUrl';
import type { EntryNode } from '../../Source/history/nodes';
import { answering, row } from './answers';
import type { HostTest } from './runner';
import { groupOf, describe } from '../../Source/model/words';
import { until } from './runner';
import { becomes, extension, file, folder, item, run, svn, text, workingCopy } from './window';

function diffTab(): vscode.TabInputTextDiff {
  const { activeTab } = vscode.window.tabGroups.activeTabGroup;
  assert.ok(activeTab?.input instanceof vscode.TabInputTextDiff, activeTab?.label);
  return activeTab.input;
}

/** What the editor for several files was given, while `open` runs. */
async function filesOpened(open: () => Thenable<unknown>): Promise<(readonly vscode.Uri[])[]> {
  const commands = vscode.commands as { executeCommand: typeof vscode.commands.executeCommand };
  const before = commands.executeCommand;
  const opened: (readonly vscode.Uri[])[] = [];
  commands.executeCommand = ((id: string, ...args: unknown[]) => {
    if (id === 'vscode.changes') opened.push(...(args[1] as (readonly vscode.Uri[])[]));
    return before(id, ...args);
  }) as typeof vscode.commands.executeCommand;
  try {
    await open();
  } finally {
    commands.executeCommand = before;
  }
  return opened;
}

async function read(uri: vscode.Uri | undefined): Promise<string> {
  assert.ok(uri);
  return Buffer.from(await vscode.workspace.fs.readFile(uri)).toString();
}

function isUnsaved(uri: vscode.Uri): boolean {
  return vscode.workspace.textDocuments.some(
    (document) => document.uri.path === uri.path && document.isDirty,
  );
}

async function newestEntry(): Promise<EntryNode> {
  const { history } = await extension();
  await run('quen.fileHistory', file('src/station.c'));
  const [node] = await history.getChildren();
  assert.ok(node?.kind === 'entry');
  return node;
}

export const comparingTests: readonly HostTest[] = [
  [
    'any two are compared, chosen one after the other',
    async () => {
      await run('quen.selectForCompare', file('README.md'));
      await run('quen.compareWithSelected', file('src/station.c'));
      const { original, modified } = diffTab();
      assert.deepEqual(
        [original.path, modified.path],
        [file('README.md').path, file('src/station.c').path],
      );
      await run('quen.selectForCompare', await newestEntry());
      await run('quen.compareWithSelected', file('src/station.c'));
      assert.match(await read(diffTab().original), /%d sensors/);
      await run('workbench.action.closeAllEditors');
    },
  ],
  [
    'a file is compared with HEAD, a revision, and a place in the repository',
    async () => {
      const station = file('src/station.c');
      await answering({ showQuickPick: [row('HEAD')] }, () =>
        run('quen.compareWithAnything', station),
      );
      assert.match(await read(diffTab().original), /%\.1f C/);
      await answering({ showQuickPick: [row('A revision'), row('r2')] }, () =>
        run('quen.compareWithAnything', station),
      );
      assert.doesNotMatch(await read(diffTab().original), /sensors\\n/);
      const { facts } = await workingCopy();
      const url = repositoryUrl(facts.repositoryRoot, '/branches/wind/src/station.c');
      await answering({ showQuickPick: [row('A URL')], showInputBox: [url] }, () =>
        run('quen.compareWithAnything', station),
      );
      assert.match(await read(diffTab().original), /%d sensors/);
      await answering({ showQuickPick: [row('r3')] }, () =>
        run('quen.compareWithRevision', station),
      );
      assert.match(await read(diffTab().original), /%\.1f C/);
      await run('quen.compareWithBase', station);
      assert.equal(diffTab().modified.path, station.path);
      await run('workbench.action.closeAllEditors');
    },
  ],
  [
    'two branches are compared in one editor',
    async () => {
      const opened = await filesOpened(() =>
        answering({ showQuickPick: [row('wind')] }, () => run('quen.compareBranches', folder())),
      );
      const names = opened.map(([uri]) => uri?.path.split('/').at(-1)).sort();
      assert.ok(names.includes('roof.md') && names.includes('old.md'), names.join(' '));
      const roof = opened.find(([uri]) => uri?.path.endsWith('roof.md'));
      assert.match(await read(roof?.[1]), /ladder/);
      assert.equal(await read(roof?.[2]), '');
      await run('workbench.action.closeAllEditors');
    },
  ],
  [
    'all changes of a group open in one editor',
    async () => {
      const opened = await filesOpened(() =>
        run('quen.openAllChanges', file('src/station.c'), [
          file('src/station.c'),
          file('src/wind.c'),
        ]),
      );
      assert.equal(opened.length, 2);
      assert.match(await read(opened[0]?.[1]), /%\.1f C/);
      await run('workbench.action.closeAllEditors');
    },
  ],
  [
    'the change of a revision opens from its row',
    async () => {
      await run('quen.history.openFileChange', await newestEntry());
      assert.doesNotMatch(await read(diffTab().original), /%d sensors/);
      assert.match(await read(diffTab().modified), /%d sensors/);
      await run('workbench.action.closeAllEditors');
    },
  ],
  [
    'blame goes back before the revision of a line',
    async () => {
      const document = await vscode.workspace.openTextDocument(file('src/station.c'));
      const editor = await vscode.window.showTextDocument(document);
      const line = document
        .getText()
        .split('\n')
        .findIndex((each) => each.includes('%d sensors'));
      editor.selection = new vscode.Selection(line, 0, line, 0);
      await run('quen.blamePrevious');
      const before = vscode.window.activeTextEditor?.document;
      assert.equal(before?.uri.scheme, 'quen');
      assert.doesNotMatch(before.getText(), /%d sensors/);
      assert.match(before.getText(), /%\.1f C/);
      await run('workbench.action.closeAllEditors');
    },
  ],
  [
    'the history of chosen lines holds the revisions that changed them',
    async () => {
      const { history } = await extension();
      const document = await vscode.workspace.openTextDocument(file('src/station.c'));
      const editor = await vscode.window.showTextDocument(document);
      const line = document
        .getText()
        .split('\n')
        .findIndex((each) => each.includes('%d sensors'));
      editor.selection = new vscode.Selection(line, 0, line, 4);
      await run('quen.selectionHistory');
      assert.deepEqual(
        history.shown.map(({ revision }) => revision),
        [4],
      );
      await run('workbench.action.closeAllEditors');
    },
  ],
  [
    'a conflict that a command in a terminal has left opens with both sides, and is resolved',
    async () => {
      await text(file('both.txt'), 'one\ntwo\n');
      svn('add', '--quiet', 'both.txt');
      svn('commit', '-m', 'Both', 'both.txt');
      await text(file('both.txt'), 'one\ntheirs\n');
      svn('commit', '-m', 'Theirs', 'both.txt');
      svn('update', '--quiet', '-r', 'PREV', 'both.txt');
      await text(file('both.txt'), 'one\nmine\n');
      svn('update', '--quiet', '--accept', 'postpone', 'both.txt');
      await becomes('both.txt', 'conflicted');
      await run('quen.openChange', file('both.txt'));
      const { activeTab } = vscode.window.tabGroups.activeTabGroup;
      assert.match(activeTab?.label ?? '', /^Merging: both\.txt/);
      // The merge editor puts its result in the place of the client's marks, once it has read both.
      await until(() => isUnsaved(file('both.txt')));
      await vscode.workspace.saveAll(false);
      assert.doesNotMatch(await read(file('both.txt')), /<<<<<<</);
      await run('workbench.action.closeAllEditors');
      await answering({ showQuickPick: [row('Mine, all of it')] }, () =>
        run('quen.resolve', file('both.txt')),
      );
      await becomes('both.txt', 'modified');
      assert.equal(await read(file('both.txt')), 'one\nmine\n');
      svn('revert', '--quiet', 'both.txt');
      await becomes('both.txt', undefined);
    },
  ],
  [
    'a conflict of properties is a conflict, shown with both values, and is resolved',
    async () => {
      svn('propset', '--quiet', 'reviewed-by', 'ann', 'both.txt');
      svn('commit', '-m', 'Ann', 'both.txt');
      svn('update', '--quiet', '-r', 'PREV', 'both.txt');
      svn('propset', '--quiet', 'reviewed-by', 'ben', 'both.txt');
      svn('update', '--quiet', '--accept', 'postpone', 'both.txt');
      await until(async () => (await item('both.txt'))?.property === 'conflicted');
      const conflicted = await item('both.txt');
      assert.ok(conflicted);
      assert.equal(groupOf(conflicted), 'conflicts');
      assert.match(describe(conflicted), /conflict in the properties/);
      await run('quen.openChange', file('both.txt'));
      const words = vscode.window.activeTextEditor?.document.getText() ?? '';
      assert.match(words, /ann/);
      assert.match(words, /ben/);
      await run('workbench.action.closeAllEditors');
      await answering({ showQuickPick: [row('Theirs, all of it')] }, () =>
        run('quen.resolve', file('both.txt')),
      );
      await becomes('both.txt', undefined);
      assert.equal(svn('propget', '--no-newline', 'reviewed-by', 'both.txt'), 'ann');
    },
  ],
  [
    'a tree conflict is a conflict, in words too',
    async () => {
      const last = svn('info', '--show-item', 'revision', 'both.txt').trim();
      svn('delete', '--quiet', 'both.txt');
      svn('commit', '-m', 'No longer', 'both.txt');
      svn('update', '--quiet', '-r', last, 'both.txt');
      await text(file('both.txt'), 'changed\n');
      svn('update', '--quiet', '--accept', 'postpone', 'both.txt');
      await becomes('both.txt', 'added');
      const conflicted = await item('both.txt');
      assert.equal(conflicted?.treeConflict, true);
      const { controls } = await extension();
      const names = controls.committable(await workingCopy()).map(({ path }) => path);
      assert.equal(names.includes(file('both.txt').path), false);
      svn('resolve', '--quiet', '--accept', 'working', 'both.txt');
      svn('revert', '--quiet', '--remove-added', 'both.txt');
      await becomes('both.txt', undefined);
    },
  ],
];
