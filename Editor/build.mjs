// Bundles the extension (default), its client tests (--client-tests) or its host tests (--host-tests).

import { build } from 'esbuild';
import { readdirSync } from 'node:fs';

const shared = {
  bundle: true,
  platform: 'node',
  format: 'cjs',
  target: 'node20',
  external: ['vscode'],
  logLevel: 'warning',
  sourcemap: process.argv.includes('--production') ? false : 'linked',
  minify: process.argv.includes('--production'),
};

const sourcesOf = (folder) =>
  readdirSync(folder)
    .filter((name) => name.endsWith('.ts'))
    .map((name) => `${folder}/${name}`);

if (process.argv.includes('--client-tests')) {
  await build({ ...shared, entryPoints: sourcesOf('Tests/client'), outdir: 'out/client' });
} else if (process.argv.includes('--host-tests')) {
  await build({ ...shared, entryPoints: ['Tests/host/index.ts'], outfile: 'out/host/index.js' });
} else {
  await build({
    ...shared,
    entryPoints: ['Source/extension.ts'],
    outfile: 'out/extension.js',
  });
}
