import { mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import type { Sandbox } from '../../Workbench/repository';

/** The client behind a script that takes down when it ran, and with what. */
export class CountedClient {
  readonly directory: string;
  private readonly begun: string;
  private readonly ended: string;

  constructor(sandbox: Sandbox) {
    this.directory = sandbox.path('counted');
    this.begun = sandbox.path('begun.log');
    this.ended = sandbox.path('ended.log');
    mkdirSync(this.directory);
    const script = [
      '#!/bin/sh',
      `echo "$(date +%s%3N) $*" >>'${this.begun}'`,
      '/usr/bin/svn "$@"',
      'status=$?',
      `echo "$(date +%s%3N) $*" >>'${this.ended}'`,
      'exit $status',
    ];
    writeFileSync(`${this.directory}/svn`, `${script.join('\n')}\n`, { mode: 0o755 });
    for (const log of [this.begun, this.ended]) writeFileSync(log, '');
  }

  lines(): string[] {
    return linesOf(this.begun);
  }

  count(word: string): number {
    return this.lines().filter((line) => line.includes(` ${word} `)).length;
  }

  /** When the first run with that word began, in milliseconds since the epoch. */
  since(word: string): number | undefined {
    return firstTime(this.lines(), word);
  }

  /** When the first run with that word had ended. */
  endOf(word: string): number | undefined {
    return firstTime(linesOf(this.ended), word);
  }
}

function linesOf(log: string): string[] {
  return readFileSync(log, 'utf8').trim().split('\n');
}

function firstTime(lines: readonly string[], word: string): number | undefined {
  const line = lines.find((each) => each.includes(` ${word} `));
  return line === undefined ? undefined : Number(line.split(' ', 1)[0]);
}
