// Runs the tests of Tests/host inside the extension host of the browser-served editor, on the
// packaged extension with the server that it carries.

import { cpSync, mkdirSync, readdirSync } from 'node:fs';
import { join, resolve } from 'node:path';
import { makeDemonstration } from '../../Workbench/demonstration';
import { Sandbox } from '../../Workbench/repository';
import { folderAddress, startWorkbench } from '../../Workbench/workbench';
import { launch } from './driver';

const bound = 240_000;

async function main(): Promise<number> {
  const sandbox = new Sandbox();
  const { copy } = makeDemonstration(sandbox);
  mkdirSync(sandbox.path('editor'));
  mkdirSync(sandbox.path('home'));
  const workbench = await startWorkbench({
    node: process.execPath,
    modules: process.env.QUEN_EDITOR_MODULES ?? '',
    home: sandbox.path('editor'),
    extension: process.env.QUEN_EDITOR_EXTENSION,
    // Whoever runs the tests has a client of their own: nothing is kept there.
    environment: { ...process.env, HOME: sandbox.path('home') },
  });
  const installed = withTests(sandbox.path('editor/extensions'));
  const browser = await launch();
  try {
    const page = await browser.newPage();
    const exit = new Promise<number>((done) => {
      void page.exposeFunction('codeAutomationExit', done);
    });
    await page.exposeFunction('codeAutomationLog', (_type: string, args: unknown[]) => {
      // The editor's own log comes this way too.
      if (/^(ok|not ok|#) /.test(String(args[0]))) console.log(...args);
    });
    const here = (path: string) => `vscode-remote://${workbench.host}${resolve(path)}`;
    const payload = [
      ['extensionDevelopmentPath', here(installed)],
      ['extensionTestsPath', here(join(installed, 'tests', 'index.js'))],
    ];
    const query = `&payload=${encodeURIComponent(JSON.stringify(payload))}`;
    await page.goto(folderAddress(workbench, copy.root) + query);
    return await Promise.race([exit, late()]);
  } finally {
    await browser.close();
    await workbench.stop();
    sandbox.remove();
  }
}

/** The installed extension, with the tests in it: they then share its view of the editor. */
function withTests(extensions: string): string {
  const name = readdirSync(extensions).find((each) => each.startsWith('quen.quen-subversion'));
  if (name === undefined) throw new Error(`the extension was not installed in ${extensions}`);
  const installed = join(extensions, name);
  cpSync('out/host', join(installed, 'tests'), { recursive: true });
  return installed;
}

function late(): Promise<never> {
  return new Promise((_resolve, reject) => {
    setTimeout(() => {
      reject(new Error(`the tests did not end within ${bound} ms`));
    }, bound).unref();
  });
}

main().then(
  (code) => process.exit(code),
  (error: unknown) => {
    console.error(error);
    process.exit(1);
  },
);
