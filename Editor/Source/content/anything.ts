// Compares anything with anything: two places, each a file or directory on disk, in the repository
// or in a revision, chosen one after the other from wherever they are shown.

import * as vscode from 'vscode';
import { command } from '../commands';
import { isHistoryNode, placeOfNode } from '../history/nodes';
import { askBranch, askRevision, askUrl } from '../remote/questions';
import { isRepositoryNode } from '../remote/repositoryNode';
import { succeeded } from '../server/failures';
import type { DifferenceSide, Revision } from '../server/protocol';
import type { Services } from '../services';
import { copyFrom, urisFrom, type Argument } from '../targets';
import type { SourceControls } from '../view/sourceControls';
import { compare, name } from './comparisons';
import { addressOf, emptyUri, revisionUri, scheme } from './revisionUri';

/** One side of a comparison. Without a revision: as it is on disk, or the newest. */
interface Side {
  readonly title: string;
  readonly at: DifferenceSide;
  readonly isDirectory: boolean;
}

export function registerCompareAnything(
  services: Services,
  controls: SourceControls,
): vscode.Disposable {
  let first: Side | undefined;
  return vscode.Disposable.from(
    command('quen.selectForCompare', async (...args: Argument[]) => {
      first = await sideFrom(controls, args);
      if (!first) return;
      void vscode.commands.executeCommand('setContext', 'quen.hasSelectedForCompare', true);
      vscode.window.setStatusBarMessage(
        vscode.l10n.t('Chosen: {0}. Now “Compare with Chosen” on the other one.', first.title),
        10_000,
      );
    }),
    command('quen.compareWithSelected', async (...args: Argument[]) => {
      const second = await sideFrom(controls, args);
      if (first && second) await compareSides(services, first, second);
    }),
    command('quen.compareWithAnything', async (...args: Argument[]) => {
      const side = await sideFrom(controls, args);
      const other = side && (await askSide(services, side));
      if (side && other) await compareSides(services, other, side);
    }),
    command('quen.compareBranches', async (...args: Argument[]) => {
      const copy = await copyFrom(services, controls, args);
      if (!copy) return;
      const url = await askBranch(services, copy, vscode.l10n.t('Compare with which branch?'));
      if (url === undefined) return;
      await compareSides(services, directory(copy.facts.url), directory(url));
    }),
  );
}

function directory(url: string): Side {
  return { title: url, at: { url }, isDirectory: true };
}

async function sideFrom(
  controls: SourceControls,
  args: readonly Argument[],
): Promise<Side | undefined> {
  const [argument] = args;
  if (isHistoryNode(argument) && argument.kind !== 'more') {
    const { place, revision } = placeOfNode(argument);
    const isDirectory = argument.kind === 'entry' && argument.source.file === undefined;
    return { title: `${titleOf(place)}@${revision}`, at: { ...place, revision }, isDirectory };
  }
  if (isRepositoryNode(argument)) {
    const isDirectory = argument.entry?.kind !== 'file';
    return { title: argument.url, at: { url: argument.url, revision: 'HEAD' }, isDirectory };
  }
  const active = vscode.window.activeTextEditor?.document.uri;
  const uri = argument instanceof vscode.Uri ? argument : (urisFrom(controls, args)[0] ?? active);
  return uri && sideOf(uri);
}

async function sideOf(uri: vscode.Uri): Promise<Side> {
  if (uri.scheme === scheme && uri.query !== 'null') {
    const { place, revision } = addressOf(uri);
    return {
      title: `${titleOf(place)}@${revision}`,
      at: { ...place, revision },
      isDirectory: false,
    };
  }
  const stat = await vscode.workspace.fs.stat(uri);
  const isDirectory = stat.type === vscode.FileType.Directory;
  return { title: name(uri), at: { path: uri.path }, isDirectory };
}

function titleOf(place: DifferenceSide): string {
  return 'path' in place ? name(vscode.Uri.file(place.path)) : place.url;
}

/** The other side: another revision of the same, or a URL. */
async function askSide(services: Services, { at, isDirectory }: Side): Promise<Side | undefined> {
  const word = (label: string, revision: Revision) => ({ label, revision });
  const chosen = await vscode.window.showQuickPick(
    [
      word('BASE', 'BASE'),
      word('HEAD', 'HEAD'),
      { label: vscode.l10n.t('A revision...'), revision: undefined, isUrl: false },
      { label: vscode.l10n.t('A URL...'), revision: undefined, isUrl: true },
    ],
    { title: vscode.l10n.t('Compare with what?') },
  );
  if (!chosen) return undefined;
  const place = 'path' in at ? { path: at.path } : { url: at.url };
  if ('isUrl' in chosen && chosen.isUrl) {
    const url = await askUrl(vscode.l10n.t('Compare with which URL?'));
    return url === undefined ? undefined : { title: url, at: { url }, isDirectory };
  }
  const revision = chosen.revision ?? (await askRevision(services, place));
  if (revision === undefined) return undefined;
  return { title: `${titleOf(place)}@${revision}`, at: { ...place, revision }, isDirectory };
}

async function compareSides(services: Services, left: Side, right: Side): Promise<void> {
  const title = `${left.title} ↔ ${right.title}`;
  if (!left.isDirectory && !right.isDirectory) {
    await compare(uriOf(left.at), uriOf(right.at), title);
    return;
  }
  await compareDirectories(services, left.at, right.at, title);
}

function uriOf(at: DifferenceSide): vscode.Uri {
  if (at.revision !== undefined) return revisionUri(placeOf(at), at.revision);
  return 'path' in at ? vscode.Uri.file(at.path) : revisionUri(at, 'HEAD');
}

function placeOf(at: DifferenceSide): { path: string } | { url: string } {
  return 'path' in at ? { path: at.path } : { url: at.url };
}

/** Every file that differs, in one editor. */
async function compareDirectories(
  services: Services,
  from: DifferenceSide,
  to: DifferenceSide,
  title: string,
): Promise<void> {
  const [fromUrl, toUrl] = await Promise.all([
    inRepository(services, from),
    inRepository(services, to),
  ]);
  const answer = await services.server.request('diff/summary', { from: fromUrl, to: toUrl });
  const files = succeeded(answer).items.filter(({ kind }) => kind === 'file');
  if (files.length === 0) {
    void vscode.window.showInformationMessage(vscode.l10n.t('There is no difference.'));
    return;
  }
  const rows = files.map(({ path, status }) => {
    const tail = tailOf(path, fromUrl, toUrl);
    const left = { ...fromUrl, url: fromUrl.url + tail };
    const right = { ...toUrl, url: toUrl.url + tail };
    return [
      uriOf(right),
      status === 'added' ? emptyUri(tail) : uriOf(left),
      status === 'deleted' ? emptyUri(tail) : uriOf(right),
    ];
  });
  await vscode.commands.executeCommand('vscode.changes', title, rows);
}

type UrlSide = { readonly url: string; readonly revision: Revision };

/** A directory on disk stands for the revision that it rests on. */
async function inRepository(services: Services, at: DifferenceSide): Promise<UrlSide> {
  if ('url' in at) return { url: at.url, revision: at.revision ?? 'HEAD' };
  const answer = succeeded(await services.server.request('workingCopy/info', { paths: [at.path] }));
  const [info] = answer.items;
  if (!info?.url) throw new Error(vscode.l10n.t('{0} is not in the repository.', at.path));
  const revision =
    at.revision === undefined || at.revision === 'BASE' ? info.revision : at.revision;
  return { url: info.url, revision: revision ?? 'HEAD' };
}

/** The summary names files by their whole URL on one of the sides. */
function tailOf(path: string, from: UrlSide, to: UrlSide): string {
  for (const { url } of [from, to]) if (path.startsWith(`${url}/`)) return path.slice(url.length);
  return `/${path}`;
}
