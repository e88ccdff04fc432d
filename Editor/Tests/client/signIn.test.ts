// Signing in at a server that wants a password: how often a person is asked, what comes of it, and
// where the secret is not.

import assert from 'node:assert/strict';
import { randomUUID } from 'node:crypto';
import { mkdirSync, readdirSync, readFileSync } from 'node:fs';
import { join } from 'node:path';
import { test } from 'node:test';
import type { ServerSetup } from '../../Source/server/server';
import type { ServerQuestions } from '../../Source/server/protocol';
import { PasswordServer } from '../../Workbench/passwordServer';
import { Sandbox, type WorkingCopyOnDisk } from '../../Workbench/repository';
import { realServer, type RealServer } from './realServer';

type Credentials = ServerQuestions['credentials/get'];
type Answer = Credentials['result'];

interface Stage extends RealServer {
  readonly copies: readonly WorkingCopyOnDisk[];
  readonly passwords: PasswordServer;
  readonly asked: Credentials['params'][];
  readonly home: string;
}

/** A server with a password, some working copies of it, and somebody who answers in turn. */
function journey(
  name: string,
  answers: readonly ((right: string) => Answer)[],
  run: (stage: Stage) => Promise<void>,
): void {
  test(name, { timeout: 60_000 }, async () => {
    const sandbox = new Sandbox();
    sandbox.repository();
    const passwords = await PasswordServer.start(sandbox, 'repository', `s3cr3t-${randomUUID()}`);
    const copies = [1, 2, 3].map((number) => passwords.checkOut(`copy${number}`));
    const asked: Credentials['params'][] = [];
    const left = [...answers];
    const ask: ServerSetup['ask'] = (question, params) => {
      assert.equal(question, 'credentials/get');
      asked.push(params as Credentials['params']);
      return Promise.resolve((left.shift()?.(passwords.password) ?? null) as never);
    };
    const home = sandbox.path('home');
    mkdirSync(home);
    const real = realServer(ask, { HOME: home, XDG_CONFIG_HOME: home });
    try {
      await run({ ...real, copies, passwords, asked, home });
      assert.equal(left.length, 0, `${left.length} answers were not asked for`);
    } finally {
      await real.server.stop();
      passwords.stop();
      sandbox.remove();
    }
  });
}

const right = (password: string): Answer => ({ user: 'ann', password, keep: 'process' });
const wrong = (): Answer => ({ user: 'ann', password: 'not it', keep: 'process' });
const dismissed = (): Answer => null;

async function update({ server, copies }: Stage, index = 0) {
  return server.request('workingCopy/update', { paths: [copies[index]?.root ?? ''] });
}

journey('a right password is asked for once, for all working copies', [right], async (stage) => {
  for (const index of [0, 1, 2]) {
    const { failure, error } = await update(stage, index);
    assert.equal(failure, null, error?.clientText ?? '');
  }
  const [question] = stage.asked;
  assert.equal(stage.asked.length, 1);
  assert.match(question?.realm ?? '', /Weather station/);
  assert.equal(question?.reason, 'first');
});

journey(
  'after a wrong one it is asked again, and says that it was refused',
  [wrong, right],
  async (stage) => {
    const { failure } = await update(stage);
    assert.equal(failure, null);
    assert.deepEqual(
      stage.asked.map(({ reason }) => reason),
      ['first', 'refused'],
    );
  },
);

journey('a dismissed question is a failure, and no loop', [dismissed], async (stage) => {
  const outcomes = await Promise.all([0, 1, 2].map((index) => update(stage, index)));
  for (const { failure } of outcomes) assert.equal(failure, 'notAuthorised');
  assert.equal(stage.asked.length, 1);
});

journey('the secret is in no argument, environment or file', [right], async (stage) => {
  const found: string[] = [];
  const seen = new Set<string>();
  let isDone = false;
  const look = async () => {
    while (!isDone) {
      for (const place of placesWith(stage.passwords.password, seen)) found.push(place);
      await new Promise((resolve) => setImmediate(resolve));
    }
  };
  const looking = look();
  for (const index of [0, 1, 2]) {
    const { failure } = await update(stage, index);
    assert.equal(failure, null);
  }
  isDone = true;
  await looking;
  assert.deepEqual(found, []);
  assert.ok(seen.size > 0, 'no client was seen');
  assert.deepEqual(filesWith(stage.home, stage.passwords.password), []);
});

/** Where a process of this machine holds the text; `seen` gathers the clients that were looked at. */
function placesWith(text: string, seen: Set<string>): string[] {
  return readdirSync('/proc')
    .filter((name) => /^\d+$/.test(name))
    .flatMap((name) =>
      ['cmdline', 'environ'].flatMap((part) => {
        const content = contentOf(`/proc/${name}/${part}`);
        if (part === 'cmdline' && /(^|\/)svn\0/.test(content)) seen.add(name);
        return content.includes(text) ? [`${name} ${part}`] : [];
      }),
    );
}

function contentOf(path: string): string {
  try {
    return readFileSync(path, 'latin1');
  } catch {
    return ''; // It has ended, or is somebody else's.
  }
}

function filesWith(directory: string, text: string): string[] {
  return readdirSync(directory, { recursive: true, encoding: 'utf8' })
    .map((name) => join(directory, name))
    .filter((path) => contentOf(path).includes(text));
}
