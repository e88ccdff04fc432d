// Whole statuses on their way, and the differences that come meanwhile.

import { succeeded } from '../server/failures';
import type { ChangedParams, Counts, Item } from '../server/protocol';
import type { Server } from '../server/server';
import type { WorkingCopy } from './workingCopy';

/** A status on its way. */
export interface Reading {
  readonly workingCopy: string;
  readonly items: Map<string, Item>;
  /** Differences that came meanwhile: the status may be older than they are. */
  readonly news: ChangedParams[];
  readonly answer: Promise<{ readonly generation: number; readonly counts: Counts }>;
}

export class Readings {
  private readonly running = new Set<Reading>();

  constructor(private readonly server: Server) {}

  /**
   * Asks for the whole status: as the server has it, or as a run of the client finds it now. Whoever
   * starts a reading takes it in, or leaves it.
   */
  start(workingCopy: string, refresh: boolean): Reading {
    const items = new Map<string, Item>();
    const part = (records: readonly Item[]) => {
      // The later of two counts: members of changelists are told again at the end.
      for (const item of records) items.set(item.path, item);
    };
    const params = { workingCopy, refresh };
    const answer = this.server.request('workingCopy/status', params, { part }).then((status) => {
      part(succeeded(status).items);
      return status;
    });
    answer.catch(() => undefined); // Told to whoever takes it in.
    const reading = { workingCopy, items, news: [], answer };
    this.running.add(reading);
    return reading;
  }

  leave(reading: Reading): void {
    this.running.delete(reading);
  }

  /** Keeps a difference for the statuses that are on their way. */
  note(params: ChangedParams): void {
    for (const { workingCopy, news } of this.running) {
      if (workingCopy === params.workingCopy) news.push(params);
    }
  }

  /** Puts the status in the place of all that is known of the working copy. */
  async takeIn(copy: WorkingCopy, reading: Reading): Promise<void> {
    try {
      const { generation, counts } = await reading.answer;
      copy.items = reading.items;
      copy.counts = counts;
      copy.generation = generation;
      for (const news of reading.news) takeNews(copy, news);
      copy.isKnown = true;
    } finally {
      this.leave(reading);
    }
  }
}

/** Answers whether it was news: a status that is as new may have come first. */
export function takeNews(
  copy: WorkingCopy,
  { generation, changed, removed, counts }: ChangedParams,
): boolean {
  if (generation <= copy.generation) return false;
  for (const item of changed) copy.items.set(item.path, item);
  for (const path of removed) copy.items.delete(path);
  copy.counts = counts;
  copy.generation = generation;
  return true;
}
