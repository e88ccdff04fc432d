// Measures the extension on very many changed files, in one run in the browser-served editor, and
// then the editor alone: what the client takes beside the editor's own start, and what the extension
// host takes when no extension of ours is in it.
//
//     QUEN_PROGRAM=... node out/browser/figures.js [COUNT]

import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { mkdirSync, readdirSync, writeFileSync } from 'node:fs';
import { Sandbox, type WorkingCopyOnDisk } from '../../Workbench/repository';
import { folderAddress, startWorkbench } from '../../Workbench/workbench';
import { Editor, launch } from './driver';
import { CountedClient } from './countedClient';
import * as hosts from './extensionHost';

const count = Number(process.argv[2] ?? 60_000);
const perDirectory = 500;

async function main(): Promise<void> {
  const sandbox = new Sandbox();
  try {
    const copy = manyChanges(sandbox);
    const items = count + Math.ceil(count / perDirectory) + 1 + openedDiffs;
    say('items', String(items));
    const before = await fullStatus(copy.root);
    const { start, idle } = await measureExtension(sandbox, copy, items);
    const alone = await measureEditorAlone(sandbox, copy, start);
    // What else runs on the machine differs from minute to minute: the mean of before and after.
    const bare = (before + (await fullStatus(copy.root))) / 2;
    say('bare client, full status, before and after', seconds(bare));
    say("bare client beside the editor's own start", seconds(alone.client));
    say('first count over the bare client', ratio(start.known, bare));
    say("first count over the client beside the editor's start", ratio(start.known, alone.client));
    say('idle minute: extension host of the editor alone', processor(alone.idle));
    say('idle minute: the extension', processor(idle - alone.idle));
  } finally {
    sandbox.remove();
  }
}

interface Start {
  readonly host: string;
  /** From the start of the extension host to the first run of the client. */
  readonly delay: number;
  /** From the first run of the client to the right count in the window. */
  readonly known: number;
}

async function measureExtension(
  sandbox: Sandbox,
  copy: WorkingCopyOnDisk,
  items: number,
): Promise<{ start: Start; idle: number }> {
  const runs = new CountedClient(sandbox);
  const extension = process.env.QUEN_EDITOR_EXTENSION;
  return inEditor(
    sandbox,
    copy,
    'editor',
    { extension, client: runs.directory },
    async (opened) => {
      const editor = await opened;
      await badgeTitle(editor, items);
      const knownAt = Date.now();
      const host = hosts.find();
      const began = runs.since('info') ?? 0;
      const ended = runs.endOf('status') ?? 0;
      const start = { host, delay: began - hosts.startedAt(host), known: knownAt - began };
      say('first complete count, from the first run of the client', seconds(start.known));
      say('- until the client had ended its status', seconds(ended - began));
      say('- from then on', seconds(knownAt - ended));
      await measureChange(editor, runs, host, items + 1, 'one new file', () => {
        writeFileSync(copy.path('d0/new.txt'), 'x\n');
      });
      await measureChange(editor, runs, host, items + 2, 'one changed file', () => {
        writeFileSync(copy.path('b.txt'), 'changed\n');
      });
      await measureDiffs(editor, runs, host);
      const lines = runs.lines().length;
      const idle = await idleMinute(host);
      say('idle minute: runs of the client', String(runs.lines().length - lines));
      say('idle minute: extension host', processor(idle));
      say('extension host, peak memory', `${hosts.peakMegabytes(host)} MB`);
      return { start, idle };
    },
  );
}

/** The same folder without the extension; the client runs when the extension would run it. */
async function measureEditorAlone(
  sandbox: Sandbox,
  copy: WorkingCopyOnDisk,
  { host: former, delay }: Start,
): Promise<{ client: number; idle: number }> {
  return inEditor(sandbox, copy, 'alone', {}, async (opened) => {
    const host = await hosts.appearance(former);
    await pause(hosts.startedAt(host) + delay - Date.now());
    const client = await fullStatus(copy.root);
    await opened;
    await quiet(() => 0, host);
    return { client, idle: await idleMinute(host) };
  });
}

async function inEditor<T>(
  sandbox: Sandbox,
  copy: WorkingCopyOnDisk,
  home: string,
  { extension, client }: { extension?: string | undefined; client?: string },
  run: (editor: Promise<Editor>) => Promise<T>,
): Promise<T> {
  mkdirSync(sandbox.path(home));
  const workbench = await startWorkbench({
    node: process.execPath,
    modules: process.env.QUEN_EDITOR_MODULES ?? '',
    home: sandbox.path(home),
    extension,
    settings: {
      // The editor looks through all processes of the machine for ports to forward, several times a
      // minute, in the extension host: a second of processor a minute that hides everything else.
      'remote.autoForwardPortsSource': 'output',
      'quen.path': process.env.QUEN_PROGRAM ?? '',
      ...(client === undefined ? {} : { 'quen.svnDirectory': client }),
    },
  });
  const browser = await launch();
  try {
    const opened = Editor.open(browser, folderAddress(workbench, copy.root), 'out/pictures').then(
      (editor) => {
        editor.page.setDefaultTimeout(120_000);
        return editor;
      },
    );
    return await run(opened);
  } finally {
    await browser.close();
    await workbench.stop();
  }
}

/** Added files in directories of their own; a directory of changed ones; a file to be changed. */
function manyChanges(sandbox: Sandbox): WorkingCopyOnDisk {
  const copy = sandbox.checkOut(`${sandbox.repository()}/trunk`, 'many');
  const changed = Array.from({ length: openedDiffs }, (_each, index) => `a/c${10 + index}.txt`);
  copy.commit('Files to be changed', {
    ...Object.fromEntries(changed.map((name) => [name, 'before\n'])),
    'b.txt': 'before\n',
  });
  copy.write(Object.fromEntries(changed.map((name) => [name, 'after\n'])));
  copy.svn('propset', '--quiet', 'p', 'v', '.');
  for (let index = 0; index < count; index += 1) {
    const directory = copy.path(`d${Math.floor(index / perDirectory)}`);
    if (index % perDirectory === 0) mkdirSync(directory);
    writeFileSync(`${directory}/f${index}.txt`, 'x\n');
  }
  copy.svn('add', '--quiet', ...readdirSync(copy.root).filter((name) => /^d\d/.test(name)));
  return copy;
}

/** How many milliseconds the client takes for it. */
async function fullStatus(root: string): Promise<number> {
  const started = performance.now();
  const client = spawn('svn', ['status', '--xml', '--no-ignore', root], {
    stdio: ['ignore', 'pipe', 'ignore'],
  });
  client.stdout.resume();
  await once(client, 'close');
  return performance.now() - started;
}

async function measureChange(
  editor: Editor,
  runs: CountedClient,
  host: string,
  expected: number,
  name: string,
  change: () => void,
): Promise<void> {
  await quiet(() => runs.lines().length, host);
  const [linesBefore, before] = [runs.lines().length, hosts.processorSeconds(host)];
  const started = performance.now();
  change();
  await badgeTitle(editor, expected);
  say(`${name}: right after`, `${(performance.now() - started).toFixed(0)} ms`);
  await pause(trailing);
  const own = runs.lines().slice(linesBefore);
  say(`${name}: extension host`, processor(hosts.processorSeconds(host) - before));
  say(`${name}: runs of the client`, own.map((line) => line.slice(14)).join(' | '));
}

async function measureDiffs(editor: Editor, runs: CountedClient, host: string): Promise<void> {
  await editor.page.setViewportSize(tall); // All rows are in view.
  await editor.showSourceControl();
  await editor.row(`c${9 + openedDiffs}.txt`).waitFor();
  const before = runs.count('status');
  for (let index = 0; index < openedDiffs; index += 1) {
    const name = `c${10 + index}.txt`;
    await editor.row(name).click();
    await editor.page.locator('.tab.active', { hasText: name }).first().waitFor();
    await editor.page.waitForSelector('.monaco-diff-editor .line-insert');
  }
  await quiet(() => runs.lines().length, host);
  say(`opening ${openedDiffs} comparisons: statuses`, String(runs.count('status') - before));
}

/** The seconds of processor that the extension host takes. */
async function idleMinute(host: string): Promise<number> {
  const from = hosts.processorSeconds(host);
  await pause(idleFor);
  return hosts.processorSeconds(host) - from;
}

function processor(taken: number): string {
  return `${taken.toFixed(2)} s of processor`;
}

function ratio(one: number, other: number): string {
  return (one / other).toFixed(2);
}

function pause(milliseconds: number): Promise<void> {
  return new Promise((resolve) => setTimeout(resolve, Math.max(0, milliseconds)));
}

function say(name: string, value: string): void {
  console.log(`${name.padEnd(56)}${value}`);
}

function seconds(milliseconds: number): string {
  return `${(milliseconds / 1000).toFixed(2)} s`;
}

const openedDiffs = 20;
const tall = { width: 1360, height: 2000 };
const idleFor = 60_000;

/** The badge itself is cut short; its accessible name has the whole number. */
async function badgeTitle(editor: Editor, wanted: number): Promise<void> {
  await editor.page.waitForFunction((number) => {
    const action = document.querySelector(
      '.activitybar .action-item:has(.codicon-source-control-view-icon) .action-label',
    );
    const digits = (action?.getAttribute('aria-label') ?? '').replace(/[^0-9]/g, '');
    return digits.includes(String(number));
  }, wanted);
}

const quietFor = 3000;
/** What a change sets off has ended by then. */
const trailing = 2000;
const idleShare = 0.02;

/** Waits until the client has not been run for a while and the extension host has been idle. */
async function quiet(clientRuns: () => number, host: string): Promise<void> {
  const facts = () => [clientRuns(), hosts.processorSeconds(host)] as const;
  for (let turn = 0; turn < 5; turn += 1) {
    const [lines, processor] = facts();
    await pause(quietFor);
    const [linesNow, processorNow] = facts();
    const share = (1000 * (processorNow - processor)) / quietFor;
    if (linesNow === lines && share <= idleShare) return;
  }
}

main().then(
  () => process.exit(0),
  (error: unknown) => {
    console.error(error);
    process.exit(1);
  },
);
