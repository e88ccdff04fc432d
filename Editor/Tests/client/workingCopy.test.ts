// The typed client against the real server, on real repositories.

import assert from 'node:assert/strict';
import { existsSync, readFileSync, renameSync } from 'node:fs';
import { test } from 'node:test';
import { CancellationTokenSource } from 'vscode-jsonrpc/node';
import { Cancelled, OperationFailed, succeeded } from '../../Source/server/failures';
import type { Item } from '../../Source/server/protocol';
import { makeDemonstration, type Demonstration } from '../../Workbench/demonstration';
import { Sandbox } from '../../Workbench/repository';
import { realServer, type RealServer } from './realServer';

interface Stage extends Demonstration, RealServer {
  readonly sandbox: Sandbox;
}

function journey(name: string, run: (stage: Stage) => Promise<void>): void {
  test(name, { timeout: 60_000 }, async () => {
    const sandbox = new Sandbox();
    const demonstration = makeDemonstration(sandbox);
    const real = realServer();
    try {
      await run({ ...demonstration, ...real, sandbox });
    } finally {
      await real.server.stop();
      sandbox.remove();
    }
  });
}

async function itemsOf({ server, copy }: Stage): Promise<Map<string, Item>> {
  const status = await server.request('workingCopy/status', { workingCopy: copy.root });
  return new Map(
    succeeded(status).items.map((item) => [item.path.slice(copy.root.length + 1), item]),
  );
}

journey('opening finds the working copy above a path, once', async (stage) => {
  const { server, copy, url } = stage;
  const facts = await server.request('workingCopy/open', { path: copy.path('src') });
  assert.equal(facts?.workingCopy, copy.root);
  assert.equal(facts.url, `${url}/trunk`);
  assert.equal(facts.repositoryRoot, url);
  assert.deepEqual(facts.branch, { name: 'trunk', isTrunk: true });
});

journey('a directory outside of any working copy answers null', async ({ server, sandbox }) => {
  assert.equal(await server.request('workingCopy/open', { path: sandbox.directory }), null);
});

journey('the status has every item, with its changelist', async (stage) => {
  await stage.server.request('workingCopy/open', { path: stage.copy.root });
  const items = await itemsOf(stage);
  const words = [...items].map(([path, { status, property, changelist }]) => [
    path,
    status,
    property,
    changelist,
  ]);
  assert.deepEqual(words.sort(), [
    ['Makefile', 'missing', 'none', undefined],
    ['README.md', 'normal', 'modified', undefined],
    ['docs/old.md', 'deleted', 'none', undefined],
    ['docs/roof.md', 'modified', 'none', 'documentation'],
    ['notes.txt', 'unversioned', 'none', undefined],
    ['src/station.c', 'modified', 'none', undefined],
    ['src/wind.c', 'added', 'none', undefined],
  ]);
});

journey('a touched file comes as a difference, and nothing else', async (stage) => {
  const { server, copy, changeThat } = stage;
  await server.request('workingCopy/open', { path: copy.root });
  copy.write({ 'src/sensor.h': '/* changed */\n' });
  await server.notify('workingCopy/didChange', { paths: [copy.path('src/sensor.h')] });
  const change = await changeThat(({ changed }) => changed.length > 0);
  assert.deepEqual(
    change.changed.map(({ path, status }) => [path, status]),
    [[copy.path('src/sensor.h'), 'modified']],
  );
  assert.deepEqual(change.removed, []);
});

journey('a command in a terminal is seen without being told', async (stage) => {
  const { server, copy, changeThat } = stage;
  await server.request('workingCopy/open', { path: copy.root });
  copy.svn('revert', 'src/station.c');
  const change = await changeThat(({ removed }) => removed.length > 0);
  assert.deepEqual(change.removed, [copy.path('src/station.c')]);
});

journey('contents come byte for byte and run no status', async (stage) => {
  const { server, copy } = stage;
  const bytes = Buffer.from([0xff, 0xfe, 0, 10, 13, 0xe9]);
  copy.commit('Bytes', { 'bytes.bin': bytes });
  await server.request('workingCopy/open', { path: copy.root });
  const before = (await server.request('server/statistics', {})).clientRuns.status ?? 0;
  const answer = await server.request('file/content', {
    path: copy.path('bytes.bin'),
    revision: 'BASE',
  });
  assert.deepEqual(Buffer.from(succeeded(answer).base64 ?? '', 'base64'), bytes);
  assert.equal((await server.request('server/statistics', {})).clientRuns.status ?? 0, before);
});

journey('a commit of one file takes that file alone', async (stage) => {
  const { server, copy, url } = stage;
  await server.request('workingCopy/open', { path: copy.root });
  const paths = [copy.path('src/station.c')];
  const { revision } = succeeded(
    await server.request('change/commit', { paths, message: 'Привет\n日本' }),
  );
  assert.equal(revision, 8);
  assert.match(copy.svn('log', '-v', '-r', '8', url), /M \/trunk\/src\/station\.c\n\nПривет\n日本/);
  assert.equal((await itemsOf(stage)).get('docs/roof.md')?.status, 'modified');
});

journey(
  'a commit that the repository refuses is a failure with the client’s words',
  async (stage) => {
    const { server, copy, other } = stage;
    other.commit('Theirs', { 'src/station.c': 'int main(void) { return 1; }\n' });
    await server.request('workingCopy/open', { path: copy.root });
    const answer = await server.request('change/commit', {
      paths: [copy.path('src/station.c')],
      message: 'Mine',
    });
    assert.equal(answer.revision, null);
    assert.throws(
      () => succeeded(answer),
      (error) =>
        error instanceof OperationFailed &&
        /out.of.date/i.test(`${error.message} ${error.error?.clientText ?? ''}`),
    );
  },
);

journey('a move that the editor has made keeps its history', async (stage) => {
  const { server, copy } = stage;
  await server.request('workingCopy/open', { path: copy.root });
  const [from, to] = [copy.path('src/sensor.h'), copy.path('src/probe.h')];
  renameSync(from, to);
  succeeded(await server.request('change/adoptMove', { from, to }));
  assert.ok(existsSync(to) && !existsSync(from));
  assert.match(copy.svn('info', 'src/probe.h'), /Moved From: src\/sensor\.h/);
});

journey('an update settles for mine, and says so', async (stage) => {
  const { server, copy, other } = stage;
  other.commit('Theirs', { 'docs/roof.md': 'The ladder is in the attic.\n' });
  await server.request('workingCopy/open', { path: copy.root });
  const result = succeeded(await server.request('workingCopy/update', { paths: [copy.root] }));
  assert.equal(result.revision, 8);
  assert.deepEqual(
    result.settled.map(({ path, kind }) => [path, kind]),
    [[copy.path('docs/roof.md'), 'text']],
  );
  assert.match(readFileSync(copy.path('docs/roof.md'), 'utf8'), /cellar/);
});

journey('history, search and blame', async (stage) => {
  const { server, copy } = stage;
  const path = copy.path('src/station.c');
  const log = succeeded(await server.request('history/log', { path, limit: 2, files: true }));
  assert.deepEqual(
    log.entries.map(({ revision, author }) => [revision, author]),
    [
      [4, 'ann'],
      [3, 'ben'],
    ],
  );
  assert.deepEqual(log.entries[0]?.files, [{ path: '/trunk/src/station.c', action: 'modified' }]);
  assert.equal(log.next, 2);
  const found = succeeded(
    await server.request('history/search', { path: copy.root, limit: 9, text: 'fahrenheit' }),
  );
  assert.deepEqual(
    found.entries.map(({ revision }) => revision),
    [3],
  );
  const blame = succeeded(await server.request('file/blame', { path }));
  assert.equal(blame.lines.filter((index) => index === -1).length, 1);
});

journey('a cancelled request is answered as cancelled', async (stage) => {
  const { server, copy } = stage;
  await server.request('workingCopy/open', { path: copy.root });
  const source = new CancellationTokenSource();
  const log = server.request(
    'history/log',
    { path: copy.root, limit: 50 },
    { token: source.token },
  );
  source.cancel();
  await assert.rejects(log, (error) => error instanceof Cancelled && !error.mayHaveLeftLock);
});

journey('branches are listed with their URLs', async (stage) => {
  const { server, copy, url } = stage;
  await server.request('workingCopy/open', { path: copy.root });
  const { branches } = succeeded(await server.request('branch/list', { workingCopy: copy.root }));
  assert.deepEqual(branches, [
    { name: 'trunk', isTrunk: true, url: `${url}/trunk` },
    { name: 'wind', isTrunk: false, url: `${url}/branches/wind` },
  ]);
});
