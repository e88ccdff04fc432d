import assert from 'node:assert/strict';
import * as vscode from 'vscode';
import { Messages } from '../../Source/blame/messages';
import { revisionUri } from '../../Source/content/revisionUri';
import { timelineOf } from '../../Source/history/timeline';
import { succeeded } from '../../Source/server/failures';
import type { HostTest } from './runner';
import { extension, file } from './window';

export const lookingBackTests: readonly HostTest[] = [
  [
    'the history of a file holds its revisions, each with its files',
    async () => {
      const { history } = await extension();
      await vscode.commands.executeCommand('quen.fileHistory', file('src/station.c'));
      assert.deepEqual(
        history.shown.map(({ revision, author }) => [revision, author]),
        [
          [4, 'ann'],
          [3, 'ben'],
          [2, 'ann'],
        ],
      );
      const [newest] = history.shown;
      assert.deepEqual(
        newest?.files?.map(({ path }) => path),
        ['/trunk/src/station.c'],
      );
    },
  ],
  [
    'a search finds by text and by author',
    async () => {
      const { history } = await extension();
      await vscode.commands.executeCommand('quen.repositoryHistory');
      await history.searchFor({ text: 'Fahrenheit' });
      assert.deepEqual(
        history.shown.map(({ revision }) => revision),
        [3],
      );
      await history.searchFor({ author: 'eve' });
      assert.deepEqual(
        history.shown.map(({ revision }) => revision),
        [7],
      );
    },
  ],
  [
    'blame tells the revision of every line, and what is not committed',
    async () => {
      const { services } = await extension();
      const answer = await services.server.request('file/blame', {
        path: file('src/station.c').path,
      });
      const { revisions, lines } = succeeded(answer);
      const document = await vscode.workspace.openTextDocument(file('src/station.c'));
      const of = (part: string) => {
        const line = document
          .getText()
          .split('\n')
          .findIndex((candidate) => candidate.includes(part));
        return revisions[lines[line] ?? -1]?.revision;
      };
      assert.equal(of('#include "sensor.h"'), 2);
      assert.equal(of('%d sensors'), 4);
      assert.equal(of('%6.2f'), undefined);
    },
  ],
  [
    'all files of a revision open in one editor',
    async () => {
      const { history } = await extension();
      await vscode.commands.executeCommand('quen.repositoryHistory');
      const [node] = await history.getChildren();
      await vscode.commands.executeCommand('quen.history.openAll', node);
      const tab = vscode.window.tabGroups.activeTabGroup.activeTab;
      assert.match(tab?.label ?? '', /^r\d+/);
      await vscode.commands.executeCommand('workbench.action.closeAllEditors');
    },
  ],
  [
    'a revision of a blamed line has its message, in its own repository alone',
    async () => {
      const { services } = await extension();
      const messages = new Messages(services);
      const place = { path: file('src/station.c').path };
      await messages.fetch(place, [4, 2]);
      assert.equal(messages.of(place, 4)?.trim(), 'Say how many sensors there are');
      assert.equal(messages.of(place, 2)?.trim(), 'Start the weather station');
      assert.equal(messages.of({ path: file('README.md').path }, 4), messages.of(place, 4));
      assert.equal(messages.of({ url: 'file:///elsewhere/trunk/station.c' }, 4), undefined);
    },
  ],
  [
    'the timeline of a file holds its revisions, each with its comparison',
    async () => {
      const { services } = await extension();
      const entries = await timelineOf(services, file('src/station.c'));
      assert.deepEqual(
        entries.map(({ id, label }) => [id, label]),
        [
          ['4', 'Say how many sensors there are'],
          ['3', 'Print the unit beside each value'],
          ['2', 'Start the weather station'],
        ],
      );
      const { command, arguments: sides } = entries[0]?.command ?? {};
      assert.equal(command, 'vscode.diff');
      const place = { path: file('src/station.c').path };
      assert.deepEqual(sides, [revisionUri(place, 3), revisionUri(place, 4), 'r3 ↔ r4']);
    },
  ],
];
