// The items of a group: in the order of their paths, whatever order they come in.

import assert from 'node:assert/strict';
import { test } from 'node:test';
import type { Item } from '../../Source/server/protocol';
import { SortedItems } from '../../Source/view/sortedItems';

const item = (path: string, status: Item['status'] = 'modified'): Item => ({
  path,
  status,
  property: 'none',
});

function itemsOf(...paths: string[]): SortedItems {
  const items = new SortedItems();
  items.replaceAll(paths.map((path) => item(path)));
  return items;
}

const pathsOf = (items: readonly Item[]) => items.map(({ path }) => path);

test('items of a group stand in the order of their paths', () => {
  const items = itemsOf('/w/c', '/w/a', '/w/b');
  assert.equal(items.length, 3);
  assert.deepEqual(pathsOf(items.first(2)), ['/w/a', '/w/b']);
  assert.deepEqual(pathsOf(items.all), ['/w/a', '/w/b', '/w/c']);
});

const puts: readonly (readonly [string, string, boolean, readonly string[]])[] = [
  ['a new item within what is shown', '/w/aa', true, ['/w/a', '/w/aa', '/w/b', '/w/c']],
  ['a new item behind what is shown', '/w/d', false, ['/w/a', '/w/b', '/w/c', '/w/d']],
  ['a known item', '/w/a', true, ['/w/a', '/w/b', '/w/c']],
];

for (const [name, path, isSeen, expected] of puts) {
  test(`${name} takes its place`, () => {
    const items = itemsOf('/w/c', '/w/a', '/w/b');
    assert.equal(items.put(item(path, 'added'), 2), isSeen);
    assert.deepEqual(pathsOf(items.all), expected);
    assert.equal(items.all.find((each) => each.path === path)?.status, 'added');
  });
}

test('an item that goes leaves the others; one that is not there changes nothing', () => {
  const items = itemsOf('/w/c', '/w/a', '/w/b');
  assert.equal(items.remove('/w/x', 2), false);
  assert.equal(items.remove('/w/b', 2), true);
  assert.equal(items.remove('/w/c', 1), false);
  assert.deepEqual(pathsOf(items.all), ['/w/a']);
});
