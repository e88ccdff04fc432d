// Where the server is: where the setting says, in the extension itself, or on PATH.

import { access, constants } from 'node:fs/promises';
import { delimiter, join } from 'node:path';
import type { ServerCommand } from './connection';

export interface Places {
  /** From the settings; empty where a person has set none. */
  readonly setting: string;
  /** The folder in which a packaged extension carries the server. */
  readonly bundled: string;
  /** What PATH holds. */
  readonly searchPath: string;
}

export interface Located {
  readonly command: ServerCommand;
  readonly from: 'setting' | 'bundled' | 'installed';
}

/** A set path is taken as it is, so that a wrong one is told and not passed over. */
export async function locateServer(places: Places): Promise<Located | null> {
  if (places.setting !== '') return { command: serve(places.setting), from: 'setting' };
  const bundled = join(places.bundled, 'bin', 'quen');
  if (await isExecutable(bundled)) return { command: serve(bundled), from: 'bundled' };
  for (const directory of places.searchPath.split(delimiter)) {
    const program = join(directory, 'quen');
    if (directory !== '' && (await isExecutable(program))) {
      return { command: serve(program), from: 'installed' };
    }
  }
  return null;
}

function serve(program: string): ServerCommand {
  return { program, arguments: ['serve'] };
}

async function isExecutable(path: string): Promise<boolean> {
  try {
    await access(path, constants.X_OK);
    return true;
  } catch {
    return false;
  }
}
