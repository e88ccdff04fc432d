import * as vscode from 'vscode';
import { revisionUri } from '../content/revisionUri';
import { registerTimeline, type TimelineEntry } from '../proposed';
import { succeeded } from '../server/failures';
import type { Services } from '../services';
import { detailOf, summaryOf } from './entries';

const length = 50;

/** The entries of a file's timeline, the newest first. */
export async function timelineOf(
  services: Services,
  uri: vscode.Uri,
  token?: vscode.CancellationToken,
): Promise<TimelineEntry[]> {
  const item = services.copies.itemOf(uri);
  if (!services.copies.of(uri) || item?.status === 'unversioned' || item?.status === 'added') {
    return [];
  }
  const place = { path: uri.path };
  const log = await services.server.request('history/log', { ...place, limit: length }, { token });
  return succeeded(log).entries.map((entry) => ({
    label: summaryOf(entry),
    detail: detailOf(entry),
    timestamp: entry.date === null ? 0 : new Date(entry.date).getTime(),
    id: String(entry.revision),
    command: {
      command: 'vscode.diff',
      title: vscode.l10n.t('Open Change'),
      arguments: [
        revisionUri(place, entry.revision - 1),
        revisionUri(place, entry.revision),
        `r${entry.revision - 1} ↔ r${entry.revision}`,
      ],
    },
  }));
}

/** The explorer's timeline, where the editor offers it. */
export function registerFileTimeline(services: Services): vscode.Disposable {
  const registered = registerTimeline((uri, token) => timelineOf(services, uri, token));
  return registered ?? new vscode.Disposable(() => undefined);
}
