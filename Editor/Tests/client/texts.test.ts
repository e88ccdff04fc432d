// Every text that people see stands in the localisation tables, and nothing else does.

import assert from 'node:assert/strict';
import { readdirSync, readFileSync, writeFileSync } from 'node:fs';
import { test } from 'node:test';
import { keysInManifest, keysOf, textsInSources } from '../../Workbench/texts';

const table = 'l10n/bundle.l10n.json';
const manifestTable = 'package.nls.json';

/** The files in `folder` that hold a translation of the table, with the path of each. */
function translationsOf(folder: string, name: RegExp): string[] {
  return readdirSync(folder)
    .filter((each) => name.test(each))
    .map((each) => `${folder}/${each}`);
}

const translations: readonly (readonly [table: string, paths: readonly string[]])[] = [
  [table, translationsOf('l10n', /^bundle\.l10n\..+\.json$/)],
  [manifestTable, translationsOf('.', /^package\.nls\..+\.json$/)],
];

function read(path: string): Record<string, string> {
  return JSON.parse(readFileSync(path, 'utf8')) as Record<string, string>;
}

/** What a translation keeps as it is: places to fill, code, and commands behind links. */
function kept(text: string): string[] {
  return [...text.matchAll(/\{\w+\}|`[^`]+`|\(command:[^)]+\)/g)].map(([part]) => part).sort();
}

test('the table holds the texts of the sources', () => {
  const texts = textsInSources('Source');
  if (process.env.QUEN_WRITE_TEXTS !== undefined) {
    const entries = Object.fromEntries(texts.map((text) => [text, text]));
    writeFileSync(table, `${JSON.stringify(entries, null, 2)}\n`);
  }
  assert.deepEqual(keysOf(table), texts);
});

test('the table of the manifest holds what the manifest names', () => {
  assert.deepEqual(keysOf(manifestTable), keysInManifest('package.json'));
});

test('a translation has every text, with the same places to fill', () => {
  for (const [original, paths] of translations) {
    assert.ok(paths.length > 0, `${original} has no translation`);
    const texts = read(original);
    for (const path of paths) {
      assert.deepEqual(keysOf(path), keysOf(original), path);
      for (const [key, translated] of Object.entries(read(path))) {
        assert.notEqual(translated, '', `${path}: ${key}`);
        assert.deepEqual(kept(translated), kept(texts[key] ?? ''), `${path}: ${key}`);
      }
    }
  }
});

test('every page of the walkthrough is translated', () => {
  const pages = readdirSync('Media/walkthrough');
  const originals = pages.filter((name) => !name.includes('.nls.'));
  for (const name of originals) {
    const translated = name.replace(/\.md$/, '.nls.de.md');
    assert.ok(pages.includes(translated), translated);
  }
});
