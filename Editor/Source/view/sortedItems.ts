import type { Item } from '../server/protocol';

/** Items of one group in the order of their paths; one change costs one place, not the list. */
export class SortedItems {
  private readonly list: Item[] = [];

  get length(): number {
    return this.list.length;
  }

  first(count: number): readonly Item[] {
    return this.list.slice(0, count);
  }

  get all(): readonly Item[] {
    return this.list;
  }

  /** Whether any of the first `count` places may have changed. */
  put(item: Item, count: number): boolean {
    const place = this.placeOf(item.path);
    const replaces = this.list[place]?.path === item.path;
    this.list.splice(place, replaces ? 1 : 0, item);
    return place < count;
  }

  remove(path: string, count: number): boolean {
    const place = this.placeOf(path);
    if (this.list[place]?.path !== path) return false;
    this.list.splice(place, 1);
    return place < count;
  }

  replaceAll(items: Iterable<Item>): void {
    this.list.length = 0;
    for (const item of items) this.list.push(item);
    this.list.sort((a, b) => (a.path < b.path ? -1 : 1));
  }

  private placeOf(path: string): number {
    let low = 0;
    let high = this.list.length;
    while (low < high) {
      const middle = (low + high) >> 1;
      if ((this.list[middle]?.path ?? '') < path) low = middle + 1;
      else high = middle;
    }
    return low;
  }
}
