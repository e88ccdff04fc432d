// The tables of features and pains name tests that exist, by their whole names.

import assert from 'node:assert/strict';
import { readdirSync, readFileSync } from 'node:fs';
import { test } from 'node:test';

interface Place {
  readonly folder: string;
  /** How a test is declared there; the last group is its name. */
  readonly declaration: RegExp;
}

const called = /\b(?:test|journey)\(\s*(['"`])((?:(?!\1).)+)\1/g;

const places: Readonly<Record<string, Place>> = {
  client: { folder: 'Tests/client', declaration: called },
  host: {
    folder: 'Tests/host',
    declaration: /\[\s*(['"`])((?:(?!\1).)+)\1,\s*(?:async )?\(/g,
  },
  journey: { folder: 'Tests/browser', declaration: called },
  server: { folder: '../Tests/Server', declaration: /\bTEST(?:_[FP])?\(\s*(\w+,\s*\w+)\s*\)/g },
};

function namesIn({ folder, declaration }: Place): ReadonlySet<string> {
  const sources = readdirSync(folder)
    .filter((name) => /\.(ts|cpp)$/.test(name))
    .map((name) => readFileSync(`${folder}/${name}`, 'utf8'));
  const names = sources.flatMap((source) =>
    [...source.matchAll(declaration)].map((found) => found.at(-1) ?? ''),
  );
  return new Set(names.flatMap(spelledOut));
}

/** A name as it is run: a test of both themes is two, and one of the server is `Suite.Name`. */
function spelledOut(name: string): string[] {
  const whole = name.replace(/^(\w+),\s*(\w+)$/, '$1.$2');
  return whole.includes('${theme}')
    ? ['light', 'dark'].map((theme) => whole.replace('${theme}', theme))
    : [whole];
}

for (const table of ['features.md', 'pains.md']) {
  test(`${table} names tests that exist`, () => {
    const names = new Map(Object.entries(places).map(([kind, place]) => [kind, namesIn(place)]));
    for (const [kind, known] of names) assert.ok(known.size > 5, `no tests of ${kind} were found`);
    const named = [
      ...readFileSync(table, 'utf8').matchAll(/`(client|host|journey|server): ([^`]+)`/g),
    ];
    assert.ok(named.length > 20);
    for (const [, kind = '', name = ''] of named) {
      assert.ok(names.get(kind)?.has(name), `${kind}: ${name}`);
    }
  });
}
