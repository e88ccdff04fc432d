// The real server, for tests against real repositories.

import { Server, type ServerSetup } from '../../Source/server/server';
import type { ChangedParams } from '../../Source/server/protocol';

export interface RealServer {
  readonly server: Server;
  /** Everything that `workingCopy/changed` has told so far. */
  readonly changes: readonly ChangedParams[];
  /** Resolves with the first change, told already or later, that satisfies the test. */
  readonly changeThat: (satisfies: (change: ChangedParams) => boolean) => Promise<ChangedParams>;
}

export function realServer(ask?: ServerSetup['ask'], environment?: NodeJS.ProcessEnv): RealServer {
  const program = process.env.QUEN_PROGRAM ?? '';
  const changes: ChangedParams[] = [];
  const waiting = new Set<(change: ChangedParams) => void>();
  const server = new Server({
    locate: () =>
      Promise.resolve({
        program,
        arguments: ['serve'],
        environment: { ...process.env, ...environment },
      }),
    options: () => ({ clientInfo: { name: 'test', version: '0' }, options: {} }),
    ask: ask ?? (() => Promise.resolve(null as never)),
    listen: (name, params) => {
      if (name !== 'workingCopy/changed') return;
      const change = params as ChangedParams;
      changes.push(change);
      for (const tell of waiting) tell(change);
    },
    onState: () => undefined,
    versions: ['0.1'],
  });
  const changeThat = (satisfies: (change: ChangedParams) => boolean) =>
    new Promise<ChangedParams>((resolve) => {
      const known = changes.find(satisfies);
      if (known) resolve(known);
      const tell = (change: ChangedParams) => {
        if (!satisfies(change)) return;
        waiting.delete(tell);
        resolve(change);
      };
      if (!known) waiting.add(tell);
    });
  return { server, changes, changeThat };
}
