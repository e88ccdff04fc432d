// Letters and colours of files wherever the editor shows them.

import * as vscode from 'vscode';
import { appearanceOf, describe, groupOf } from '../model/words';
import type { Item } from '../server/protocol';
import type { Services } from '../services';

export function registerDecorations(services: Services): vscode.Disposable {
  const { copies } = services;
  const changed = new vscode.EventEmitter<vscode.Uri[] | undefined>();
  return vscode.Disposable.from(
    changed,
    copies.onDidChange((change) => {
      // Of very many at once the editor asks only for what it shows.
      if (change.paths === null) changed.fire(undefined);
      else if (change.paths.length > 0)
        changed.fire(change.paths.map((path) => vscode.Uri.file(path)));
    }),
    copies.onDidClose(() => {
      changed.fire(undefined);
    }),
    vscode.window.registerFileDecorationProvider({
      onDidChangeFileDecorations: changed.event,
      provideFileDecoration(uri) {
        const item = copies.itemOf(uri);
        return item && decorationOf(item);
      },
    }),
  );
}

function decorationOf(item: Item): vscode.FileDecoration | undefined {
  if (item.status === 'ignored') {
    return new vscode.FileDecoration(undefined, undefined, new vscode.ThemeColor('quen.ignored'));
  }
  const kind = groupOf(item);
  const { letter, color } = appearanceOf(item);
  if (kind === 'none') return lockDecoration(item);
  const decoration = new vscode.FileDecoration(
    letter,
    describe(item),
    new vscode.ThemeColor(color),
  );
  // A folder with something unversioned inside is not itself changed.
  decoration.propagate = kind !== 'unversioned' && item.status !== 'deleted';
  return decoration;
}

function lockDecoration(item: Item): vscode.FileDecoration | undefined {
  if (!item.lock && !item.switched) return undefined;
  return new vscode.FileDecoration(item.lock ? 'L' : 'S', describe(item));
}
