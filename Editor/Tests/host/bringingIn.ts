import assert from 'node:assert/strict';
import { mkdtempSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import * as vscode from 'vscode';
import { answering, row } from './answers';
import type { HostTest } from './runner';
import { becomes, extension, file, folder, lines, run, svn, text, workingCopy } from './window';

/** Somebody else changes files of a directory in the repository. */
async function commitElsewhere(
  url: string,
  message: string,
  files: Readonly<Record<string, string>>,
): Promise<void> {
  const other = mkdtempSync(join(tmpdir(), 'quen-other-'));
  svn('checkout', '--quiet', url, other);
  for (const [name, content] of Object.entries(files)) {
    await text(vscode.Uri.file(join(other, name)), content);
  }
  svn('add', '--force', '--quiet', other);
  svn('commit', '--quiet', '-m', message, other);
  rmSync(other, { recursive: true });
}

export const bringingInTests: readonly HostTest[] = [
  [
    'incoming changes are taken one by one',
    async () => {
      const { services } = await extension();
      const copy = await workingCopy();
      svn('update', '--quiet');
      await commitElsewhere(copy.facts.url, 'Two files', { 'in1.txt': '1\n', 'in2.txt': '2\n' });
      await run('quen.checkIncoming', folder());
      const names = () => copy.incoming.map(({ path }) => path).sort();
      assert.deepEqual(names(), [file('in1.txt').path, file('in2.txt').path]);
      await run('quen.updateSelected', file('in1.txt'));
      assert.deepEqual(await lines(file('in1.txt')), ['1', '']);
      await services.copies.refreshIncoming(copy);
      assert.deepEqual(names(), [file('in2.txt').path]);
      await run('quen.update', folder());
      assert.deepEqual(names(), []);
    },
  ],
  [
    'an update to a revision goes back, and forth again',
    async () => {
      const copy = await workingCopy();
      const wanted = copy.facts.revision;
      svn('propset', '--quiet', 'p', 'v', 'in1.txt');
      svn('commit', '--quiet', '-m', 'A property', 'in1.txt');
      await answering(
        { showQuickPick: [row('Another revision')], showInputBox: [String(wanted)] },
        () => run('quen.updateToRevision', folder()),
      );
      const gone = copy.facts.revision;
      assert.equal(gone, wanted);
      await run('quen.update', folder());
      assert.notEqual(copy.facts.revision, gone);
    },
  ],
  [
    'where an update settled for mine, theirs is at hand',
    async () => {
      const copy = await workingCopy();
      await text(file('in2.txt'), 'mine\n');
      await becomes('in2.txt', 'modified');
      await commitElsewhere(copy.facts.url, 'Theirs', { 'in2.txt': 'theirs\n' });
      const asked = await answering({ showWarningMessage: ['Continue', undefined] }, () =>
        run('quen.update', folder()),
      );
      assert.match(JSON.stringify(asked[0]?.arguments), /in2\.txt/);
      const [settled] = copy.settled;
      assert.equal(settled?.path, file('in2.txt').path);
      assert.deepEqual(await lines(file('in2.txt')), ['mine', '']);
      await run('quen.openSettled', file('in2.txt'));
      const { activeTab } = vscode.window.tabGroups.activeTabGroup;
      assert.match(activeTab?.label ?? '', /in2\.txt/);
      await run('workbench.action.closeAllEditors');
      svn('revert', '--quiet', 'in2.txt');
    },
  ],
  [
    'a branch is merged, and what it brings is a change here',
    async () => {
      const copy = await workingCopy();
      const wind = `${copy.facts.repositoryRoot}/branches/wind`;
      await commitElsewhere(wind, 'Wind', { 'src/gust.c': 'int gust;\n' });
      await answering({ showQuickPick: [row('wind')], showWarningMessage: ['Continue'] }, () =>
        run('quen.merge', folder()),
      ).catch(async (error: unknown) => {
        // There was nothing to ask: both sides did not meet.
        if (!String(error).includes('showWarningMessage was not asked')) throw error;
        await Promise.resolve();
      });
      await becomes('src/gust.c', 'added');
      svn('revert', '--quiet', '--remove-added', 'src/gust.c', '.');
      await becomes('src/gust.c', undefined);
    },
  ],
  [
    'a switch goes to a branch and back',
    async () => {
      const copy = await workingCopy();
      const { url } = copy.facts;
      svn('revert', '--quiet', '--recursive', '--remove-added', '.');
      svn('update', '--quiet');
      await run('quen.refresh', folder());
      await answering({ showQuickPick: [row('wind')] }, () => run('quen.switch', folder()));
      assert.match(copy.facts.url, /branches\/wind$/);
      assert.equal(copy.facts.branch?.name, 'wind');
      await answering({ showQuickPick: [row('trunk')] }, () => run('quen.switch', folder()));
      assert.equal(copy.facts.url, url);
    },
  ],
];
