// The groups of one source control, and which items lie in which.

import * as vscode from 'vscode';
import { groupOf } from '../model/words';
import type { SettledFile, WorkingCopy } from '../model/workingCopy';
import type { Item } from '../server/protocol';
import { LocalGroup, shownRows } from './localGroup';
import { incomingResource, settledResource } from './resource';

const changelistPrefix = 'changelist-';

export class Groups implements vscode.Disposable {
  private groups = new Map<string, LocalGroup>();
  private settled: vscode.SourceControlResourceGroup | undefined;
  private incoming: vscode.SourceControlResourceGroup | undefined;
  private shownIncoming: readonly Item[] = [];
  private shownSettled: readonly SettledFile[] = [];
  /** The group in which each item lies. */
  private readonly places = new Map<string, string>();

  constructor(
    private readonly control: vscode.SourceControl,
    private readonly copy: WorkingCopy,
    /** Whether a path inside this working copy is the top of another one in this window. */
    private readonly isOther: (path: string) => boolean,
  ) {
    this.make([]);
  }

  /** Every item anew: they are counted at once, and shown by `showLocal`. */
  reset(): void {
    const byGroup = new Map<string, Item[]>();
    this.places.clear();
    for (const item of this.copy.items.values()) {
      const id = this.groupIdOf(item);
      if (id === 'none') continue;
      this.places.set(item.path, id);
      const list = byGroup.get(id);
      if (list) list.push(item);
      else byGroup.set(id, [item]);
    }
    this.ensure(byGroup.keys());
    for (const [id, group] of this.groups) group.replaceAll(byGroup.get(id) ?? []);
  }

  showLocal(): void {
    for (const group of this.groups.values()) group.show();
  }

  /** Only the items of these paths anew. */
  update(paths: readonly string[]): void {
    if (!this.knowsGroupsOf(paths)) {
      this.reset();
      this.showLocal();
      return;
    }
    const touched = new Set<LocalGroup>();
    for (const path of paths) this.move(path, touched);
    for (const group of touched) group.show();
  }

  showIncoming(): void {
    const { copy } = this;
    if (!this.incoming || this.shownIncoming === copy.incoming) return;
    this.shownIncoming = copy.incoming;
    this.incoming.resourceStates = copy.incoming
      .slice(0, shownRows)
      .map((item) => incomingResource(copy, item));
  }

  showSettled(): void {
    const { copy } = this;
    if (!this.settled || this.shownSettled === copy.settled) return;
    this.shownSettled = copy.settled;
    this.settled.resourceStates = copy.settled.map((settled) => settledResource(copy, settled));
  }

  /** Of all local items that have a row, shown or not. */
  get paths(): readonly string[] {
    return [...this.places.keys()];
  }

  /** How many items the badge counts. */
  count(of: 'all' | 'versioned'): number {
    let total = this.copy.settled.length;
    for (const [id, group] of this.groups) {
      if (of === 'all' || id !== 'unversioned') total += group.length;
    }
    return total;
  }

  /** All items of a group, shown or not; undefined where it is not one of these groups. */
  itemsOf(group: vscode.SourceControlResourceGroup): readonly Item[] | undefined {
    if (group === this.incoming) return this.copy.incoming;
    const known = this.groups.get(group.id);
    return known?.group === group ? known.all : undefined;
  }

  /** What a commit of everything would take: no conflicts, nothing unversioned or missing. */
  committable(except: string): readonly Item[] {
    return [...this.groups]
      .filter(([id]) => id === 'changes' || id.startsWith(changelistPrefix))
      .filter(([id]) => id !== `${changelistPrefix}${except}`)
      .flatMap(([, group]) => group.all);
  }

  dispose(): void {
    for (const { group } of this.groups.values()) group.dispose();
    this.settled?.dispose();
    this.incoming?.dispose();
  }

  private knowsGroupsOf(paths: readonly string[]): boolean {
    return paths.every((path) => {
      const item = this.copy.items.get(path);
      const id = item ? this.groupIdOf(item) : 'none';
      return id === 'none' || this.groups.has(id);
    });
  }

  private move(path: string, touched: Set<LocalGroup>): void {
    const item = this.copy.items.get(path);
    const from = this.places.get(path);
    const to = item ? this.groupIdOf(item) : 'none';
    if (from !== undefined && from !== to) this.takeOut(path, from, touched);
    const group = this.groups.get(to);
    if (!item || !group) return;
    this.places.set(path, to);
    if (group.put(item)) touched.add(group);
  }

  private takeOut(path: string, from: string, touched: Set<LocalGroup>): void {
    this.places.delete(path);
    const group = this.groups.get(from);
    if (group?.remove(path)) touched.add(group);
  }

  /** The editor shows groups in the order of their making; a new changelist remakes them. */
  private ensure(ids: Iterable<string>): void {
    const changelists = [...ids].filter((id) => id.startsWith(changelistPrefix)).sort();
    const known = [...this.groups.keys()].filter((id) => id.startsWith(changelistPrefix));
    if (changelists.join('\n') === known.join('\n')) return;
    this.dispose();
    this.make(changelists);
  }

  private make(changelists: readonly string[]): void {
    this.groups = new Map();
    this.settled = this.control.createResourceGroup('settled', vscode.l10n.t('To Be Looked At'));
    this.settled.hideWhenEmpty = true;
    this.add('conflicts', vscode.l10n.t('Conflicts'));
    this.add('changes', vscode.l10n.t('Changes'), false);
    for (const id of changelists) this.add(id, id.slice(changelistPrefix.length));
    this.add('missing', vscode.l10n.t('Missing'));
    this.add('unversioned', vscode.l10n.t('Unversioned'));
    this.incoming = this.control.createResourceGroup('incoming', vscode.l10n.t('Incoming'));
    this.incoming.hideWhenEmpty = true;
    this.shownIncoming = [];
    this.shownSettled = [];
    this.showIncoming();
    this.showSettled();
  }

  private add(id: string, label: string, hideWhenEmpty = true): void {
    const group = this.control.createResourceGroup(id, label);
    group.hideWhenEmpty = hideWhenEmpty;
    this.groups.set(id, new LocalGroup(this.copy, group, label));
  }

  private groupIdOf(item: Item): string {
    const kind = this.isOther(item.path) ? 'none' : groupOf(item);
    return kind === 'changes' && item.changelist !== undefined
      ? `${changelistPrefix}${item.changelist}`
      : kind;
  }
}
