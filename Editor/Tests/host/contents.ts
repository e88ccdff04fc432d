import assert from 'node:assert/strict';
import * as vscode from 'vscode';
import { quickDiffOf } from '../../Source/content/quickDiff';
import { revisionUri } from '../../Source/content/revisionUri';
import type { HostTest } from './runner';
import { becomes, extension, file, svn, text, workingCopy } from './window';

/** Texts that decode to something else, or to nothing, when they are taken for UTF-8. */
const encoded: readonly (readonly [name: string, bytes: Uint8Array])[] = [
  ['windows-1251', Uint8Array.from([0xcf, 0xf0, 0xe8, 0xe2, 0xe5, 0xf2, 0x0a])],
  ['iso-8859-1', Uint8Array.from([0x63, 0x61, 0x66, 0xe9, 0x0a])],
  ['utf-16', Uint8Array.from([0xff, 0xfe, 0x61, 0x00, 0x0a, 0x00])],
  ['shift-jis', Uint8Array.from([0x93, 0xfa, 0x96, 0x7b, 0x0a])],
  ['zeros', Uint8Array.from([0, 1, 2, 0, 255, 254])],
];

export const contentTests: readonly HostTest[] = [
  [
    'originals are the very bytes, whatever their encoding',
    async () => {
      for (const [name, bytes] of encoded) await text(file(`${name}.txt`), bytes);
      svn('add', '--quiet', ...encoded.map(([name]) => `${name}.txt`));
      svn('commit', '-m', 'Encodings', ...encoded.map(([name]) => `${name}.txt`));
      for (const [name, bytes] of encoded) {
        const uri = revisionUri({ path: file(`${name}.txt`).path }, 'BASE');
        const read = await vscode.workspace.fs.readFile(uri);
        assert.deepEqual(Buffer.from(read), Buffer.from(bytes), name);
      }
    },
  ],
  [
    'names with blanks, @ and other scripts are read like any other',
    async () => {
      const names = ['two words.txt', 'icon@2x.txt', 'Привет.txt', '日本.txt', 'é & ü.txt'];
      for (const name of names) await text(file(name), `${name}\n`);
      svn('add', '--quiet', ...names.map((name) => `${name}@`));
      svn('commit', '-m', 'Names: Привет 日本', ...names.map((name) => `${name}@`));
      for (const name of names) {
        const uri = revisionUri({ path: file(name).path }, 'BASE');
        assert.equal(Buffer.from(await vscode.workspace.fs.readFile(uri)).toString(), `${name}\n`);
      }
    },
  ],
  [
    'a revision opens read-only, in the language of its file',
    async () => {
      const uri = revisionUri({ path: file('src/station.c').path }, 2);
      const document = await vscode.workspace.openTextDocument(uri);
      assert.equal(document.languageId, 'c');
      assert.match(document.getText(), /%\.1f\\n/);
      assert.equal(vscode.workspace.fs.isWritableFileSystem(uri.scheme), false);
    },
  ],
  [
    'what was never committed has no original',
    async () => {
      const uri = revisionUri({ path: file('notes.txt').path }, 'BASE');
      await assert.rejects(async () => vscode.workspace.fs.readFile(uri), { code: 'FileNotFound' });
      const { services } = await extension();
      const diff = quickDiffOf(await workingCopy(), (each) => services.copies.of(each));
      const originalOf = (name: string) =>
        diff.provideOriginalResource?.(file(name), new vscode.CancellationTokenSource().token);
      for (const name of ['notes.txt', 'src/wind.c']) assert.equal(originalOf(name), undefined);
      assert.deepEqual(
        originalOf('src/station.c'),
        revisionUri({ path: file('src/station.c').path }, 'BASE'),
      );
    },
  ],
  [
    'BASE is read again after a commit in a terminal',
    async () => {
      await text(file('base.txt'), 'one\n');
      svn('add', '--quiet', 'base.txt');
      svn('commit', '-m', 'One', 'base.txt');
      await becomes('base.txt', undefined);
      const uri = revisionUri({ path: file('base.txt').path }, 'BASE');
      const read = async () => Buffer.from(await vscode.workspace.fs.readFile(uri)).toString();
      assert.equal(await read(), 'one\n');
      await text(file('base.txt'), 'two\n');
      await becomes('base.txt', 'modified');
      svn('commit', '-m', 'Two', 'base.txt');
      await becomes('base.txt', undefined);
      assert.equal(await read(), 'two\n');
    },
  ],
];
