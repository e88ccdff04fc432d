// Measures the extension on very many changed files, in one run in the browser-served editor:
//
//     QUEN_PROGRAM=... node out/browser/figures.js [COUNT]

import { execFileSync } from 'node:child_process';
import { mkdirSync, readdirSync, readFileSync, writeFileSync } from 'node:fs';
import { Sandbox, type WorkingCopyOnDisk } from '../../Workbench/repository';
import { folderAddress, startWorkbench } from '../../Workbench/workbench';
import { Editor, launch } from './driver';

const count = Number(process.argv[2] ?? 60_000);
const perDirectory = 500;

async function main(): Promise<void> {
  const sandbox = new Sandbox();
  const copy = manyChanges(sandbox);
  const items = count + Math.ceil(count / perDirectory) + 1 + openedDiffs;
  say('items', String(items));
  const bare = time(() => {
    fullStatus(copy.root);
  });
  say('bare client, full status', seconds(bare));
  const runs = new CountedClient(sandbox);
  mkdirSync(sandbox.path('editor'));
  const workbench = await startWorkbench({
    node: process.execPath,
    modules: process.env.QUEN_EDITOR_MODULES ?? '',
    home: sandbox.path('editor'),
    extension: process.env.QUEN_EDITOR_EXTENSION,
    settings: { 'quen.path': process.env.QUEN_PROGRAM ?? '', 'quen.svnDirectory': runs.directory },
  });
  const browser = await launch();
  try {
    const editor = await Editor.open(browser, folderAddress(workbench, copy.root), 'out/pictures');
    editor.page.setDefaultTimeout(120_000);
    await badgeTitle(editor, items);
    const known = Date.now() - (runs.since('info') ?? 0);
    say('first complete count, from the first run of the client', seconds(known));
    // What else runs on the machine differs from minute to minute: the mean of before and after.
    const again =
      (bare +
        time(() => {
          fullStatus(copy.root);
        })) /
      2;
    say('bare client, before and after', seconds(again));
    say('the first count over the bare client', (known / again).toFixed(2));
    const host = extensionHost();
    await measureChange(editor, runs, host, items + 1, 'one new file', () => {
      writeFileSync(copy.path('d0/new.txt'), 'x\n');
    });
    await measureChange(editor, runs, host, items + 2, 'one changed file', () => {
      writeFileSync(copy.path('b.txt'), 'changed\n');
    });
    await measureDiffs(editor, runs, host);
    await measureIdleness(runs, host);
    say('extension host, peak memory', `${peakMegabytes(host)} MB`);
  } finally {
    await browser.close();
    await workbench.stop();
    sandbox.remove();
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

function fullStatus(root: string): void {
  execFileSync('svn', ['status', '--xml', '--no-ignore', root], {
    stdio: ['ignore', 'pipe', 'ignore'],
    maxBuffer: 1 << 30,
  });
}

async function measureChange(
  editor: Editor,
  runs: CountedClient,
  host: string,
  expected: number,
  name: string,
  change: () => void,
): Promise<void> {
  await quiet(runs, host);
  const [linesBefore, before] = [runs.lines().length, processorSeconds(host)];
  const started = performance.now();
  change();
  await badgeTitle(editor, expected);
  say(`${name}: right after`, `${(performance.now() - started).toFixed(0)} ms`);
  await new Promise((resolve) => setTimeout(resolve, trailing));
  const own = runs.lines().slice(linesBefore);
  say(`${name}: extension host`, `${(processorSeconds(host) - before).toFixed(2)} s of processor`);
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
  await quiet(runs, host);
  say(`opening ${openedDiffs} comparisons: statuses`, String(runs.count('status') - before));
}

async function measureIdleness(runs: CountedClient, host: string): Promise<void> {
  const [lines, from] = [runs.lines().length, processorSeconds(host)];
  await new Promise((resolve) => setTimeout(resolve, idleFor));
  say('idle minute: runs of the client', String(runs.lines().length - lines));
  say(
    'idle minute: extension host',
    `${(processorSeconds(host) - from).toFixed(2)} s of processor`,
  );
}

function say(name: string, value: string): void {
  console.log(`${name.padEnd(56)}${value}`);
}

function seconds(milliseconds: number): string {
  return `${(milliseconds / 1000).toFixed(2)} s`;
}

/** The client behind a script that takes down when it was run, and with what. */
class CountedClient {
  readonly directory: string;
  private readonly log: string;

  constructor(sandbox: Sandbox) {
    this.directory = sandbox.path('counted');
    this.log = sandbox.path('runs.log');
    mkdirSync(this.directory);
    writeFileSync(this.log, '');
    const script = `#!/bin/sh\necho "$(date +%s%3N) $*" >>'${this.log}'\nexec /usr/bin/svn "$@"\n`;
    writeFileSync(`${this.directory}/svn`, script, { mode: 0o755 });
  }

  lines(): string[] {
    return readFileSync(this.log, 'utf8').trim().split('\n');
  }

  count(word: string): number {
    return this.lines().filter((line) => line.includes(` ${word} `)).length;
  }

  /** When the first run with that word began. */
  since(word: string): number | undefined {
    const line = this.lines().find((each) => each.includes(` ${word} `));
    return line === undefined ? undefined : Number(line.split(' ', 1)[0]);
  }
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

function time(run: () => unknown): number {
  const started = performance.now();
  run();
  return performance.now() - started;
}

const quietFor = 3000;
/** What a change sets off has ended by then. */
const trailing = 2000;
const idleShare = 0.02;

/** Waits until the client has not been run for a while and the extension host has been idle. */
async function quiet(runs: CountedClient, host: string): Promise<void> {
  const facts = () => [runs.lines().length, processorSeconds(host)] as const;
  for (let turn = 0; turn < 5; turn += 1) {
    const [lines, processor] = facts();
    await new Promise((resolve) => setTimeout(resolve, quietFor));
    const [linesNow, processorNow] = facts();
    const share = (1000 * (processorNow - processor)) / quietFor;
    if (linesNow === lines && share <= idleShare) return;
  }
}

function extensionHost(): string {
  const found = readdirSync('/proc').find((name) => {
    if (!/^\d+$/.test(name)) return false;
    try {
      return readFileSync(`/proc/${name}/cmdline`, 'utf8').includes('--type=extensionHost');
    } catch {
      return false; // It has ended meanwhile.
    }
  });
  if (found === undefined) throw new Error('no extension host runs');
  return found;
}

const ticksPerSecond = 100;

function processorSeconds(process: string): number {
  const fields = readFileSync(`/proc/${process}/stat`, 'utf8').split(') ')[1]?.split(' ') ?? [];
  return (Number(fields[11]) + Number(fields[12])) / ticksPerSecond;
}

function peakMegabytes(process: string): string {
  const line = /VmHWM:\s+(\d+)/.exec(readFileSync(`/proc/${process}/status`, 'utf8'));
  return (Number(line?.[1]) / 1024).toFixed(0);
}

main().then(
  () => process.exit(0),
  (error: unknown) => {
    console.error(error);
    process.exit(1);
  },
);
