// A repository behind the client's own server, which wants a name and a password.

import { spawn, type ChildProcess } from 'node:child_process';
import { writeFileSync } from 'node:fs';
import { connect, createServer } from 'node:net';
import { join } from 'node:path';
import type { Sandbox, WorkingCopyOnDisk } from './repository';

const readyWithin = 10_000;

export class PasswordServer {
  private constructor(
    private readonly process: ChildProcess,
    private readonly sandbox: Sandbox,
    /** Of the repository's root. */
    readonly url: string,
    readonly user: string,
    readonly password: string,
  ) {}

  /** Serves the repository `name` of the sandbox, on this machine alone. */
  static async start(sandbox: Sandbox, name: string, password: string): Promise<PasswordServer> {
    const conf = join(sandbox.path(name), 'conf');
    const options = ['anon-access = none', 'auth-access = write', 'password-db = passwd'];
    writeFileSync(
      join(conf, 'svnserve.conf'),
      ['[general]', ...options, 'realm = Weather station', ''].join('\n'),
    );
    writeFileSync(join(conf, 'passwd'), `[users]\nann = ${password}\n`);
    const port = await freePort();
    const address = ['--listen-host', '127.0.0.1', '--listen-port', String(port)];
    const child = spawn(
      'svnserve',
      ['--daemon', '--foreground', ...address, '--root', sandbox.directory],
      { stdio: 'ignore' },
    );
    await listening(port, child);
    const url = `svn://127.0.0.1:${port}/${name}`;
    return new PasswordServer(child, sandbox, url, 'ann', password);
  }

  /** A checkout of trunk; what the client knows of the password stays in the sandbox's own place. */
  checkOut(name: string): WorkingCopyOnDisk {
    return this.sandbox.checkOut(`${this.url}/trunk`, name, [
      ...['--username', this.user, '--password', this.password, '--no-auth-cache'],
    ]);
  }

  stop(): void {
    this.process.kill('SIGTERM');
  }
}

export function freePort(): Promise<number> {
  return new Promise((resolve, reject) => {
    const server = createServer();
    server.once('error', reject);
    server.listen(0, '127.0.0.1', () => {
      const address = server.address();
      server.close(() => {
        if (typeof address === 'object' && address) resolve(address.port);
        else reject(new Error('no port'));
      });
    });
  });
}

async function listening(port: number, child: ChildProcess): Promise<void> {
  const until = Date.now() + readyWithin;
  while (Date.now() < until && child.exitCode === null) {
    if (await answers(port)) return;
    await new Promise((resolve) => setTimeout(resolve, 20));
  }
  throw new Error(`svnserve does not listen on port ${port}`);
}

function answers(port: number): Promise<boolean> {
  return new Promise((resolve) => {
    const socket = connect(port, '127.0.0.1');
    socket.once('connect', () => {
      socket.destroy();
      resolve(true);
    });
    socket.once('error', () => {
      resolve(false);
    });
  });
}
