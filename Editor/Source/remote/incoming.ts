// Asks the repository from time to time what is newer there. Nobody asked for it: it never raises a
// question, and where it fails the log and the status bar say so.

import * as vscode from 'vscode';
import { reportQuietly } from '../report';
import type { Services } from '../services';

export function registerIncoming(services: Services): vscode.Disposable {
  let timer: NodeJS.Timeout | undefined;
  const ask = () => {
    if (!vscode.window.state.focused) return; // Nobody looks; the next turn asks again.
    for (const copy of services.copies.all) {
      if (!copy.needsSignIn) services.copies.refreshIncoming(copy, true).catch(reportQuietly);
    }
  };
  const arrange = () => {
    clearInterval(timer);
    const minutes = vscode.workspace.getConfiguration('quen').get<number>('incoming.every', 0);
    timer = minutes > 0 ? setInterval(ask, minutes * 60_000) : undefined;
  };
  arrange();
  return vscode.Disposable.from(
    vscode.workspace.onDidChangeConfiguration((event) => {
      if (event.affectsConfiguration('quen.incoming')) arrange();
    }),
    new vscode.Disposable(() => {
      clearInterval(timer);
    }),
  );
}
