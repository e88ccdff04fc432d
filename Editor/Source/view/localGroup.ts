// One group of local items: all of them, and the rows that the editor shows.

import * as vscode from 'vscode';
import type { WorkingCopy } from '../model/workingCopy';
import type { Item } from '../server/protocol';
import { localResource, type Resource } from './resource';
import { SortedItems } from './sortedItems';

/** More rows than this nobody reads one by one; the group's label tells how many there are. */
export const shownRows = 2000;

export class LocalGroup {
  private readonly items = new SortedItems();
  private readonly rows = new Map<string, Resource>();

  constructor(
    private readonly copy: WorkingCopy,
    readonly group: vscode.SourceControlResourceGroup,
    private readonly label: string,
  ) {}

  get length(): number {
    return this.items.length;
  }

  get all(): readonly Item[] {
    return this.items.all;
  }

  /** Every item anew; nothing is shown of it yet. */
  replaceAll(items: Item[]): void {
    this.rows.clear();
    this.items.replaceAll(items);
  }

  /** Whether that changes what is shown. */
  put(item: Item): boolean {
    this.rows.delete(item.path);
    const isSeen = this.items.put(item, shownRows);
    return isSeen || this.items.length > shownRows;
  }

  /** Whether that changes what is shown. */
  remove(path: string): boolean {
    this.rows.delete(path);
    return this.items.remove(path, shownRows) || this.items.length >= shownRows;
  }

  show(): void {
    this.group.label =
      this.length > shownRows
        ? vscode.l10n.t('{0} (the first {1} of {2})', this.label, shownRows, this.length)
        : this.label;
    this.group.resourceStates = this.items.first(shownRows).map((item) => this.rowOf(item));
  }

  private rowOf(item: Item): Resource {
    const known = this.rows.get(item.path);
    if (known) return known;
    const made = localResource(this.copy, item);
    this.rows.set(item.path, made);
    return made;
  }
}
