// Starts the editor with the extension on a directory, or on a demonstration, until it is told to end.

import { mkdirSync, statSync } from 'node:fs';
import { resolve } from 'node:path';
import { makeDemonstration } from './demonstration';
import { Sandbox } from './repository';
import { folderAddress, startWorkbench, type Workbench } from './workbench';

let workbench: Workbench | undefined;
let isEnding = false;

/** Ends the editor with all that it started; before it runs, there is nothing but this process. */
async function end(): Promise<void> {
  if (isEnding) return;
  isEnding = true;
  await workbench?.stop();
  process.exit(0);
}

async function main(): Promise<void> {
  const [directory] = process.argv.slice(2);
  const sandbox = new Sandbox();
  process.on('exit', () => {
    sandbox.remove();
  });
  for (const signal of ['SIGINT', 'SIGTERM', 'SIGHUP'] as const)
    process.on(signal, () => void end());
  const folder = directory ? resolve(directory) : makeDemonstration(sandbox).copy.root;
  if (!statSync(folder, { throwIfNoEntry: false })?.isDirectory()) {
    throw new Error(`not a directory: ${folder}`);
  }
  mkdirSync(sandbox.path('editor'));
  workbench = await startWorkbench({
    node: process.execPath,
    modules: process.env.QUEN_EDITOR_MODULES ?? '',
    home: sandbox.path('editor'),
    extension: process.env.QUEN_EDITOR_EXTENSION,
  });
  workbench.process.once('exit', (code) => {
    if (isEnding) return;
    console.error(`The editor ended with status ${code ?? 'unknown'}.`);
    process.exit(1);
  });
  console.log(folderAddress(workbench, folder));
  console.log('Ctrl+C ends it.');
}

main().catch((error: unknown) => {
  if (isEnding) return;
  console.error(error instanceof Error ? error.message : error);
  process.exit(1);
});
