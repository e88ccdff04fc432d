// Addresses of files at a revision, in a scheme of the extension's own. The path is that of the
// file, so that the editor knows its language and its name; all else stands in the query.

import * as vscode from 'vscode';
import type { Place, Revision } from '../server/protocol';

export const scheme = 'quen';

export interface RevisionAddress {
  readonly place: Place;
  readonly revision: Revision;
}

export function revisionUri(place: Place, revision: Revision): vscode.Uri {
  const file = 'path' in place ? vscode.Uri.file(place.path) : vscode.Uri.parse(place.url, true);
  const address: RevisionAddress = { place, revision };
  return vscode.Uri.from({ scheme, path: file.path, query: JSON.stringify(address) });
}

export function addressOf(uri: vscode.Uri): RevisionAddress {
  return JSON.parse(uri.query) as RevisionAddress;
}

/** An address at which there is never anything: the other side of what was added or deleted. */
export function emptyUri(path: string): vscode.Uri {
  return vscode.Uri.from({ scheme, path, query: 'null' });
}
