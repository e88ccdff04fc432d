// Repositories and working copies made with the client, for tests and for trying things out.

import { execFileSync } from 'node:child_process';
import { mkdirSync, mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { dirname, join } from 'node:path';

export type Files = Readonly<Record<string, string | Uint8Array>>;

/** A directory of its own, removed by `remove`. */
export class Sandbox {
  readonly directory = mkdtempSync(join(tmpdir(), 'quen-editor-'));
  readonly config = join(this.directory, 'config');

  path(name: string): string {
    return join(this.directory, name);
  }

  /** Runs the client; it never asks, and reads no configuration but its own. */
  svn(...args: string[]): string {
    return execFileSync('svn', ['--non-interactive', '--config-dir', this.config, ...args], {
      encoding: 'utf8',
      env: { ...process.env, LC_ALL: 'C.UTF-8' },
      stdio: ['ignore', 'pipe', 'pipe'],
    });
  }

  /** Makes a repository with trunk, branches and tags; answers its URL. */
  repository(name = 'repository'): string {
    execFileSync('svnadmin', ['create', this.path(name)]);
    const hook = join(this.path(name), 'hooks', 'pre-revprop-change');
    writeFileSync(hook, '#!/bin/sh\nexit 0\n', { mode: 0o755 });
    const url = `file://${this.path(name)}`;
    this.svn(
      'mkdir',
      '-m',
      'Layout',
      ...['trunk', 'branches', 'tags'].map((part) => `${url}/${part}`),
    );
    return url;
  }

  checkOut(url: string, name: string, options: readonly string[] = []): WorkingCopyOnDisk {
    this.svn('checkout', ...options, url, this.path(name));
    return new WorkingCopyOnDisk(this, this.path(name));
  }

  remove(): void {
    rmSync(this.directory, { recursive: true, force: true });
  }
}

export class WorkingCopyOnDisk {
  constructor(
    private readonly sandbox: Sandbox,
    readonly root: string,
  ) {}

  path(name: string): string {
    return join(this.root, name);
  }

  write(files: Files): this {
    for (const [name, content] of Object.entries(files)) {
      mkdirSync(dirname(this.path(name)), { recursive: true });
      writeFileSync(this.path(name), content);
    }
    return this;
  }

  svn(command: string, ...args: string[]): string {
    return execFileSync(
      'svn',
      ['--non-interactive', '--config-dir', this.sandbox.config, command, ...args],
      {
        cwd: this.root,
        encoding: 'utf8',
        env: { ...process.env, LC_ALL: 'C.UTF-8' },
        stdio: ['ignore', 'pipe', 'pipe'],
      },
    );
  }

  /** Writes and commits; answers nothing, the next revision is one more. */
  commit(message: string, files: Files = {}, author = 'ann'): this {
    this.write(files);
    this.svn('add', '--force', '--quiet', '.');
    this.svn('commit', '-m', message, '--username', author, '.');
    this.svn('update');
    return this;
  }
}
