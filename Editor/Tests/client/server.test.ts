// The server's client against a server that misbehaves on demand.

import assert from 'node:assert/strict';
import { test } from 'node:test';
import { CancellationTokenSource } from 'vscode-jsonrpc/node';
import { Cancelled, ServerUnavailable } from '../../Source/server/failures';
import type { ServerNotifications } from '../../Source/server/protocol';
import { Server, type ServerSetup, type ServerState } from '../../Source/server/server';

interface Heard {
  readonly states: ServerState[];
  readonly changed: ServerNotifications['workingCopy/changed'][];
}

const bound = { timeout: 20_000 };

function serverThat(behaviour: string, heard?: Heard, changes: Partial<ServerSetup> = {}): Server {
  return new Server({
    locate: () =>
      Promise.resolve({
        program: process.execPath,
        arguments: [`${__dirname}/fakeServer.js`, behaviour],
      }),
    options: () => ({ clientInfo: { name: 'test', version: '0' }, options: {} }),
    ask: () => Promise.resolve(null as never),
    listen: (name, params) => {
      if (name === 'workingCopy/changed') heard?.changed.push(params as never);
    },
    onState: (state) => heard?.states.push(state),
    versions: ['0.1'],
    firstDelay: 1,
    crashesInARow: 3,
    ...changes,
  });
}

const kinds = (heard: Heard) => heard.states.map((state) => state.kind);

test('a request starts the server, and stopping ends it', bound, async () => {
  const heard: Heard = { states: [], changed: [] };
  const server = serverThat('plain', heard);
  const answer = await server.request('workingCopy/open', { path: '/w' });
  assert.equal(answer?.workingCopy, '/w');
  await server.stop();
  await assert.rejects(server.request('workingCopy/open', { path: '/w' }), ServerUnavailable);
  assert.deepEqual(kinds(heard), ['running']);
});

test('where there is no server, every request says so', bound, async () => {
  const heard: Heard = { states: [], changed: [] };
  const server = serverThat('plain', heard, { locate: () => Promise.resolve(null) });
  await assert.rejects(server.start(), { kind: 'notFound' });
  await assert.rejects(server.request('workingCopy/open', { path: '/w' }), { kind: 'notFound' });
  assert.deepEqual(kinds(heard), ['unavailable']);
});

test('a program that cannot be started is named with its reason', bound, async () => {
  const server = serverThat('plain', undefined, {
    locate: () => Promise.resolve({ program: '/nowhere/quen', arguments: ['serve'] }),
  });
  await assert.rejects(server.start(), /\/nowhere\/quen ENOENT/);
});

test('a server of another version is ended and refused', bound, async () => {
  const server = serverThat('otherVersion');
  await assert.rejects(server.start(), {
    kind: 'versionDiffers',
    message: /is version 7\.0.*needs 0\.1/,
  });
});

test('a server that ends before it answers is told with its status', bound, async () => {
  const server = serverThat('silentEnd');
  await assert.rejects(server.start(), /ended with status 3/);
});

test(
  'after a crash the request fails with the last words and the next one is served',
  bound,
  async () => {
    const heard: Heard = { states: [], changed: [] };
    const server = serverThat('plain', heard);
    await assert.rejects(
      server.request('workingCopy/open', { path: '/crash' }),
      /status 70: last words/,
    );
    const answer = await server.request('workingCopy/open', { path: '/again' });
    assert.equal(answer?.workingCopy, '/again');
    assert.deepEqual(kinds(heard), ['running', 'restarting', 'running']);
    await server.stop();
  },
);

test('a server that keeps crashing is given up, until a person restarts it', bound, async () => {
  const heard: Heard = { states: [], changed: [] };
  const server = serverThat('crashes', heard);
  for (let crash = 0; crash < 4; crash += 1) {
    await assert.rejects(server.request('workingCopy/open', { path: '/w' }));
  }
  await assert.rejects(server.request('workingCopy/open', { path: '/w' }), { kind: 'keepsEnding' });
  assert.equal(heard.states.at(-1)?.kind, 'unavailable');
  const facts = await server.restart();
  assert.equal(facts.serverInfo.name, 'quen');
  await server.stop();
});

test('a cancelled request says whether a lock may be left', bound, async () => {
  const server = serverThat('plain');
  const source = new CancellationTokenSource();
  const titles: string[] = [];
  const update = server.request(
    'workingCopy/update',
    { paths: ['/w'] },
    {
      token: source.token,
      progress: (value) => {
        if (value.kind === 'begin') titles.push(value.title);
        source.cancel();
      },
    },
  );
  await assert.rejects(update, (error) => error instanceof Cancelled && error.mayHaveLeftLock);
  assert.deepEqual(titles, ['Updating']);
  await server.stop();
});

test('questions of the server reach the asker, and its answer the server', bound, async () => {
  const realms: string[] = [];
  const server = serverThat('plain', undefined, {
    ask: (question, params) => {
      if ('realm' in params) realms.push(`${question} ${params.realm}`);
      return Promise.resolve({ user: 'u', password: 'p', keep: 'once' } as never);
    },
  });
  const answer: unknown = await server.request('workingCopy/open', { path: '/ask' });
  assert.deepEqual(answer, { answer: { user: 'u', password: 'p', keep: 'once' } });
  assert.deepEqual(realms, ['credentials/get <http://host> Realm']);
  await server.stop();
});

test('notifications go both ways', bound, async () => {
  const heard: Heard = { states: [], changed: [] };
  const server = serverThat('plain', heard);
  await server.notify('workingCopy/didChange', { paths: ['/w/a'] });
  await server.request('workingCopy/open', { path: '/w' }); // Answered after the notification.
  assert.deepEqual(heard.changed[0]?.changed[0]?.path, '/w/a');
  await server.stop();
});
