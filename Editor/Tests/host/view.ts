import assert from 'node:assert/strict';
import { readdirSync, readlinkSync } from 'node:fs';
import * as vscode from 'vscode';
import { groupOf } from '../../Source/model/words';
import type { HostTest } from './runner';
import { becomes, extension, file, runsOf, svn, text, workingCopy } from './window';

/** Waits until what earlier changes have set off has ended. */
async function quiet(): Promise<void> {
  for (let before = -1, now = await runsOf('status'); now !== before;) {
    before = now;
    await new Promise((resolve) => setTimeout(resolve, 1500));
    now = await runsOf('status');
  }
}

/** The programs that run now, each by the file that it was started from. */
function runningPrograms(): string[] {
  return readdirSync('/proc').flatMap((name) => {
    try {
      return /^\d+$/.test(name) ? readlinkSync(`/proc/${name}/exe`) : [];
    } catch {
      return []; // It has ended, or is somebody else's.
    }
  });
}

export const viewTests: readonly HostTest[] = [
  [
    'the server that runs is the one in the package',
    async () => {
      await workingCopy();
      const packaged = vscode.extensions.getExtension('quen.quen-subversion')?.extensionPath ?? '';
      assert.equal(
        runningPrograms().filter((program) => program === `${packaged}/server/bin/quen`).length,
        1,
      );
    },
  ],
  [
    'the demonstration lies in its groups',
    async () => {
      const copy = await workingCopy();
      const seen = [...copy.items.values()]
        .map((item) => [
          vscode.workspace.asRelativePath(item.path),
          item.changelist ?? groupOf(item),
          item.status,
        ])
        .sort((a, b) => ((a[0] ?? '') < (b[0] ?? '') ? -1 : 1));
      assert.deepEqual(seen, [
        ['Makefile', 'missing', 'missing'],
        ['README.md', 'changes', 'normal'],
        ['docs/old.md', 'changes', 'deleted'],
        ['docs/roof.md', 'documentation', 'modified'],
        ['notes.txt', 'unversioned', 'unversioned'],
        ['src/station.c', 'changes', 'modified'],
        ['src/wind.c', 'changes', 'added'],
      ]);
    },
  ],
  [
    'a working copy is one source control, however often it is opened',
    async () => {
      const { services } = await extension();
      const copy = await workingCopy();
      assert.equal(await services.copies.open(file('src').path), copy);
      assert.equal(services.copies.all.length, 1);
    },
  ],
  [
    'a save is seen within half a second, without a status of everything',
    async () => {
      const document = await vscode.workspace.openTextDocument(file('src/sensor.h'));
      const edit = new vscode.WorkspaceEdit();
      edit.insert(document.uri, new vscode.Position(0, 0), '/* new */\n');
      await vscode.workspace.applyEdit(edit);
      await document.save();
      const took = await becomes('src/sensor.h', 'modified');
      assert.ok(took <= 500, `it took ${took} ms`);
    },
  ],
  [
    'a command in a terminal is seen within a second',
    async () => {
      svn('revert', 'src/sensor.h');
      const took = await becomes('src/sensor.h', undefined);
      assert.ok(took <= 1000, `it took ${took} ms`);
    },
  ],
  [
    'a new file is seen, and its going too',
    async () => {
      await text(file('fresh.txt'), 'fresh');
      await becomes('fresh.txt', 'unversioned');
      await vscode.workspace.fs.delete(file('fresh.txt'));
      await becomes('fresh.txt', undefined);
    },
  ],
  [
    'opening twenty comparisons runs no status',
    async () => {
      await quiet();
      const before = await runsOf('status');
      for (let turn = 0; turn < 20; turn += 1) {
        const name = ['src/station.c', 'docs/roof.md'][turn % 2] ?? '';
        await vscode.commands.executeCommand('quen.openChange', file(name));
      }
      assert.equal((await runsOf('status')) - before, 0);
      await vscode.commands.executeCommand('workbench.action.closeAllEditors');
    },
  ],
];
