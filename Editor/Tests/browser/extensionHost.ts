// What the system tells of the process in which the editor runs extensions.

import { readdirSync, readFileSync } from 'node:fs';

const ticksPerSecond = 100;
const appearsWithin = 60_000;

export function find(): string {
  const found = findOrNot();
  if (found === undefined) throw new Error('no extension host runs');
  return found;
}

/** Waits until there is another one than `former`, which may be about to end. */
export async function appearance(former: string): Promise<string> {
  const until = Date.now() + appearsWithin;
  while (Date.now() < until) {
    const found = findOrNot(former);
    if (found !== undefined) return found;
    await new Promise((resolve) => setTimeout(resolve, 10));
  }
  throw new Error('no extension host began to run');
}

/** In milliseconds since the epoch. */
export function startedAt(host: string): number {
  const uptime = Number(readFileSync('/proc/uptime', 'utf8').split(' ', 1)[0]);
  const start = Number(statistics(host)[19]) / ticksPerSecond;
  return Date.now() - 1000 * (uptime - start);
}

export function processorSeconds(host: string): number {
  const fields = statistics(host);
  return (Number(fields[11]) + Number(fields[12])) / ticksPerSecond;
}

export function peakMegabytes(host: string): string {
  const line = /VmHWM:\s+(\d+)/.exec(readFileSync(`/proc/${host}/status`, 'utf8'));
  return (Number(line?.[1]) / 1024).toFixed(0);
}

/** What comes after the name of the process, which may hold spaces. */
function statistics(host: string): string[] {
  return readFileSync(`/proc/${host}/stat`, 'utf8').split(') ')[1]?.split(' ') ?? [];
}

function findOrNot(former?: string): string | undefined {
  return readdirSync('/proc').find((name) => {
    if (!/^\d+$/.test(name) || name === former) return false;
    try {
      return readFileSync(`/proc/${name}/cmdline`, 'utf8').includes('--type=extensionHost');
    } catch {
      return false; // It has ended meanwhile.
    }
  });
}
