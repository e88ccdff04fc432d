// Files as they are in the repository, byte for byte: the editor decodes both sides of a comparison
// with the same settings, so no encoding shows a false mark.

import * as vscode from 'vscode';
import { Cancelled, OperationFailed, succeeded } from '../server/failures';
import type { Server } from '../server/server';
import { addressOf, scheme } from './revisionUri';

interface Content {
  readonly bytes: Uint8Array;
  readonly since: number;
}

const keptContents = 64;
const empty: Content = { bytes: new Uint8Array(), since: 0 };

export class ContentProvider implements vscode.FileSystemProvider {
  private readonly contents = new Map<string, Promise<Content>>();
  private readonly changes = new vscode.EventEmitter<vscode.FileChangeEvent[]>();
  readonly onDidChangeFile = this.changes.event;

  constructor(private readonly server: Server) {}

  register(): vscode.Disposable {
    return vscode.workspace.registerFileSystemProvider(scheme, this, {
      isCaseSensitive: true,
      isReadonly: new vscode.MarkdownString(
        vscode.l10n.t('This is a revision of the repository. It cannot be edited.'),
      ),
    });
  }

  async stat(uri: vscode.Uri): Promise<vscode.FileStat> {
    const { bytes, since } = await this.content(uri);
    return { type: vscode.FileType.File, ctime: 0, mtime: since, size: bytes.byteLength };
  }

  async readFile(uri: vscode.Uri): Promise<Uint8Array> {
    return (await this.content(uri)).bytes;
  }

  /** Forgets what BASE or HEAD may no longer be; `paths` null means: of every file. */
  invalidate(paths: ReadonlySet<string> | null): void {
    const gone: vscode.Uri[] = [];
    for (const key of this.contents.keys()) {
      const uri = vscode.Uri.parse(key, true);
      if (uri.query === 'null' || typeof addressOf(uri).revision === 'number') continue;
      if (paths && !paths.has(uri.path)) continue;
      this.contents.delete(key);
      gone.push(uri);
    }
    if (gone.length === 0) return;
    this.changes.fire(gone.map((uri) => ({ type: vscode.FileChangeType.Changed, uri })));
  }

  watch(): vscode.Disposable {
    return new vscode.Disposable(() => undefined); // `invalidate` tells every change.
  }

  readDirectory(uri: vscode.Uri): [string, vscode.FileType][] {
    throw vscode.FileSystemError.FileNotADirectory(uri);
  }

  createDirectory(uri: vscode.Uri): void {
    throw vscode.FileSystemError.NoPermissions(uri);
  }

  writeFile(uri: vscode.Uri): void {
    throw vscode.FileSystemError.NoPermissions(uri);
  }

  delete(uri: vscode.Uri): void {
    throw vscode.FileSystemError.NoPermissions(uri);
  }

  rename(uri: vscode.Uri): void {
    throw vscode.FileSystemError.NoPermissions(uri);
  }

  private content(uri: vscode.Uri): Promise<Content> {
    if (uri.query === 'null') return Promise.resolve(empty);
    const key = uri.toString();
    const known = this.contents.get(key);
    if (known) return known;
    const fetched = this.fetch(uri);
    this.contents.set(key, fetched);
    this.evict();
    // A failure is told to whoever asked, and not kept: the next one asks again.
    fetched.catch(() => this.contents.delete(key));
    return fetched;
  }

  private async fetch(uri: vscode.Uri): Promise<Content> {
    const { place, revision } = addressOf(uri);
    try {
      const answer = succeeded(await this.server.request('file/content', { ...place, revision }));
      return { bytes: Buffer.from(answer.base64 ?? '', 'base64'), since: Date.now() };
    } catch (error) {
      throw asFileSystemError(error, uri);
    }
  }

  private evict(): void {
    for (const key of this.contents.keys()) {
      if (this.contents.size <= keptContents) return;
      this.contents.delete(key);
    }
  }
}

function asFileSystemError(error: unknown, uri: vscode.Uri): unknown {
  if (error instanceof Cancelled) return vscode.FileSystemError.Unavailable(uri);
  if (!(error instanceof OperationFailed)) return error;
  return error.failure === 'other'
    ? vscode.FileSystemError.FileNotFound(error.message)
    : vscode.FileSystemError.Unavailable(error.message);
}
