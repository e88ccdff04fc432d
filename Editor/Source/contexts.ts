// What menus and welcome views test.

import * as vscode from 'vscode';
import { groupOf } from './model/words';
import type { Services } from './services';

export function registerContexts({ copies }: Services): vscode.Disposable {
  const known = new Map<string, boolean>();
  const set = (key: string, value: boolean) => {
    if (known.get(key) === value) return;
    known.set(key, value);
    void vscode.commands.executeCommand('setContext', key, value);
  };
  const showCopies = () => {
    set('quen.hasWorkingCopy', copies.all.length > 0);
  };
  const showActive = () => {
    const uri = vscode.window.activeTextEditor?.document.uri;
    const item = uri && copies.itemOf(uri);
    set(
      'quen.activeHasChange',
      item !== undefined && ['changes', 'conflicts'].includes(groupOf(item)),
    );
  };
  showCopies();
  return vscode.Disposable.from(
    copies.onDidOpen(showCopies),
    copies.onDidClose(showCopies),
    copies.onDidChange(showActive),
    vscode.window.onDidChangeActiveTextEditor(showActive),
  );
}
