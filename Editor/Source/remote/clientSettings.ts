// The client's own settings, which apply here too: proxies and certificates for each server, and the
// rest.

import { homedir } from 'node:os';
import * as vscode from 'vscode';
import { command } from '../commands';

/** Where the client keeps them; it writes both files, with comments on every setting, when it first runs. */
function settingsFile(name: 'servers' | 'config'): vscode.Uri {
  return vscode.Uri.joinPath(vscode.Uri.file(homedir()), '.subversion', name);
}

export function registerClientSettings(): vscode.Disposable {
  return command('quen.openClientSettings', async () => {
    const chosen = await vscode.window.showQuickPick(
      [
        {
          label: vscode.l10n.t('Servers'),
          description: vscode.l10n.t('proxies, certificates, timeouts'),
          uri: settingsFile('servers'),
        },
        {
          label: vscode.l10n.t('Everything else'),
          description: vscode.l10n.t('ssh, names to ignore, properties of new files'),
          uri: settingsFile('config'),
        },
      ],
      { title: vscode.l10n.t('Which settings of Subversion itself?') },
    );
    if (chosen) await vscode.window.showTextDocument(chosen.uri);
  });
}
