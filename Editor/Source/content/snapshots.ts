// Texts as they were at a moment, for the sides of a merge whose output is the file itself.

import * as vscode from 'vscode';

export const snapshotScheme = 'quen-snapshot';

const keptSnapshots = 32;
const snapshots = new Map<string, string>();

export function registerSnapshots(): vscode.Disposable {
  return vscode.workspace.registerTextDocumentContentProvider(snapshotScheme, {
    provideTextDocumentContent: (uri) => snapshots.get(uri.toString()) ?? '',
  });
}

export function snapshotOf(document: vscode.TextDocument): vscode.Uri {
  const uri = document.uri.with({ scheme: snapshotScheme, query: String(document.version) });
  snapshots.set(uri.toString(), document.getText());
  for (const key of snapshots.keys()) {
    if (snapshots.size <= keptSnapshots) break;
    snapshots.delete(key);
  }
  return uri;
}
