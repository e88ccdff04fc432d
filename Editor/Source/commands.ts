import * as vscode from 'vscode';
import { report } from './report';

/** Registers a command whose failure is told to the person. */
export function command(id: string, run: (...args: never[]) => unknown): vscode.Disposable {
  return vscode.commands.registerCommand(id, async (...args: never[]) => {
    try {
      return await run(...args);
    } catch (error) {
      // Not awaited: the command has ended, its message stays until somebody closes it.
      void report(error);
      return undefined;
    }
  });
}
