// Measures the extension on very many changed files, in one run in the browser-served editor:
//
//     QUEN_PROGRAM=... node out/browser/figures.js [COUNT]

import { execFileSync } from 'node:child_process';
import { mkdirSync, readdirSync, readFileSync, writeFileSync } from 'node:fs';
import { Sandbox } from '../../Workbench/repository';
import { folderAddress, startWorkbench } from '../../Workbench/workbench';
import { Editor, launch } from './driver';

const count = Number(process.argv[2] ?? 60_000);
const perDirectory = 500;

async function main(): Promise<void> {
  const sandbox = new Sandbox();
  const copy = sandbox.checkOut(`${sandbox.repository()}/trunk`, 'many');
  for (let index = 0; index < count; index += 1) {
    const directory = copy.path(`d${Math.floor(index / perDirectory)}`);
    if (index % perDirectory === 0) mkdirSync(directory);
    writeFileSync(`${directory}/f${index}.txt`, 'x\n');
  }
  copy.svn('add', '--quiet', ...readdirSync(copy.root).filter((name) => name !== '.svn'));
  const directories = Math.ceil(count / perDirectory);
  const bare = time(() =>
    execFileSync('svn', ['status', '--xml', '--no-ignore', copy.root], {
      stdio: ['ignore', 'pipe', 'ignore'],
      maxBuffer: 1 << 30,
    }),
  );
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
    await badgeTitle(editor, count + directories);
    const known = Date.now() - (runs.since('info') ?? 0);
    await settle();
    const host = extensionHost();
    const quietRuns = runs.lines().length;
    const before = processorSeconds(host);
    const changed = performance.now();
    writeFileSync(copy.path('d0/new.txt'), 'x\n');
    await badgeTitle(editor, count + directories + 1);
    const right = performance.now() - changed;
    await settle();
    const after = processorSeconds(host);
    const forOne = runs.lines().slice(quietRuns);
    const beforeDiffs = runs.count('status');
    for (let turn = 0; turn < openedDiffs; turn += 1) await editor.row(`f${turn}.txt`).click();
    await settle();
    const statuses = runs.count('status') - beforeDiffs;
    const [idleRuns, idleFrom] = [runs.lines().length, processorSeconds(host)];
    await new Promise((resolve) => setTimeout(resolve, idleFor));
    const say = (name: string, value: string) => {
      console.log(`${name.padEnd(52)}${value}`);
    };
    say('items', String(count + directories));
    say('bare client, full status', `${(bare / 1000).toFixed(2)} s`);
    say('first complete count, from the first run of the client', `${(known / 1000).toFixed(2)} s`);
    say('the same over the bare client', (known / bare).toFixed(2));
    say('one new file: right after', `${right.toFixed(0)} ms`);
    say('one new file: extension host', `${(after - before).toFixed(2)} s of processor`);
    say('one new file: runs of the client', forOne.map((line) => line.slice(14)).join(' | '));
    say(`opening ${openedDiffs} rows: statuses`, String(statuses));
    say('idle minute: runs of the client', String(runs.lines().length - idleRuns));
    say('idle minute: extension host', `${(processorSeconds(host) - idleFrom).toFixed(2)} s`);
    say('extension host, peak memory', `${peakMegabytes(host)} MB`);
  } finally {
    await browser.close();
    await workbench.stop();
    sandbox.remove();
  }
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

const quiet = 3000;

function settle(): Promise<void> {
  return new Promise((resolve) => setTimeout(resolve, quiet));
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
