// The window that the tests run in: the extension, its one working copy, and the client beside it.

import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import * as vscode from 'vscode';
import type { Inside } from '../../Source/extension';
import type { WorkingCopy } from '../../Source/model/workingCopy';
import type { Item } from '../../Source/server/protocol';
import { until } from './runner';

let inside: Inside | undefined;

export async function extension(): Promise<Inside> {
  if (inside) return inside;
  const found = vscode.extensions.getExtension<Inside>('quen.quen-subversion');
  assert.ok(found, 'the extension is installed');
  inside = await found.activate();
  return inside;
}

export async function workingCopy(): Promise<WorkingCopy> {
  const { services } = await extension();
  return until(() => services.copies.all.find((copy) => copy.isKnown));
}

export function folder(): vscode.Uri {
  const [first] = vscode.workspace.workspaceFolders ?? [];
  assert.ok(first, 'a folder is open');
  return first.uri;
}

export function file(name: string): vscode.Uri {
  return vscode.Uri.joinPath(folder(), name);
}

/** A command in a terminal: the extension is not told. */
export function svn(...args: string[]): string {
  return execFileSync('svn', ['--non-interactive', ...args], {
    cwd: folder().fsPath,
    encoding: 'utf8',
    env: { ...process.env, LC_ALL: 'C.UTF-8' },
  });
}

export async function item(name: string): Promise<Item | undefined> {
  return (await workingCopy()).items.get(file(name).path);
}

/** Waits until a file has the status, at most so long; answers how long it took. */
export async function becomes(
  name: string,
  status: Item['status'] | undefined,
  atMost = 20_000,
): Promise<number> {
  const copy = await workingCopy();
  const started = Date.now();
  const { path } = file(name);
  for (;;) {
    if (copy.items.get(path)?.status === status) return Date.now() - started;
    const now = Date.now() - started;
    assert.ok(
      now < atMost,
      `${name} is ${copy.items.get(path)?.status ?? 'unchanged'} after ${now} ms`,
    );
    await new Promise((resolve) => setTimeout(resolve, 10));
  }
}

/** How many runs of the client there were of one sub-command. */
export async function runsOf(word: string): Promise<number> {
  const { services } = await extension();
  const { clientRuns } = await services.server.request('server/statistics', {});
  return clientRuns[word] ?? 0;
}

export async function text(uri: vscode.Uri, content: string | Uint8Array): Promise<void> {
  const bytes = typeof content === 'string' ? Buffer.from(content) : content;
  await vscode.workspace.fs.writeFile(uri, bytes);
}

/** Runs a command of the extension, or of the editor. */
export function run(command: string, ...args: unknown[]): Thenable<unknown> {
  return vscode.commands.executeCommand(command, ...args);
}

export async function lines(uri: vscode.Uri): Promise<string[]> {
  return Buffer.from(await vscode.workspace.fs.readFile(uri))
    .toString('utf8')
    .split('\n');
}
