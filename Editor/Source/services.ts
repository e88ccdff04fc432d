import type * as vscode from 'vscode';
import type { ContentProvider } from './content/contentProvider';
import type { WorkingCopies } from './model/workingCopies';
import type { Server } from './server/server';

/** What every view and command works with. */
export interface Services {
  readonly server: Server;
  readonly copies: WorkingCopies;
  readonly contents: ContentProvider;
  readonly log: vscode.LogOutputChannel;
  readonly context: vscode.ExtensionContext;
}
