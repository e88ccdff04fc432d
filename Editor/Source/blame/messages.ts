// Messages of revisions, asked for once, and only for those that are seen.

import { succeeded } from '../server/failures';
import type { Place } from '../server/protocol';
import type { Services } from '../services';

export class Messages {
  private readonly known = new Map<number, string>();

  constructor(private readonly services: Services) {}

  of(revision: number): string | undefined {
    return this.known.get(revision);
  }

  /** One request for all that is missing: from the newest to the oldest of them. */
  async fetch(place: Place, revisions: readonly number[]): Promise<void> {
    const missing = revisions.filter((revision) => !this.known.has(revision));
    if (missing.length === 0) return;
    const from = Math.max(...missing);
    const to = Math.min(...missing);
    const log = succeeded(
      await this.services.server.request('history/log', {
        ...place,
        from,
        to,
        limit: from - to + 1,
      }),
    );
    for (const { revision, message } of log.entries) this.known.set(revision, message ?? '');
  }
}
