// Everything that 1.96 has and does not promise, in this one place. Each answers whether it worked,
// and what calls it has another way.

import * as vscode from 'vscode';

export interface MergeSide {
  readonly uri: vscode.Uri;
  readonly title: string;
  readonly description: string;
}

export interface Merge {
  readonly base: vscode.Uri;
  readonly theirs: MergeSide;
  readonly mine: MergeSide;
  readonly output: vscode.Uri;
}

/** Opens the editor's three-way merge, an internal command. */
export async function openMergeEditor({ base, theirs, mine, output }: Merge): Promise<boolean> {
  try {
    await vscode.commands.executeCommand('_open.mergeEditor', {
      base,
      input1: theirs,
      input2: mine,
      output,
    });
    return true;
  } catch {
    return false; // Not there, or it wants other arguments: the comparison does without.
  }
}

export interface TimelineEntry {
  readonly label: string;
  readonly detail: string;
  readonly timestamp: number;
  readonly id: string;
  readonly command: vscode.Command;
}

export type TimelineSource = (
  uri: vscode.Uri,
  token: vscode.CancellationToken,
) => Promise<TimelineEntry[]>;

interface TimelineProvider {
  readonly id: string;
  readonly label: string;
  provideTimeline(
    uri: vscode.Uri,
    options: unknown,
    token: vscode.CancellationToken,
  ): Promise<{ items: TimelineItem[] }>;
}

interface TimelineItem {
  readonly label: string;
  readonly detail: string;
  readonly description: string;
  readonly timestamp: number;
  readonly id: string;
  readonly iconPath: vscode.ThemeIcon;
  readonly command: vscode.Command;
}

interface WithTimeline {
  registerTimelineProvider?(scheme: string, provider: TimelineProvider): vscode.Disposable;
}

/** Fills the explorer's timeline where the editor lets an extension do that. */
export function registerTimeline(source: TimelineSource): vscode.Disposable | undefined {
  try {
    const workspace = vscode.workspace as typeof vscode.workspace & WithTimeline;
    return workspace.registerTimelineProvider?.('file', {
      id: 'quen',
      label: 'Subversion',
      async provideTimeline(uri, _options, token) {
        const entries = await source(uri, token);
        return { items: entries.map(asItem) };
      },
    });
  } catch {
    return undefined; // The editor refuses it: the history view has the same.
  }
}

function asItem(entry: TimelineEntry): TimelineItem {
  return { ...entry, description: entry.detail, iconPath: new vscode.ThemeIcon('git-commit') };
}
