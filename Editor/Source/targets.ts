// What a command is about. Menus hand over rows, groups, source controls or files of the explorer;
// the palette hands over nothing, and then it is the file in the editor or the one working copy.

import * as vscode from 'vscode';
import { scheme } from './content/revisionUri';
import { addressOf } from './content/revisionUri';
import { copyName, type WorkingCopy } from './model/workingCopy';
import type { Services } from './services';
import type { Resource } from './view/resource';
import type { SourceControls } from './view/sourceControls';

export type Argument = unknown;

export interface Targets {
  readonly copy: WorkingCopy;
  readonly uris: readonly vscode.Uri[];
}

export function isResource(argument: unknown): argument is Resource {
  return (
    typeof argument === 'object' && argument !== null && 'item' in argument && 'copy' in argument
  );
}

function isGroup(argument: unknown): argument is vscode.SourceControlResourceGroup {
  return typeof argument === 'object' && argument !== null && 'resourceStates' in argument;
}

function isSourceControl(argument: unknown): argument is vscode.SourceControl {
  return typeof argument === 'object' && argument !== null && 'inputBox' in argument;
}

/** The files that a command is about; empty where there are none. */
export function urisFrom(controls: SourceControls, args: readonly Argument[]): vscode.Uri[] {
  const found = new Map<string, vscode.Uri>();
  const add = (uri: vscode.Uri) => found.set(uri.toString(), uri);
  for (const argument of args.flat()) {
    if (argument instanceof vscode.Uri) add(fileOf(argument));
    else if (isResource(argument)) add(argument.resourceUri);
    else if (isGroup(argument)) {
      for (const item of controls.contentsOf(argument)?.items ?? [])
        add(vscode.Uri.file(item.path));
    }
  }
  if (found.size === 0 && args.flat().length === 0) {
    const active = activeFile();
    if (active) add(active);
  }
  return [...found.values()];
}

/** The file on disk behind an address, where it has one. */
export function fileOf(uri: vscode.Uri): vscode.Uri {
  if (uri.scheme !== scheme || uri.query === 'null') return uri;
  const { place } = addressOf(uri);
  return 'path' in place ? vscode.Uri.file(place.path) : uri;
}

export function activeFile(): vscode.Uri | undefined {
  const uri = vscode.window.activeTextEditor?.document.uri;
  return uri && fileOf(uri);
}

/** The files by their working copies; those outside of any are left out. */
export function byCopy(services: Services, uris: readonly vscode.Uri[]): Targets[] {
  const lists = new Map<WorkingCopy, vscode.Uri[]>();
  for (const uri of uris) {
    const copy = services.copies.of(uri);
    if (copy) lists.set(copy, [...(lists.get(copy) ?? []), uri]);
  }
  return [...lists].map(([copy, list]) => ({ copy, uris: list }));
}

/** The working copy that a command is about: the only one, that of the argument, or the chosen one. */
export async function copyFrom(
  services: Services,
  controls: SourceControls,
  args: readonly Argument[],
): Promise<WorkingCopy | undefined> {
  const { copies } = services;
  for (const argument of args.flat()) {
    if (isSourceControl(argument)) return controls.copyOf(argument);
    if (isResource(argument)) return argument.copy;
    if (isGroup(argument)) return controls.contentsOf(argument)?.copy;
    if (argument instanceof vscode.Uri) return copies.of(fileOf(argument));
  }
  if (copies.all.length <= 1) return copies.all[0];
  const active = activeFile();
  const around = active && copies.of(active);
  const chosen = await vscode.window.showQuickPick(
    [...copies.all]
      .sort((a, b) => Number(b === around) - Number(a === around))
      .map((copy) => ({
        label: copyName(copy),
        description: copy.facts.url,
        copy,
      })),
    { title: vscode.l10n.t('Which working copy?') },
  );
  return chosen?.copy;
}

export function pathsOf(uris: readonly vscode.Uri[]): string[] {
  return uris.map((uri) => uri.path);
}
