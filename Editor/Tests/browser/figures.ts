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
  mkdirSync(sandbox.path('editor'));
  const workbench = await startWorkbench({
    node: process.execPath,
    modules: process.env.QUEN_EDITOR_MODULES ?? '',
    home: sandbox.path('editor'),
    extension: process.env.QUEN_EDITOR_EXTENSION,
    settings: { 'quen.path': process.env.QUEN_PROGRAM ?? '' },
  });
  const browser = await launch();
  try {
    const started = performance.now();
    const editor = await Editor.open(browser, folderAddress(workbench, copy.root), 'out/pictures');
    editor.page.setDefaultTimeout(120_000);
    const shown = performance.now() - started;
    await badgeTitle(editor, count + directories);
    const known = performance.now() - started;
    await settle();
    const host = extensionHost();
    const before = processorSeconds(host);
    const changed = performance.now();
    writeFileSync(copy.path('d0/new.txt'), 'x\n');
    await badgeTitle(editor, count + directories + 1);
    const right = performance.now() - changed;
    await settle();
    const after = processorSeconds(host);
    await settle();
    console.log(`items                                  ${count + directories}`);
    console.log(`bare client, full status               ${(bare / 1000).toFixed(2)} s`);
    console.log(`workbench shown                        ${(shown / 1000).toFixed(2)} s`);
    console.log(`first complete count, from the start   ${(known / 1000).toFixed(2)} s`);
    console.log(`one new file: right after              ${right.toFixed(0)} ms`);
    console.log(
      `one new file: extension host           ${(after - before).toFixed(2)} s of processor`,
    );
    console.log(`extension host, peak memory            ${peakMegabytes(host)} MB`);
  } finally {
    await browser.close();
    await workbench.stop();
    sandbox.remove();
  }
}

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
