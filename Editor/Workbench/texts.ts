// The texts that people see: which the sources use, and which the tables hold.

import { readdirSync, readFileSync } from 'node:fs';
import { join } from 'node:path';
import ts from 'typescript';

/** Every text that the sources hand to the editor's localisation, sorted. */
export function textsInSources(folder: string): string[] {
  const texts = new Set<string>();
  for (const name of readdirSync(folder, { recursive: true, encoding: 'utf8' })) {
    if (!name.endsWith('.ts')) continue;
    const path = join(folder, name);
    const source = ts.createSourceFile(
      path,
      readFileSync(path, 'utf8'),
      ts.ScriptTarget.ES2022,
      true,
    );
    collect(source, texts);
  }
  return [...texts].sort();
}

function collect(node: ts.Node, texts: Set<string>): void {
  if (ts.isCallExpression(node) && /(^|\.)l10n\.t$/.test(node.expression.getText())) {
    const [text] = node.arguments;
    if (!text || !ts.isStringLiteralLike(text)) {
      throw new Error(`not a plain text: ${node.getText()}`);
    }
    texts.add(text.text);
  }
  node.forEachChild((child) => {
    collect(child, texts);
  });
}

export function keysOf(path: string): string[] {
  return Object.keys(JSON.parse(readFileSync(path, 'utf8')) as Record<string, string>).sort();
}

/** Every `%key%` of the manifest, sorted. */
export function keysInManifest(path: string): string[] {
  const found = readFileSync(path, 'utf8').matchAll(/"%([^%"]+)%"/g);
  return [...new Set([...found].map(([, key]) => key ?? ''))].sort();
}
