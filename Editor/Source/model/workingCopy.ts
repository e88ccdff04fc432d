import * as vscode from 'vscode';
import type { Branch, Counts, Item, Settled, WorkingCopyFacts } from '../server/protocol';

/** What is known of one working copy; filled by the server's answers, and by nothing else. */
export interface WorkingCopy {
  readonly path: string;
  readonly uri: vscode.Uri;
  facts: WorkingCopyFacts;
  generation: number;
  items: Map<string, Item>;
  counts: Counts;
  incoming: readonly Item[];
  /** Files that an update or merge has settled for the person's side, until they were looked at. */
  settled: readonly SettledFile[];
  /** How many operations of this extension run there now. */
  busy: number;
  needsSignIn: boolean;
  /** Whether the first status has arrived. */
  isKnown: boolean;
}

export interface SettledFile extends Settled {
  /** The revision both sides started from, where it is known. */
  readonly base: number | null;
  /** After an update theirs is what BASE holds now; after a merge it is not. */
  readonly isTheirsBase: boolean;
}

export interface Change {
  readonly copy: WorkingCopy;
  /** The paths whose items changed or went away; null where anything may have changed. */
  readonly paths: readonly string[] | null;
}

export function makeWorkingCopy(facts: WorkingCopyFacts): WorkingCopy {
  return {
    path: facts.workingCopy,
    uri: vscode.Uri.file(facts.workingCopy),
    facts,
    generation: -1,
    items: new Map(),
    counts: {},
    incoming: [],
    settled: [],
    busy: 0,
    needsSignIn: false,
    isKnown: false,
  };
}

/** What a person calls it: the folder's name in this window. */
export function copyName(copy: WorkingCopy): string {
  const folder = vscode.workspace.getWorkspaceFolder(copy.uri);
  return folder?.uri.path === copy.path ? folder.name : vscode.workspace.asRelativePath(copy.uri);
}

export function branchName(branch: Branch | null, copy: WorkingCopy): string {
  return branch?.name ?? copy.facts.url.slice(copy.facts.repositoryRoot.length + 1);
}
