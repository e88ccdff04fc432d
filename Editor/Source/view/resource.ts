import * as vscode from 'vscode';
import {
  appearanceOf,
  describe,
  describeIncoming,
  groupOf,
  incomingAppearanceOf,
} from '../model/words';
import type { SettledFile, WorkingCopy } from '../model/workingCopy';
import type { Item } from '../server/protocol';

/** A row of the view: what the editor shows, and what the commands on it need. */
export interface Resource extends vscode.SourceControlResourceState {
  readonly copy: WorkingCopy;
  readonly item: Item;
  readonly kind: 'local' | 'incoming' | 'settled';
  readonly settled?: SettledFile;
}

export function localResource(copy: WorkingCopy, item: Item): Resource {
  const { strikeThrough } = appearanceOf(item);
  const uri = vscode.Uri.file(item.path);
  return {
    copy,
    item,
    kind: 'local',
    resourceUri: uri,
    contextValue: contextOf(item),
    command: { command: 'quen.openChange', title: vscode.l10n.t('Open Change'), arguments: [uri] },
    decorations: { strikeThrough, tooltip: describe(item) },
  };
}

export function incomingResource(copy: WorkingCopy, item: Item): Resource {
  const { strikeThrough } = incomingAppearanceOf(item);
  const uri = vscode.Uri.file(item.path);
  return {
    copy,
    item,
    kind: 'incoming',
    resourceUri: uri,
    contextValue: 'incoming',
    command: {
      command: 'quen.openIncomingChange',
      title: vscode.l10n.t('Open Incoming Change'),
      arguments: [uri],
    },
    decorations: { strikeThrough, faded: true, tooltip: describeIncoming(item) },
  };
}

export function settledResource(copy: WorkingCopy, settled: SettledFile): Resource {
  const uri = vscode.Uri.file(settled.path);
  return {
    copy,
    item: copy.items.get(settled.path) ?? {
      path: settled.path,
      status: 'normal',
      property: 'none',
    },
    kind: 'settled',
    settled,
    resourceUri: uri,
    contextValue: 'settled',
    command: {
      command: 'quen.openSettled',
      title: vscode.l10n.t('Open in Merge Editor'),
      arguments: [uri],
    },
    decorations: {
      tooltip: vscode.l10n.t(
        'Both sides changed this. Yours was kept; theirs waits to be looked at.',
      ),
    },
  };
}

/** What menus test: the group's kind, and what holds besides. */
function contextOf(item: Item): string {
  const words: string[] = [groupOf(item)];
  if (item.status === 'added') words.push('added');
  if (item.status === 'deleted') words.push('deleted');
  if (item.treeConflict) words.push('tree');
  if (item.lock) words.push('locked');
  if (item.changelist !== undefined) words.push('listed');
  return words.join(' ');
}
