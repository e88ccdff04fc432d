// Starts the browser-served editor with an extension in it, on this machine alone.

import { execFileSync, spawn, type ChildProcess } from 'node:child_process';
import { mkdirSync, openSync, readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { freePort } from './passwordServer';

export interface WorkbenchOptions {
  readonly node: string;
  readonly modules: string;
  /** Where its settings and its extensions lie. */
  readonly home: string;
  /** A packaged extension to install first. */
  readonly extension?: string | undefined;
  readonly settings?: Readonly<Record<string, unknown>>;
  readonly environment?: NodeJS.ProcessEnv;
  readonly port?: number;
}

export interface Workbench {
  readonly address: string;
  readonly host: string;
  readonly process: ChildProcess;
  stop(): Promise<void>;
}

const readyWithin = 60_000;

const quietSettings = {
  'workbench.startupEditor': 'none',
  'workbench.tips.enabled': false,
  'extensions.ignoreRecommendations': true,
  'git.enabled': false,
  'telemetry.telemetryLevel': 'off',
  'scm.alwaysShowProviders': false,
};

export async function startWorkbench(options: WorkbenchOptions): Promise<Workbench> {
  const { home } = options;
  const entry = join(options.modules, 'code-server', 'out', 'node', 'entry.js');
  const directories = [
    '--user-data-dir',
    join(home, 'data'),
    '--extensions-dir',
    join(home, 'extensions'),
  ];
  mkdirSync(join(home, 'data', 'User'), { recursive: true });
  const config = join(home, 'config.yaml');
  writeFileSync(config, 'cert: false\n');
  const settings = { ...quietSettings, ...options.settings };
  writeFileSync(join(home, 'data', 'User', 'settings.json'), JSON.stringify(settings, null, 2));
  if (options.extension !== undefined) {
    const install = [
      entry,
      '--config',
      config,
      ...directories,
      '--install-extension',
      options.extension,
    ];
    execFileSync(options.node, install, { stdio: 'pipe', env: options.environment });
  }
  const port = options.port ?? (await freePort());
  const host = `127.0.0.1:${port}`;
  const logPath = join(home, 'editor.log');
  const log = openSync(logPath, 'a');
  const child = spawn(
    options.node,
    [
      entry,
      ...['--config', config, '--auth', 'none', '--bind-addr', host, ...directories],
      ...['--disable-telemetry', '--disable-update-check', '--disable-getting-started-override'],
      '--disable-workspace-trust',
    ],
    { stdio: ['ignore', log, log], env: options.environment },
  );
  await ready(`http://${host}/healthz`, child).catch((error: unknown) => {
    throw new Error(`${String(error)}\n${readFileSync(logPath, 'utf8')}`);
  });
  return { address: `http://${host}`, host, process: child, stop: () => stop(child) };
}

/** Of a folder, or of a file that names several: `.code-workspace`. */
export function folderAddress(workbench: Workbench, folder: string): string {
  const kind = folder.endsWith('.code-workspace') ? 'workspace' : 'folder';
  return `${workbench.address}/?${kind}=${encodeURIComponent(folder)}`;
}

async function ready(address: string, child: ChildProcess): Promise<void> {
  const until = Date.now() + readyWithin;
  while (Date.now() < until) {
    if (child.exitCode !== null) throw new Error(`the editor ended with status ${child.exitCode}`);
    try {
      if ((await fetch(address)).ok) return;
    } catch {
      await new Promise((resolve) => setTimeout(resolve, 100)); // It does not listen yet.
    }
  }
  throw new Error(`the editor did not answer at ${address}`);
}

async function stop(child: ChildProcess): Promise<void> {
  if (child.exitCode !== null || child.signalCode !== null) return;
  const ended = new Promise((resolve) => child.once('exit', resolve));
  child.kill('SIGTERM');
  const timer = setTimeout(() => child.kill('SIGKILL'), 5000);
  await ended;
  clearTimeout(timer);
}
