// The script `try`, as a person in a terminal has it: it prints an address, the page there is the
// editor with the extension at work, and Ctrl+C leaves nothing behind.

import assert from 'node:assert/strict';
import { spawn, type ChildProcess } from 'node:child_process';
import { randomUUID } from 'node:crypto';
import { once } from 'node:events';
import { readdirSync, readFileSync } from 'node:fs';
import { createInterface } from 'node:readline';
import { test } from 'node:test';
import { Sandbox } from '../../Workbench/repository';
import { Editor, launch } from './driver';
import { pictures } from './stage';

const bound = { timeout: 120_000 };
/** What a process that `try` started, near or far, has in its environment. */
const mark = 'QUEN_EDITOR_TRIED';

interface Tried {
  readonly process: ChildProcess;
  readonly mark: string;
  readonly address: string;
}

/** Starts it in a process group of its own, as a terminal does. */
async function start(...args: string[]): Promise<Tried> {
  const marked = randomUUID();
  const child = spawn('./try', args, {
    detached: true,
    stdio: ['ignore', 'pipe', 'inherit'],
    env: { ...process.env, [mark]: marked },
  });
  for await (const line of createInterface(child.stdout)) {
    if (line.startsWith('http://')) return { process: child, mark: marked, address: line };
  }
  throw new Error(`no address was printed; status ${child.exitCode ?? 'unknown'}`);
}

/** Ctrl+C in the terminal; answers the status. */
async function interrupt({ process: child }: Tried): Promise<number | null> {
  const ended = once(child, 'exit');
  process.kill(-(child.pid ?? 0), 'SIGINT');
  await ended;
  return child.exitCode;
}

function processesWith(text: string): string[] {
  return readdirSync('/proc').filter((name) => {
    try {
      return /^\d+$/.test(name) && readFileSync(`/proc/${name}/environ`, 'latin1').includes(text);
    } catch {
      return false; // It has ended, or is somebody else's.
    }
  });
}

const goneWithin = 10_000;

/** Waits until no process has the text; answers those that stay. */
async function leftOf(text: string): Promise<string[]> {
  const until = Date.now() + goneWithin;
  while (processesWith(text).length > 0 && Date.now() < until) {
    await new Promise((resolve) => setTimeout(resolve, 50));
  }
  return processesWith(text).map((name) => readFileSync(`/proc/${name}/cmdline`, 'latin1'));
}

async function seesTheExtension(address: string): Promise<void> {
  const browser = await launch();
  try {
    const editor = await Editor.open(browser, address, pictures);
    await editor.page.locator('.statusbar-item', { hasText: 'trunk' }).first().waitFor();
  } finally {
    await browser.close();
  }
}

test(
  'try starts the editor on a demonstration, and Ctrl+C leaves nothing behind',
  bound,
  async () => {
    const tried = await start();
    assert.match(tried.address, /^http:\/\/127\.0\.0\.1:\d+\//);
    await seesTheExtension(tried.address);
    assert.ok(processesWith(tried.mark).length > 1, 'the editor runs');
    assert.equal(await interrupt(tried), 0);
    assert.deepEqual(await leftOf(tried.mark), []);
    await assert.rejects(fetch(tried.address));
  },
);

test(
  'try starts the editor on a directory of one’s own, and leaves it as it was',
  bound,
  async () => {
    const sandbox = new Sandbox();
    try {
      const copy = sandbox.checkOut(`${sandbox.repository()}/trunk`, 'my project');
      copy.commit('First', { 'a.txt': 'a\n' }).write({ 'a.txt': 'b\n' });
      const before = copy.svn('status');
      const tried = await start(copy.root);
      assert.equal(new URL(tried.address).searchParams.get('folder'), copy.root);
      await seesTheExtension(tried.address);
      assert.equal(await interrupt(tried), 0);
      assert.deepEqual(await leftOf(tried.mark), []);
      assert.equal(copy.svn('status'), before);
    } finally {
      sandbox.remove();
    }
  },
);

test('try says which directory is none', bound, async () => {
  const child = spawn('./try', ['/nowhere'], { stdio: ['ignore', 'ignore', 'pipe'] });
  let words = '';
  child.stderr.setEncoding('utf8').on('data', (text: string) => (words += text));
  await once(child, 'close');
  assert.equal(child.exitCode, 2);
  assert.match(words, /^try: not a directory: \/nowhere\n$/);
});
