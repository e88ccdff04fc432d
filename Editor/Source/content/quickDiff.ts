import * as vscode from 'vscode';
import type { WorkingCopy } from '../model/workingCopy';
import type { Item } from '../server/protocol';
import { revisionUri } from './revisionUri';

/** Gives the gutter what a file was before it was changed. */
export function quickDiffOf(
  copy: WorkingCopy,
  owner: (uri: vscode.Uri) => WorkingCopy | undefined,
): vscode.QuickDiffProvider {
  return {
    provideOriginalResource(uri) {
      // A nested working copy has a provider of its own.
      if (owner(uri) !== copy || !hasOriginal(copy.items.get(uri.path))) return undefined;
      return revisionUri({ path: uri.path }, 'BASE');
    },
  };
}

function hasOriginal(item: Item | undefined): boolean {
  switch (item?.status) {
    case 'unversioned':
    case 'ignored':
    case 'external':
      return false;
    case 'added':
      return item.copied === true;
    default:
      return true;
  }
}
