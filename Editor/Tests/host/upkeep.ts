import assert from 'node:assert/strict';
import { mkdtempSync, renameSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { fileURLToPath } from 'node:url';
import { join } from 'node:path';
import * as vscode from 'vscode';
import { issuesIn } from '../../Source/history/links';
import { answering, row } from './answers';
import type { HostTest } from './runner';
import { until } from './runner';
import { becomes, extension, file, folder, item, run, svn, text, workingCopy } from './window';

async function repositoryRoot(): Promise<string> {
  return (await workingCopy()).facts.repositoryRoot;
}

async function firstEntry() {
  const { history } = await extension();
  await run('quen.repositoryHistory');
  const [node] = await history.getChildren();
  assert.ok(node?.kind === 'entry');
  return node;
}

/** Neither a working copy of its own nor what lies in it is a row of the one around it. */
async function isNoRowOutside(name: string): Promise<void> {
  const { controls } = await extension();
  const outer = await workingCopy();
  const { path } = file(name);
  await until(() => controls.rowsOf(outer).every((row) => !row.startsWith(path)));
}

export const upkeepTests: readonly HostTest[] = [
  [
    'a copy keeps the history',
    async () => {
      await answering({ showSaveDialog: [file('src/sensor2.h')] }, () =>
        run('quen.copyTo', file('README.md')),
      );
      assert.equal((await item('src/sensor2.h'))?.copied, true);
      svn('revert', '--quiet', '--remove-added', 'src/sensor2.h');
      await becomes('src/sensor2.h', undefined);
    },
  ],
  [
    'a folder is imported',
    async () => {
      const directory = mkdtempSync(join(tmpdir(), 'quen-import-'));
      await text(vscode.Uri.file(join(directory, 'new.txt')), 'new\n');
      const url = `${await repositoryRoot()}/imported`;
      await answering({ showInputBox: [url, 'Imported'] }, () =>
        run('quen.import', vscode.Uri.file(directory)),
      );
      assert.equal(svn('list', url), 'new.txt\n');
      rmSync(directory, { recursive: true });
    },
  ],
  [
    'an old message gets new words, and the history shows them',
    async () => {
      const node = await firstEntry();
      await answering({ showInputBox: ['Other words, see #12'] }, () =>
        run('quen.history.editMessage', node),
      );
      const { revision } = node.entry;
      assert.match(svn('log', '-r', String(revision), await repositoryRoot()), /Other words/);
      assert.equal((await firstEntry()).entry.message, 'Other words, see #12');
    },
  ],
  [
    'a message names its issues by the working copy’s own properties',
    async () => {
      const { services } = await extension();
      assert.deepEqual(await issuesIn(services, 'see #12'), []);
      svn('propset', '--quiet', 'bugtraq:url', 'https://host/issues/%BUGID%', '.');
      assert.deepEqual(await issuesIn(services, 'see #12 and #7'), [
        { label: '12', description: 'https://host/issues/12' },
        { label: '7', description: 'https://host/issues/7' },
      ]);
      svn('propdel', '--quiet', 'bugtraq:url', '.');
    },
  ],
  [
    'a working copy follows its repository to another place',
    async () => {
      const copy = await workingCopy();
      const { url } = copy.facts;
      const before = fileURLToPath(copy.facts.repositoryRoot);
      const moveTo = async (from: string, to: string, address: string) => {
        renameSync(from, to);
        await answering({ showInputBox: [address] }, () => run('quen.relocate', folder()));
        assert.equal(copy.facts.url, address);
      };
      const elsewhere = url.replace(before, `${before}-moved`);
      await moveTo(before, `${before}-moved`, elsewhere);
      await moveTo(`${before}-moved`, before, url);
    },
  ],
  [
    'the client’s own settings open, with a place for a proxy',
    async () => {
      await workingCopy(); // The client has run: its files are there.
      await answering({ showQuickPick: [row('Servers')] }, () => run('quen.openClientSettings'));
      const document = vscode.window.activeTextEditor?.document;
      assert.match(document?.getText() ?? '', /http-proxy-host/);
      await run('workbench.action.closeAllEditors');
    },
  ],
  [
    'clean up ends without a word where there is nothing to do',
    async () => {
      const asked = await answering({}, () => run('quen.cleanUp', folder()));
      assert.deepEqual(asked, []);
    },
  ],
  [
    'an external is a working copy of its own, found when it comes',
    async () => {
      const { services } = await extension();
      svn('propset', '--quiet', 'svn:externals', '^/imported shared', '.');
      svn('update', '--quiet');
      const external = await until(() => services.copies.get(file('shared').path));
      assert.match(external.facts.url, /\/imported$/);
      await text(file('shared/new.txt'), 'changed\n');
      await until(() => external.items.get(file('shared/new.txt').path));
      await isNoRowOutside('shared');
      svn('revert', '--quiet', '.');
      svn('cleanup', '--quiet', '--include-externals');
      await services.copies.close(external);
      await vscode.workspace.fs.delete(file('shared'), { recursive: true });
    },
  ],
  [
    'the repository is a tree, with what is locked',
    async () => {
      const { repository } = await extension();
      const [root] = await repository.getChildren();
      assert.ok(root);
      const names = (await repository.getChildren(root)).map(({ entry }) => entry?.name);
      assert.deepEqual(names, ['branches', 'imported', 'tags', 'trunk']);
    },
  ],
  [
    'a tag and a branch are made, and a branch is deleted',
    async () => {
      const root = await repositoryRoot();
      await answering({ showInputBox: ['2.0', 'Release 2.0'] }, () =>
        run('quen.createTag', folder()),
      );
      assert.match(svn('list', `${root}/tags`), /2\.0\//);
      await answering({ showInputBox: ['rain', 'For the rain sensor'] }, () =>
        run('quen.createBranch', folder()),
      );
      assert.match(svn('list', `${root}/branches`), /rain\//);
      await answering(
        { showQuickPick: [row('rain')], showWarningMessage: ['Delete'], showInputBox: ['Away'] },
        () => run('quen.deleteBranch', folder()),
      );
      assert.doesNotMatch(svn('list', `${root}/branches`), /rain\//);
    },
  ],
  [
    'a working copy inside another one is one of its own',
    async () => {
      const { services } = await extension();
      const { facts } = await workingCopy();
      svn('checkout', '--quiet', `${facts.repositoryRoot}/imported`, 'nested');
      const nested = await until(() => services.copies.get(file('nested').path));
      assert.equal(services.copies.of(file('nested/new.txt')), nested);
      assert.equal(services.copies.of(file('README.md')), await workingCopy());
      await isNoRowOutside('nested');
      await services.copies.close(nested);
      await vscode.workspace.fs.delete(file('nested'), { recursive: true });
    },
  ],
  [
    'a checkout asks where from and where to, and makes a working copy there',
    async () => {
      const parent = mkdtempSync(join(tmpdir(), 'quen-checkout-'));
      const url = `${await repositoryRoot()}/imported`;
      const asked = await answering(
        { showInputBox: [url, 'fresh'], showOpenDialog: [[vscode.Uri.file(parent)]] },
        () => run('quen.checkout'),
      );
      assert.equal(svn('info', '--show-item', 'url', join(parent, 'fresh')).trim(), url);
      assert.match(JSON.stringify(asked.at(-1)?.arguments), /Checked out into/);
      rmSync(parent, { recursive: true });
    },
  ],
  [
    'a branch is marked as merged without its changes',
    async () => {
      svn('update', '--quiet');
      await answering({ showQuickPick: [row('wind')] }, () => run('quen.recordMerge', folder()));
      assert.match(svn('propget', 'svn:mergeinfo', '.'), /branches\/wind/);
      svn('revert', '--quiet', '.');
    },
  ],
];
