// Where a revision or an issue is shown in a browser: a setting, or the properties that other
// programs for Subversion use for the same.

import * as vscode from 'vscode';
import { command } from '../commands';
import { propertiesOf } from '../attributes/propertyFiles';
import type { WorkingCopy } from '../model/workingCopy';
import type { Services } from '../services';
import { isHistoryNode } from './nodes';

interface IssueTracker {
  /** Holds `%BUGID%`. */
  readonly url: string;
  readonly pattern: RegExp;
}

const plainNumber = '#(\\d+)';

export function registerLinks(services: Services): vscode.Disposable {
  return vscode.Disposable.from(
    command('quen.history.openInBrowser', async (node: unknown) => {
      if (!isHistoryNode(node) || node.kind === 'more') return;
      const path = node.kind === 'file' ? node.file.path : '';
      await openRevision(node.entry.revision, path);
    }),
    command('quen.history.openIssue', async (node: unknown) => {
      if (!isHistoryNode(node) || node.kind !== 'entry') return;
      await openIssue(services, node.entry.message ?? '');
    }),
  );
}

async function openRevision(revision: number, path: string): Promise<void> {
  const viewer = vscode.workspace.getConfiguration('quen').get<string>('history.viewer', '');
  if (viewer === '') {
    await vscode.commands.executeCommand('workbench.action.openSettings', 'quen.history.viewer');
    return;
  }
  const address = viewer.replaceAll('{revision}', String(revision)).replaceAll('{path}', path);
  await vscode.env.openExternal(vscode.Uri.parse(address, true));
}

async function openIssue(services: Services, message: string): Promise<void> {
  const issues = await issuesIn(services, message);
  if (issues.length === 0) {
    void vscode.window.showInformationMessage(
      vscode.l10n.t('The message names no issue, or the working copy has no property bugtraq:url.'),
    );
    return;
  }
  const [only] = issues.length === 1 ? issues : [];
  const chosen = only ?? (await vscode.window.showQuickPick(issues));
  if (chosen) await vscode.env.openExternal(vscode.Uri.parse(chosen.description, true));
}

/** The issues that a message names, each with its address. */
export async function issuesIn(
  services: Services,
  message: string,
): Promise<{ label: string; description: string }[]> {
  const found = new Map<string, string>();
  for (const copy of services.copies.all) {
    const tracker = await readTracker(services, copy);
    for (const match of tracker ? message.matchAll(tracker.pattern) : []) {
      const issue = match[1] ?? match[0];
      found.set(issue, tracker?.url.replaceAll('%BUGID%', encodeURIComponent(issue)) ?? '');
    }
  }
  return [...found].map(([label, description]) => ({ label, description }));
}

async function readTracker(
  services: Services,
  copy: WorkingCopy,
): Promise<IssueTracker | undefined> {
  const properties = await propertiesOf(services, copy.uri);
  const valueOf = (name: string) =>
    properties.find((property) => property.name === name)?.value?.trim();
  const url = valueOf('bugtraq:url');
  if (!url) return undefined;
  return { url, pattern: patternFrom(valueOf('bugtraq:logregex')) };
}

/** The last of the property's lines picks the number out of what the others find. */
function patternFrom(text: string | undefined): RegExp {
  try {
    return new RegExp(text?.split('\n').at(-1) ?? plainNumber, 'g');
  } catch {
    return new RegExp(plainNumber, 'g'); // Another kind of pattern than this language's.
  }
}
