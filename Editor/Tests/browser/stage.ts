// What a journey stands on: a demonstration, the editor with the packaged extension, a browser.

import { mkdirSync } from 'node:fs';
import { resolve } from 'node:path';
import type { Browser } from 'playwright-core';
import { makeDemonstration, type Demonstration } from '../../Workbench/demonstration';
import { Sandbox } from '../../Workbench/repository';
import { folderAddress, startWorkbench, type Workbench } from '../../Workbench/workbench';
import { Editor, themes, type Theme } from './driver';

export interface Stage extends Demonstration {
  readonly sandbox: Sandbox;
  readonly workbench: Workbench;
  readonly editor: Editor;
}

export interface StageOptions {
  readonly theme?: Theme;
  /** The display language of the extension; the editor's own texts stay English. */
  readonly language?: string;
  readonly settings?: Readonly<Record<string, unknown>>;
  readonly environment?: NodeJS.ProcessEnv;
  /** The folder to open; without it, the demonstration's working copy. */
  readonly folder?: (sandbox: Sandbox, demonstration: Demonstration) => string | Promise<string>;
}

export const pictures = resolve(process.env.QUEN_EDITOR_PICTURES ?? 'out/pictures');

/** Sets a stage up, runs on it, and clears it away. */
export async function onStage(
  browser: Browser,
  options: StageOptions,
  run: (stage: Stage) => Promise<void>,
): Promise<void> {
  const sandbox = new Sandbox();
  const demonstration = makeDemonstration(sandbox);
  const folder = (await options.folder?.(sandbox, demonstration)) ?? demonstration.copy.root;
  mkdirSync(sandbox.path('editor'));
  mkdirSync(sandbox.path('home'));
  const workbench = await startWorkbench({
    node: process.execPath,
    modules: process.env.QUEN_EDITOR_MODULES ?? '',
    home: sandbox.path('editor'),
    extension: process.env.QUEN_EDITOR_EXTENSION,
    settings: {
      'workbench.colorTheme': themes[options.theme ?? 'light'],
      ...options.settings,
    },
    // Whoever runs the tests has a client of their own: nothing is kept there.
    environment: { ...process.env, HOME: sandbox.path('home'), ...options.environment },
  });
  try {
    const editor = await Editor.open(
      browser,
      folderAddress(workbench, folder),
      pictures,
      options.language,
    );
    await run({ ...demonstration, sandbox, workbench, editor }).catch(async (error: unknown) => {
      await editor.picture('failure');
      throw error;
    });
    await editor.close();
  } finally {
    await workbench.stop();
    sandbox.remove();
  }
}
