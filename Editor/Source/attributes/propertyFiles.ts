// A property as a file: opened in an editor, written to the working copy when it is saved.

import * as vscode from 'vscode';
import { succeeded } from '../server/failures';
import type { Property } from '../server/protocol';
import type { Services } from '../services';

export const propertyScheme = 'quen-property';

interface Address {
  readonly path: string;
  readonly name: string;
}

export function propertyUri(owner: vscode.Uri, name: string): vscode.Uri {
  const address: Address = { path: owner.path, name };
  const query = JSON.stringify(address);
  return vscode.Uri.joinPath(owner, name).with({ scheme: propertyScheme, query });
}

export async function propertiesOf(
  services: Services,
  owner: vscode.Uri,
): Promise<readonly Property[]> {
  const answer = await services.server.request('property/list', { path: owner.path });
  return succeeded(answer).properties;
}

export async function setProperty(
  services: Services,
  owner: vscode.Uri,
  name: string,
  value: string | null,
): Promise<void> {
  const params = { paths: [owner.path], name, value };
  succeeded(await services.server.request('property/set', params));
}

export function registerPropertyFiles(services: Services): vscode.Disposable {
  const changes = new vscode.EventEmitter<vscode.FileChangeEvent[]>();
  let written = Date.now();
  const read = async (uri: vscode.Uri): Promise<Uint8Array> => {
    const { path, name } = JSON.parse(uri.query) as Address;
    const all = await propertiesOf(services, vscode.Uri.file(path));
    const found = all.find((property) => property.name === name);
    if (!found) return new Uint8Array(); // A new one: it is there once it has been saved.
    return found.value === null
      ? Buffer.from(found.base64 ?? '', 'base64')
      : Buffer.from(found.value, 'utf8');
  };
  const refuse = (uri: vscode.Uri): never => {
    throw vscode.FileSystemError.NoPermissions(uri);
  };
  return vscode.Disposable.from(
    changes,
    vscode.workspace.registerFileSystemProvider(
      propertyScheme,
      {
        onDidChangeFile: changes.event,
        watch: () => new vscode.Disposable(() => undefined), // Read again whenever it is opened.
        stat: async (uri) => ({
          type: vscode.FileType.File,
          ctime: 0,
          mtime: written,
          size: (await read(uri)).byteLength,
        }),
        readFile: read,
        writeFile: async (uri, content) => {
          const { path, name } = JSON.parse(uri.query) as Address;
          const value = new TextDecoder('utf-8', { fatal: true }).decode(content);
          await setProperty(services, vscode.Uri.file(path), name, value);
          written = Date.now();
          changes.fire([{ type: vscode.FileChangeType.Changed, uri }]);
        },
        readDirectory: refuse,
        createDirectory: refuse,
        delete: refuse,
        rename: refuse,
      },
      { isCaseSensitive: true },
    ),
  );
}
