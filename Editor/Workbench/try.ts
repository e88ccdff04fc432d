// Starts the editor with the extension on a directory, or on a demonstration, until it is told to end.

import { mkdirSync } from 'node:fs';
import { resolve } from 'node:path';
import { makeDemonstration } from './demonstration';
import { Sandbox } from './repository';
import { folderAddress, startWorkbench } from './workbench';

async function main(): Promise<void> {
  const [directory] = process.argv.slice(2);
  const sandbox = new Sandbox();
  process.on('exit', () => {
    sandbox.remove();
  });
  const folder = directory ? resolve(directory) : makeDemonstration(sandbox).copy.root;
  mkdirSync(sandbox.path('editor'));
  const workbench = await startWorkbench({
    node: process.execPath,
    modules: process.env.QUEN_EDITOR_MODULES ?? '',
    home: sandbox.path('editor'),
    extension: process.env.QUEN_EDITOR_EXTENSION,
  });
  console.log(folderAddress(workbench, folder));
  console.log('Ctrl+C ends it.');
  const end = () => {
    void workbench.stop().then(() => process.exit(0));
  };
  process.on('SIGINT', end);
  process.on('SIGTERM', end);
}

main().catch((error: unknown) => {
  console.error(error instanceof Error ? error.message : error);
  process.exit(1);
});
