// What a person does in the explorer becomes Subversion's: a rename is a recorded move, a deleted
// file a removed one. Nothing here asks: the view shows the result, and revert takes it back.

import * as vscode from 'vscode';
import { report, reportQuietly } from '../report';
import type { Item } from '../server/protocol';
import { succeeded } from '../server/failures';
import type { Services } from '../services';

export function registerExplorerHooks(services: Services): vscode.Disposable {
  return vscode.Disposable.from(
    vscode.workspace.onDidRenameFiles(async ({ files }) => {
      if (!isWanted('explorer.recordMoves')) return;
      for (const { oldUri, newUri } of files) await adoptMove(services, oldUri, newUri);
    }),
    vscode.workspace.onDidDeleteFiles(async ({ files }) => {
      await recordDeletes(services, files);
    }),
    vscode.workspace.onDidCreateFiles(({ files }) => tell(services, files)),
    vscode.workspace.onDidSaveTextDocument((document) => tell(services, [document.uri])),
    watchFolders(services),
    lookAgain(services),
  );
}

function isWanted(setting: string): boolean {
  return vscode.workspace.getConfiguration('quen').get<boolean>(setting, true);
}

function isVersioned(item: Item | undefined): boolean {
  return (
    item?.status !== 'unversioned' && item?.status !== 'ignored' && item?.status !== 'external'
  );
}

async function adoptMove(services: Services, from: vscode.Uri, to: vscode.Uri): Promise<void> {
  const copy = services.copies.of(from);
  if (!copy || services.copies.of(to) !== copy) {
    await tell(services, [from, to]);
    return;
  }
  try {
    if (isVersioned(copy.items.get(from.path))) {
      succeeded(
        await services.server.request('change/adoptMove', { from: from.path, to: to.path }),
      );
    }
  } catch (error) {
    void report(error);
  } finally {
    await tell(services, [from, to]);
  }
}

async function recordDeletes(services: Services, uris: readonly vscode.Uri[]): Promise<void> {
  await tell(services, uris);
  if (!vscode.workspace.getConfiguration('quen').get<boolean>('explorer.recordDeletes', true))
    return;
  const paths = uris.filter((uri) => services.copies.of(uri)).map((uri) => uri.path);
  const versioned = paths.filter((path) =>
    isVersioned(services.copies.itemOf(vscode.Uri.file(path))),
  );
  if (versioned.length === 0) return;
  try {
    succeeded(await services.server.request('change/remove', { paths: versioned }));
  } catch (error) {
    // It was never versioned, or the client refuses: then it is missing, and the view says so.
    services.log.info(error instanceof Error ? error.message : String(error));
  }
  await tell(services, uris);
}

/** Tells the server what was touched on disk, where a working copy holds it. */
async function tell(services: Services, uris: readonly vscode.Uri[]): Promise<void> {
  const paths = uris.filter((uri) => services.copies.of(uri)).map((uri) => uri.path);
  if (paths.length > 0) await services.server.notify('workingCopy/didChange', { paths });
}

const gathered = 50;

/** Changes by other programs: the editor's own watcher sees them, the server hears of them in one message. */
function watchFolders(services: Services): vscode.Disposable {
  const touched = new Map<string, vscode.Uri>();
  let timer: NodeJS.Timeout | undefined;
  const flush = () => {
    timer = undefined;
    const uris = [...touched.values()];
    touched.clear();
    tell(services, uris).catch((error: unknown) => {
      services.log.debug(String(error)); // The server is being restarted; its first status sees all.
    });
  };
  const touch = (uri: vscode.Uri) => {
    if (uri.scheme !== 'file') return;
    if (isAdministrative(uri)) return;
    touched.set(uri.path, uri);
    timer ??= setTimeout(flush, gathered);
  };
  const watcher = vscode.workspace.createFileSystemWatcher('**/*');
  return vscode.Disposable.from(
    watcher,
    watcher.onDidChange(touch),
    watcher.onDidCreate(touch),
    watcher.onDidDelete(touch),
    new vscode.Disposable(() => {
      clearTimeout(timer);
    }),
  );
}

const lookedAtOnce = 200;
const lookAfter = 500;

/**
 * The editor's watcher says nothing of a file that came and went at once; a run of the client may
 * have seen it in between. So what is new on the disk is looked at once more, without the client. A
 * directory may turn out to be a working copy of its own.
 */
function lookAgain(services: Services): vscode.Disposable {
  const timers = new Set<NodeJS.Timeout>();
  const look = async (uris: readonly vscode.Uri[]) => {
    const gone: vscode.Uri[] = [];
    for (const uri of uris) {
      if (!(await isThere(uri))) gone.push(uri);
      else if (await isThere(vscode.Uri.joinPath(uri, '.svn')))
        await services.copies.open(uri.path);
    }
    await tell(services, gone);
  };
  return vscode.Disposable.from(
    services.copies.onDidChange(({ copy, paths }) => {
      const fresh = (paths ?? []).filter((path) => isNew(services, copy.items.get(path)));
      if (fresh.length === 0) return;
      const uris = fresh.slice(0, lookedAtOnce).map((path) => vscode.Uri.file(path));
      const timer = setTimeout(() => {
        timers.delete(timer);
        look(uris).catch(reportQuietly);
      }, lookAfter);
      timers.add(timer);
    }),
    new vscode.Disposable(() => {
      for (const timer of timers) clearTimeout(timer);
    }),
  );
}

function isNew({ copies }: Services, item: Item | undefined): boolean {
  if (item?.status === 'external') return copies.get(item.path) === undefined;
  return item?.status === 'unversioned';
}

async function isThere(uri: vscode.Uri): Promise<boolean> {
  try {
    await vscode.workspace.fs.stat(uri);
    return true;
  } catch {
    return false;
  }
}

/** The client's own bookkeeping: the server watches that itself. */
function isAdministrative(uri: vscode.Uri): boolean {
  return uri.path.includes('/.svn/') || uri.path.endsWith('/.svn');
}
