import type { Item } from '../server/protocol';

/** Items of one group in the order of their paths; one change costs one place, not the list. */
export class SortedItems {
  private list: Item[] = [];
  private isSorted = true;

  get length(): number {
    return this.list.length;
  }

  first(count: number): readonly Item[] {
    this.sort();
    return this.list.slice(0, count);
  }

  get all(): readonly Item[] {
    this.sort();
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

  /** Takes `items` over. They are sorted when somebody asks for them: their number is known before. */
  replaceAll(items: Item[]): void {
    this.list = items;
    this.isSorted = false;
  }

  private sort(): void {
    if (this.isSorted) return;
    this.list.sort((a, b) => (a.path < b.path ? -1 : 1));
    this.isSorted = true;
  }

  private placeOf(path: string): number {
    this.sort();
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
