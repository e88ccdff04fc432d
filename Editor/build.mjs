// Bundles the extension, or with an option what it is tried and tested with: --client-tests,
// --host-tests, --browser-tests, --workbench.

import { build } from 'esbuild';
import { readdirSync } from 'node:fs';

const shared = {
  bundle: true,
  platform: 'node',
  format: 'cjs',
  target: 'node20',
  external: ['vscode', 'typescript'],
  logLevel: 'warning',
  sourcemap: process.argv.includes('--production') ? false : 'linked',
  minify: process.argv.includes('--production'),
};

const sourcesOf = (folder) =>
  readdirSync(folder)
    .filter((name) => name.endsWith('.ts'))
    .map((name) => `${folder}/${name}`);

const outputs = {
  '--client-tests': { entryPoints: sourcesOf('Tests/client'), outdir: 'out/client' },
  '--host-tests': { entryPoints: ['Tests/host/index.ts'], outdir: 'out/host' },
  '--browser-tests': {
    entryPoints: sourcesOf('Tests/browser'),
    outdir: 'out/browser',
    external: ['playwright-core'],
  },
  '--workbench': { entryPoints: ['Workbench/try.ts'], outdir: 'out/workbench' },
};

const chosen = Object.keys(outputs).filter((option) => process.argv.includes(option));
for (const option of chosen) await build({ ...shared, ...outputs[option] });
if (chosen.length === 0) {
  await build({ ...shared, entryPoints: ['Source/extension.ts'], outfile: 'out/extension.js' });
}
