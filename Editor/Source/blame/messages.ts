// Messages of revisions, asked for once, and only for those that are seen.

import * as vscode from 'vscode';
import { contains } from '../model/paths';
import { succeeded } from '../server/failures';
import type { Place } from '../server/protocol';
import type { Services } from '../services';

export class Messages {
  /** Windows hold working copies of several repositories, and each has a revision 1. */
  private readonly known = new Map<string, string>();

  constructor(private readonly services: Services) {}

  of(place: Place, revision: number): string | undefined {
    return this.known.get(this.keyOf(place, revision));
  }

  /** One request for all that is missing: from the newest to the oldest of them. */
  async fetch(place: Place, revisions: readonly number[]): Promise<void> {
    const missing = revisions.filter((each) => this.of(place, each) === undefined);
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
    for (const { revision, message } of log.entries) {
      this.known.set(this.keyOf(place, revision), message ?? '');
    }
  }

  private keyOf(place: Place, revision: number): string {
    const { copies } = this.services;
    const copy =
      'path' in place
        ? copies.of(vscode.Uri.file(place.path))
        : copies.all.find(({ facts }) => contains(facts.repositoryRoot, place.url));
    const where = 'path' in place ? place.path : place.url;
    return `${revision} ${copy?.facts.repositoryRoot ?? where}`;
  }
}
