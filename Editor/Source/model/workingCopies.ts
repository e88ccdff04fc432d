// The working copies of this window: opened from its folders, kept right by the server's messages.

import * as vscode from 'vscode';
import { OperationFailed, succeeded } from '../server/failures';
import type { ChangedParams, Item, WorkingCopyFacts } from '../server/protocol';
import type { Server } from '../server/server';
import { contains, directoriesOf } from './paths';
import { Readings, takeNews, type Reading } from './readings';
import { makeWorkingCopy, type Change, type WorkingCopy } from './workingCopy';

export class WorkingCopies implements vscode.Disposable {
  private readonly byPath = new Map<string, WorkingCopy>();
  private readonly readings: Readings;
  private readonly opened = new vscode.EventEmitter<WorkingCopy>();
  private readonly closed = new vscode.EventEmitter<WorkingCopy>();
  private readonly changed = new vscode.EventEmitter<Change>();
  readonly onDidOpen = this.opened.event;
  readonly onDidClose = this.closed.event;
  readonly onDidChange = this.changed.event;

  constructor(
    private readonly server: Server,
    private readonly report: (error: unknown) => void,
  ) {
    this.readings = new Readings(server);
  }

  get all(): readonly WorkingCopy[] {
    return [...this.byPath.values()];
  }

  get(path: string): WorkingCopy | undefined {
    return this.byPath.get(path);
  }

  /** The innermost working copy that holds `uri`. */
  of(uri: vscode.Uri): WorkingCopy | undefined {
    if (uri.scheme !== 'file') return undefined;
    let best: WorkingCopy | undefined;
    for (const copy of this.byPath.values()) {
      if (contains(copy.path, uri.path) && (best?.path.length ?? -1) < copy.path.length)
        best = copy;
    }
    return best;
  }

  itemOf(uri: vscode.Uri): Item | undefined {
    return this.of(uri)?.items.get(uri.path);
  }

  /** Opens the working copy above or at `path`, and those inside it. */
  async open(path: string): Promise<WorkingCopy | undefined> {
    // The status is asked for first, so that the items come while the client writes. Where `path`
    // is not the top of a working copy that is refused, and asked again once the top is known.
    const early = this.byPath.has(path) ? undefined : this.readings.start(path, false);
    try {
      const facts = await this.server.request('workingCopy/open', { path });
      const isTop = facts?.workingCopy === path && !this.byPath.has(path);
      if (early && !isTop) this.readings.leave(early);
      if (!facts) return undefined;
      const copy = this.adopt(succeeded(facts), isTop ? early : undefined);
      await Promise.all(
        [...facts.nested, ...facts.externals].map((inner) => this.openInner(inner)),
      );
      return copy;
    } catch (error) {
      if (early) this.readings.leave(early);
      throw error;
    }
  }

  /** Takes a working copy up that the server has opened; idempotent. */
  adopt(facts: WorkingCopyFacts, reading?: Reading): WorkingCopy {
    const known = this.byPath.get(facts.workingCopy);
    if (known) {
      known.facts = facts;
      this.changed.fire({ copy: known, paths: [] });
      return known;
    }
    const copy = makeWorkingCopy(facts);
    this.byPath.set(copy.path, copy);
    this.opened.fire(copy);
    this.touchAround(copy.path);
    void this.load(copy, reading ?? this.readings.start(copy.path, false)).catch(this.report);
    return copy;
  }

  async close(copy: WorkingCopy): Promise<void> {
    this.forget(copy.path);
    await this.server.request('workingCopy/close', { workingCopy: copy.path });
  }

  forget(path: string): void {
    const copy = this.byPath.get(path);
    if (!copy) return;
    this.byPath.delete(path);
    this.closed.fire(copy);
    this.touchAround(path);
  }

  /** Runs the client over the whole working copy. */
  async refresh(copy: WorkingCopy): Promise<void> {
    await this.load(copy, this.readings.start(copy.path, true));
  }

  private async load(copy: WorkingCopy, reading: Reading): Promise<void> {
    await this.readings.takeIn(copy, reading);
    this.changed.fire({ copy, paths: null });
  }

  /** Asks the repository what is newer there. */
  async refreshIncoming(copy: WorkingCopy, background = false): Promise<void> {
    try {
      const params = { workingCopy: copy.path, background };
      const answer = await this.server.request('workingCopy/incoming', params);
      copy.incoming = withoutContainers(succeeded(answer).items);
      copy.needsSignIn = false;
    } catch (error) {
      if (error instanceof OperationFailed && error.failure === 'notAuthorised') {
        copy.needsSignIn = true;
      }
      throw error;
    } finally {
      this.changed.fire({ copy, paths: [] });
    }
  }

  /** Reads the facts of a working copy again: its URL, branch and revision may be others now. */
  async refreshFacts(copy: WorkingCopy): Promise<void> {
    const facts = await this.server.request('workingCopy/open', { path: copy.path });
    if (facts) copy.facts = succeeded(facts);
    this.changed.fire({ copy, paths: [] });
  }

  apply(params: ChangedParams): void {
    this.readings.note(params);
    const copy = this.byPath.get(params.workingCopy);
    if (!copy || !takeNews(copy, params)) return;
    this.changed.fire({
      copy,
      paths: [...params.changed.map((item) => item.path), ...params.removed],
    });
  }

  /** Tells whoever shows `copy` that something besides its items has changed. */
  touch(copy: WorkingCopy): void {
    this.changed.fire({ copy, paths: [] });
  }

  /** A working copy that comes or goes is a row, or none, of the one around it. */
  private touchAround(path: string): void {
    for (const copy of this.byPath.values()) {
      if (copy.items.has(path)) this.changed.fire({ copy, paths: [path] });
    }
  }

  /** Forgets everything: the server is a new one, which knows nothing of what was opened. */
  clear(): void {
    for (const path of [...this.byPath.keys()]) this.forget(path);
  }

  dispose(): void {
    this.clear();
    this.opened.dispose();
    this.closed.dispose();
    this.changed.dispose();
  }

  private async openInner(path: string): Promise<void> {
    try {
      await this.open(path);
    } catch (error) {
      this.report(error); // The one above it is there all the same.
    }
  }
}

/** A directory counts as modified in the repository where something in it is: that tells nothing. */
function withoutContainers(items: readonly Item[]): readonly Item[] {
  const directories = directoriesOf(items.map(({ path }) => path));
  return items.filter(
    ({ path, incoming, incomingProperty }) =>
      incoming !== 'modified' || incomingProperty !== undefined || !directories.has(path),
  );
}
