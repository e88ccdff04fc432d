// What an item is, in the words, letters and colours of the view.

import { l10n } from 'vscode';
import type { Item, Lock, StatusWord } from '../server/protocol';

export type GroupKind = 'conflicts' | 'changes' | 'missing' | 'unversioned' | 'none';

export interface Appearance {
  readonly letter: string;
  readonly color: string;
  readonly strikeThrough: boolean;
}

const nothing: Appearance = { letter: '', color: '', strikeThrough: false };

const appearances: Readonly<Partial<Record<StatusWord, Appearance>>> = {
  modified: { letter: 'M', color: 'quen.modified', strikeThrough: false },
  merged: { letter: 'G', color: 'quen.modified', strikeThrough: false },
  added: { letter: 'A', color: 'quen.added', strikeThrough: false },
  deleted: { letter: 'D', color: 'quen.deleted', strikeThrough: true },
  replaced: { letter: 'R', color: 'quen.modified', strikeThrough: false },
  conflicted: { letter: 'C', color: 'quen.conflicted', strikeThrough: false },
  missing: { letter: '!', color: 'quen.missing', strikeThrough: true },
  incomplete: { letter: '!', color: 'quen.missing', strikeThrough: false },
  obstructed: { letter: '~', color: 'quen.missing', strikeThrough: false },
  unversioned: { letter: 'U', color: 'quen.unversioned', strikeThrough: false },
};

export function isConflicted(item: Item): boolean {
  return (
    item.status === 'conflicted' || item.property === 'conflicted' || item.treeConflict === true
  );
}

export function groupOf(item: Item): GroupKind {
  if (isConflicted(item)) return 'conflicts';
  switch (item.status) {
    case 'unversioned':
      return 'unversioned';
    case 'missing':
    case 'incomplete':
    case 'obstructed':
      return 'missing';
    case 'normal':
    case 'none':
    case 'external':
    case 'ignored':
      return item.property === 'modified' ? 'changes' : 'none';
    case 'modified':
    case 'merged':
    case 'added':
    case 'deleted':
    case 'replaced':
    case 'conflicted':
      return 'changes';
  }
}

export function appearanceOf(item: Item): Appearance {
  if (isConflicted(item)) return appearances.conflicted ?? nothing;
  if (item.property === 'modified' && !appearances[item.status]) {
    return { letter: 'P', color: 'quen.modified', strikeThrough: false };
  }
  if (item.status === 'added' && item.copied)
    return { ...appearances.added, letter: 'A+' } as Appearance;
  return appearances[item.status] ?? nothing;
}

/** How the repository's side of an item looks. */
export function incomingAppearanceOf(item: Item): Appearance {
  return (
    appearances[item.incoming ?? 'none'] ?? { ...nothing, letter: 'P', color: 'quen.incoming' }
  );
}

const statusWords: Readonly<Partial<Record<StatusWord, () => string>>> = {
  modified: () => l10n.t('Modified'),
  merged: () => l10n.t('Merged'),
  added: () => l10n.t('Added'),
  deleted: () => l10n.t('Deleted'),
  replaced: () => l10n.t('Replaced'),
  conflicted: () => l10n.t('Conflict in the text'),
  missing: () => l10n.t('Missing: deleted without Subversion'),
  incomplete: () => l10n.t('Incomplete: an update was interrupted'),
  obstructed: () => l10n.t('Obstructed: something of another kind is in its place'),
  unversioned: () => l10n.t('Unversioned'),
  ignored: () => l10n.t('Ignored'),
  external: () => l10n.t('External'),
};

export function describeLock({ owner, comment }: Lock): string {
  const words = comment?.trim() ?? '';
  return words === ''
    ? l10n.t('locked by {0}', owner ?? '?')
    : l10n.t('locked by {0}: {1}', owner ?? '?', words);
}

/** All that is known of an item, in words. */
export function describe(item: Item): string {
  const facts = [
    statusWords[item.status]?.(),
    item.copied && l10n.t('with history'),
    item.movedFrom && l10n.t('moved from {0}', item.movedFrom),
    item.movedTo && l10n.t('moved to {0}', item.movedTo),
    item.property === 'modified' && l10n.t('properties modified'),
    item.property === 'conflicted' && l10n.t('conflict in the properties'),
    item.treeConflict && l10n.t('tree conflict'),
    item.changelist !== undefined && l10n.t('changelist {0}', item.changelist),
    item.lock && describeLock(item.lock),
    item.locked && l10n.t('working copy locked: clean up'),
    item.switched && l10n.t('switched to another branch'),
    item.external && item.status !== 'external' && l10n.t('external'),
    item.incoming !== undefined && describeIncoming(item),
  ];
  return facts.filter((fact) => typeof fact === 'string').join(', ');
}

export function describeIncoming(item: Item): string {
  const word = statusWords[item.incoming ?? 'none']?.() ?? l10n.t('properties modified');
  return l10n.t('in the repository: {0}', word);
}
