// Entries of the log: read in pages, kept as long as the view shows them.

import * as vscode from 'vscode';
import { succeeded } from '../server/failures';
import type { LogEntry, Place, Revision } from '../server/protocol';
import type { Services } from '../services';

export interface Source {
  readonly title: string;
  readonly place: Place;
  readonly repositoryRoot: string;
  /** The file whose revisions these are; a click then compares that file alone. */
  readonly file?: vscode.Uri;
  /** Only these revisions, where a selection of lines is looked at. */
  readonly only?: ReadonlySet<number>;
}

export interface Page {
  readonly entries: readonly LogEntry[];
  readonly next: number | null;
}

export interface Search {
  readonly text?: string;
  readonly author?: string;
}

const pageLength = 50;

export async function readPage(
  services: Services,
  source: Source,
  search: Search,
  from: Revision | null,
  token?: vscode.CancellationToken,
): Promise<Page> {
  const { server } = services;
  const params = { ...source.place, from: from ?? 'HEAD', limit: pageLength, files: true } as const;
  const isSearch = search.text !== undefined || search.author !== undefined;
  const answer = isSearch
    ? await server.request('history/search', { ...params, ...search }, { token })
    : await server.request('history/log', params, { token });
  const { entries, next } = succeeded(answer);
  const { only } = source;
  return only
    ? { entries: entries.filter(({ revision }) => only.has(revision)), next: nextOf(only, next) }
    : { entries, next };
}

/** Older pages hold nothing of a selection once its oldest revision was passed. */
function nextOf(only: ReadonlySet<number>, next: number | null): number | null {
  return next !== null && [...only].some((revision) => revision <= next) ? next : null;
}

export function summaryOf(entry: LogEntry): string {
  const line = entry.message?.trim().split('\n', 1)[0] ?? '';
  return line === '' ? vscode.l10n.t('(no message)') : line;
}

export function whenOf(date: string | null): string {
  return date === null ? '' : new Date(date).toLocaleDateString(vscode.env.language);
}

export function detailOf(entry: LogEntry): string {
  return [`r${entry.revision}`, entry.author ?? '', whenOf(entry.date)]
    .filter((part) => part !== '')
    .join(' · ');
}

/** All of an entry; plain text stays plain, so that a message can hold no link or command. */
export function tooltipOf(entry: LogEntry): vscode.MarkdownString {
  const text = new vscode.MarkdownString();
  text.appendMarkdown(`**r${entry.revision}** `);
  text.appendText(
    `${entry.author ?? ''} ${entry.date ? new Date(entry.date).toLocaleString(vscode.env.language) : ''}\n\n`,
  );
  text.appendText(entry.message ?? '');
  return text;
}
