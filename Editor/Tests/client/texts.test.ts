// Every text that people see stands in the localisation tables, and nothing else does.

import assert from 'node:assert/strict';
import { readdirSync, readFileSync, writeFileSync } from 'node:fs';
import { test } from 'node:test';
import { keysInManifest, keysOf, textsInSources } from '../../Workbench/texts';

const table = 'l10n/bundle.l10n.json';
const translations = readdirSync('l10n').filter((name) => /^bundle\.l10n\..+\.json$/.test(name));

test('the table holds the texts of the sources', () => {
  const texts = textsInSources('Source');
  if (process.env.QUEN_WRITE_TEXTS !== undefined) {
    const entries = Object.fromEntries(texts.map((text) => [text, text]));
    writeFileSync(table, `${JSON.stringify(entries, null, 2)}\n`);
  }
  assert.deepEqual(keysOf(table), texts);
});

test('the table of the manifest holds what the manifest names', () => {
  assert.deepEqual(keysOf('package.nls.json'), keysInManifest('package.json'));
});

test('a translation has every text, with the same places to fill', () => {
  const texts = keysOf(table);
  const places = (text: string) => [...text.matchAll(/\{\d\}/g)].map(([place]) => place).sort();
  for (const name of translations) {
    const path = `l10n/${name}`;
    assert.deepEqual(keysOf(path), texts, name);
    const entries = JSON.parse(readFileSync(path, 'utf8')) as Record<string, string>;
    for (const [text, translated] of Object.entries(entries)) {
      assert.deepEqual(places(translated), places(text), `${name}: ${text}`);
    }
  }
});
