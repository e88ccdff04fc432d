// Properties of files and directories: listed, opened, added, taken away; patterns to ignore.

import * as vscode from 'vscode';
import { command } from '../commands';
import type { Property } from '../server/protocol';
import type { Services } from '../services';
import { urisFrom, type Argument } from '../targets';
import type { SourceControls } from '../view/sourceControls';
import { propertiesOf, propertyUri, registerPropertyFiles, setProperty } from './propertyFiles';

/** The client's own properties; those that are there or not have a value already. */
const wellKnown: Readonly<Record<'file' | 'directory', Readonly<Record<string, string>>>> = {
  file: {
    'svn:eol-style': 'native',
    'svn:executable': '*',
    'svn:keywords': 'Id',
    'svn:mime-type': 'text/plain',
    'svn:needs-lock': '*',
  },
  directory: {
    'svn:ignore': '',
    'svn:global-ignores': '',
    'svn:externals': '',
    'svn:auto-props': '',
  },
};

interface PropertyRow extends vscode.QuickPickItem {
  readonly property?: Property;
}

export function registerProperties(
  services: Services,
  controls: SourceControls,
): vscode.Disposable {
  return vscode.Disposable.from(
    registerPropertyFiles(services),
    command('quen.properties', async (...args: Argument[]) => {
      const [uri] = urisFrom(controls, args);
      if (uri) await showProperties(services, uri);
    }),
    command('quen.setProperty', (uri: vscode.Uri, name: string, value: string | null) =>
      setProperty(services, uri, name, value),
    ),
    command('quen.ignorePattern', async (...args: Argument[]) => {
      const [uri] = urisFrom(controls, args);
      if (uri) await ignorePattern(services, uri);
    }),
  );
}

async function showProperties(services: Services, uri: vscode.Uri): Promise<void> {
  const properties = await propertiesOf(services, uri);
  const pick = vscode.window.createQuickPick<PropertyRow>();
  const remove = {
    iconPath: new vscode.ThemeIcon('trash'),
    tooltip: vscode.l10n.t('Take the property away'),
  };
  pick.title = vscode.l10n.t('Properties of {0}', vscode.workspace.asRelativePath(uri, false));
  pick.items = [
    ...properties.map((property) => ({
      label: property.name,
      description: firstLine(property),
      buttons: [remove],
      property,
    })),
    { label: `$(add) ${vscode.l10n.t('Add a property...')}` },
  ];
  pick.onDidTriggerItemButton(({ item }) => {
    pick.hide();
    if (!item.property) return;
    void vscode.commands.executeCommand('quen.setProperty', uri, item.property.name, null);
  });
  pick.onDidAccept(() => {
    const [row] = pick.selectedItems;
    pick.hide();
    if (row) void (row.property ? openProperty(uri, row.property.name) : addProperty(uri));
  });
  pick.onDidHide(() => {
    pick.dispose();
  });
  pick.show();
}

function firstLine({ value }: Property): string {
  return value === null ? vscode.l10n.t('(not text)') : (value.split('\n', 1)[0] ?? '');
}

async function openProperty(owner: vscode.Uri, name: string): Promise<void> {
  await vscode.window.showTextDocument(propertyUri(owner, name), { preview: false });
}

async function addProperty(owner: vscode.Uri): Promise<void> {
  const { type } = await vscode.workspace.fs.stat(owner);
  const known = wellKnown[type === vscode.FileType.Directory ? 'directory' : 'file'];
  const other = { label: `$(edit) ${vscode.l10n.t('Another name...')}`, isOther: true };
  const chosen = await vscode.window.showQuickPick(
    [...Object.keys(known).map((label) => ({ label, isOther: false })), other],
    { title: vscode.l10n.t('Which property?') },
  );
  if (!chosen) return;
  const name = chosen.isOther
    ? await vscode.window.showInputBox({
        title: vscode.l10n.t('Name of the property'),
        ignoreFocusOut: true,
      })
    : chosen.label;
  if (name === undefined || name === '') return;
  const value = known[name] ?? '';
  if (value !== '') await vscode.commands.executeCommand('quen.setProperty', owner, name, value);
  if (value !== '*') await openProperty(owner, name);
}

/** Adds a pattern to the names that the file's directory ignores. */
async function ignorePattern(services: Services, uri: vscode.Uri): Promise<void> {
  const directory = vscode.Uri.joinPath(uri, '..');
  const name = uri.path.slice(directory.path.length + 1);
  const ending = /\.[^.]+$/.exec(name)?.[0];
  const pattern = await vscode.window.showInputBox({
    title: vscode.l10n.t('Ignore names in {0}', vscode.workspace.asRelativePath(directory, false)),
    prompt: vscode.l10n.t('A name or a pattern, such as *.o'),
    value: ending === undefined ? name : `*${ending}`,
    ignoreFocusOut: true,
  });
  if (pattern === undefined || pattern.trim() === '') return;
  const all = await propertiesOf(services, directory);
  const before = all.find((property) => property.name === 'svn:ignore')?.value ?? '';
  const patterns = before.split('\n').filter((line) => line !== '');
  if (patterns.includes(pattern.trim())) return;
  const value = [...patterns, pattern.trim(), ''].join('\n');
  await setProperty(services, directory, 'svn:ignore', value);
}
