// The working copies of this window: opened from its folders, kept right by the server's messages.

import * as vscode from 'vscode';
import { OperationFailed, succeeded } from '../server/failures';
import type { ChangedParams, Item, WorkingCopyFacts } from '../server/protocol';
import type { Server } from '../server/server';
import { contains, directoriesOf } from './paths';
import { makeWorkingCopy, type Change, type WorkingCopy } from './workingCopy';

export class WorkingCopies implements vscode.Disposable {
  private readonly byPath = new Map<string, WorkingCopy>();
  private readonly opened = new vscode.EventEmitter<WorkingCopy>();
  private readonly closed = new vscode.EventEmitter<WorkingCopy>();
  private readonly changed = new vscode.EventEmitter<Change>();
  readonly onDidOpen = this.opened.event;
  readonly onDidClose = this.closed.event;
  readonly onDidChange = this.changed.event;

  constructor(
    private readonly server: Server,
    private readonly report: (error: unknown) => void,
  ) {}

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
    const facts = await this.server.request('workingCopy/open', { path });
    if (!facts) return undefined;
    const copy = this.adopt(succeeded(facts));
    await Promise.all([...facts.nested, ...facts.externals].map((inner) => this.openInner(inner)));
    return copy;
  }

  /** Takes a working copy up that the server has opened; idempotent. */
  adopt(facts: WorkingCopyFacts): WorkingCopy {
    const known = this.byPath.get(facts.workingCopy);
    if (known) {
      known.facts = facts;
      this.changed.fire({ copy: known, paths: [] });
      return known;
    }
    const copy = makeWorkingCopy(facts);
    this.byPath.set(copy.path, copy);
    this.opened.fire(copy);
    void this.load(copy, false).catch(this.report);
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
  }

  /** Runs the client over the whole working copy. */
  async refresh(copy: WorkingCopy): Promise<void> {
    await this.load(copy, true);
  }

  /** Takes in the whole status: as the server has it, or as a run of the client finds it now. */
  private async load(copy: WorkingCopy, refresh: boolean): Promise<void> {
    const status = succeeded(
      await this.server.request('workingCopy/status', { workingCopy: copy.path, refresh }),
    );
    if (status.generation < copy.generation) return; // A newer delta came first.
    const before = [...copy.items.keys()];
    copy.items.clear();
    for (const item of status.items) copy.items.set(item.path, item);
    copy.counts = status.counts;
    copy.generation = status.generation;
    copy.isKnown = true;
    const gone = before.filter((path) => !copy.items.has(path));
    this.changed.fire({ copy, paths: null, gone });
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
    const copy = this.byPath.get(params.workingCopy);
    if (!copy || params.generation <= copy.generation) return;
    for (const item of params.changed) copy.items.set(item.path, item);
    for (const path of params.removed) copy.items.delete(path);
    copy.counts = params.counts;
    copy.generation = params.generation;
    this.changed.fire({
      copy,
      paths: [...params.changed.map((item) => item.path), ...params.removed],
    });
  }

  /** Tells whoever shows `copy` that something besides its items has changed. */
  touch(copy: WorkingCopy): void {
    this.changed.fire({ copy, paths: [] });
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
