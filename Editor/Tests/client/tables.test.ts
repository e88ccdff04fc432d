// The tables of features and pains name tests that exist.

import assert from 'node:assert/strict';
import { readdirSync, readFileSync } from 'node:fs';
import { test } from 'node:test';

const places: Readonly<Record<string, string>> = {
  client: 'Tests/client',
  host: 'Tests/host',
  journey: 'Tests/browser',
  server: '../Tests/Server',
};

function sourcesIn(folder: string): string {
  return readdirSync(folder)
    .filter((name) => /\.(ts|cpp)$/.test(name))
    .map((name) => readFileSync(`${folder}/${name}`, 'utf8'))
    .join('\n');
}

for (const table of ['features.md', 'pains.md']) {
  test(`${table} names tests that exist`, () => {
    const sources = new Map(Object.entries(places).map(([kind, path]) => [kind, sourcesIn(path)]));
    const named = [
      ...readFileSync(table, 'utf8').matchAll(/`(client|host|journey|server): ([^`]+)`/g),
    ];
    assert.ok(named.length > 20);
    for (const [, kind = '', name = ''] of named) {
      assert.ok(sources.get(kind)?.includes(name), `${kind}: ${name}`);
    }
  });
}
