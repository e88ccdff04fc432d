// The rows of the history view.

import * as vscode from 'vscode';
import type { LogEntry, PathAction, Place } from '../server/protocol';
import type { Source } from './entries';
import { repositoryUrl } from './repositoryUrl';

export interface EntryNode {
  readonly kind: 'entry';
  readonly entry: LogEntry;
  readonly source: Source;
}

export interface FileNode {
  readonly kind: 'file';
  readonly file: PathAction;
  readonly entry: LogEntry;
  readonly source: Source;
}

export type Node = EntryNode | FileNode | { readonly kind: 'more' };

export function isHistoryNode(argument: unknown): argument is Node {
  if (typeof argument !== 'object' || argument === null) return false;
  if (argument instanceof vscode.Uri || !('kind' in argument)) return false;
  return argument.kind === 'more' || ('entry' in argument && 'source' in argument);
}

/** What a row stands for: a file, or the directory whose history it is, in the row's revision. */
export function placeOfNode(node: EntryNode | FileNode): { place: Place; revision: number } {
  const { entry, source } = node;
  const place =
    node.kind === 'file'
      ? { url: repositoryUrl(source.repositoryRoot, node.file.path) }
      : source.place;
  return { place, revision: entry.revision };
}
