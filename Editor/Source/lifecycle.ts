// The server's life in this window: found, started, started anew, and what the person is told of it.

import * as vscode from 'vscode';
import { command } from './commands';
import type { WorkingCopies } from './model/workingCopies';
import { reportQuietly } from './report';
import { locateServer, type Located } from './server/locate';
import { Server, type ServerSetup, type ServerState } from './server/server';
import type { SignIn } from './signIn/questions';

export interface Lifecycle {
  readonly server: Server;
  connect(copies: WorkingCopies): void;
  dispose(): void;
}

const knownVersions = ['0.1'];

export function makeLifecycle(
  context: vscode.ExtensionContext,
  log: vscode.LogOutputChannel,
  signIn: SignIn,
): Lifecycle {
  let copies: WorkingCopies | undefined;
  let wasRunning = false;
  const status = vscode.window.createStatusBarItem('quen.server', vscode.StatusBarAlignment.Left);
  status.name = 'Subversion';
  status.command = 'quen.showLog';

  const server = new Server({
    locate: async () => {
      const located = await locateServer(placesOf(context));
      if (located) log.info(describeLocation(located));
      return located?.command ?? null;
    },
    options: () => optionsOf(context),
    ask: (question, params, token) => signIn.ask(question, params, token),
    listen: ((name: string, params: never) => {
      listen(name, params, copies, log);
    }) as ServerSetup['listen'],
    onState: (state) => {
      showState(state, status, log);
      if (state.kind !== 'running') return;
      if (wasRunning && copies) reopen(copies);
      wasRunning = true;
    },
    versions: knownVersions,
  });

  return {
    server,
    connect: (opened) => {
      copies = opened;
    },
    dispose: () => {
      status.dispose();
      void server.stop(); // The process also ends when its input does.
    },
  };
}

export function registerLifecycle(
  server: Server,
  copies: WorkingCopies,
  log: vscode.LogOutputChannel,
): vscode.Disposable {
  return vscode.Disposable.from(
    command('quen.restartServer', () => server.restart()),
    command('quen.showLog', () => {
      log.show();
    }),
    command('quen.statistics', () => server.request('server/statistics', {})),
    vscode.workspace.onDidChangeWorkspaceFolders(({ added, removed }) => {
      openFolders(copies, added);
      for (const { uri } of removed) {
        for (const copy of copies.all) {
          if (copy.path === uri.path) copies.close(copy).catch(reportQuietly);
        }
      }
    }),
    vscode.workspace.onDidChangeConfiguration((event) => {
      const isServers = ['quen.path', 'quen.svnDirectory', 'quen.limits'].some((name) =>
        event.affectsConfiguration(name),
      );
      if (isServers) server.restart().catch(reportQuietly);
    }),
  );
}

/** Opens the working copies of folders; a folder without one has the welcome view. */
export function openFolders(
  copies: WorkingCopies,
  folders: readonly vscode.WorkspaceFolder[] = vscode.workspace.workspaceFolders ?? [],
): void {
  for (const { uri } of folders) {
    if (uri.scheme === 'file') copies.open(uri.path).catch(reportQuietly);
  }
}

function reopen(copies: WorkingCopies): void {
  const before = copies.all.map(({ path }) => path);
  copies.clear();
  for (const path of before) copies.open(path).catch(reportQuietly);
}

function placesOf(context: vscode.ExtensionContext) {
  return {
    setting: vscode.workspace.getConfiguration('quen').get<string>('path', ''),
    bundled: vscode.Uri.joinPath(context.extensionUri, 'server').fsPath,
    searchPath: process.env.PATH ?? '',
  };
}

function optionsOf(context: vscode.ExtensionContext) {
  const settings = vscode.workspace.getConfiguration('quen');
  const directory = settings.get<string>('svnDirectory', '');
  const total = settings.get<number>('limits.total', 0);
  const { version } = context.extension.packageJSON as { version: string };
  return {
    clientInfo: { name: 'quen-subversion', version },
    options: {
      ...(directory === '' ? {} : { toolsDirectory: directory }),
      ...(total > 0 ? { totalLimit: 1000 * total } : {}),
      idleLimit: 1000 * settings.get<number>('limits.silence', 600),
      logLevel: 4,
    },
  };
}

function describeLocation({ command: { program }, from }: Located): string {
  switch (from) {
    case 'setting':
      return vscode.l10n.t('Server from the settings: {0}', program);
    case 'bundled':
      return vscode.l10n.t('Server of this extension: {0}', program);
    case 'installed':
      return vscode.l10n.t('Installed server: {0}', program);
  }
}

function listen(
  name: string,
  params: never,
  copies: WorkingCopies | undefined,
  log: vscode.LogOutputChannel,
): void {
  switch (name) {
    case 'workingCopy/changed':
      copies?.apply(params);
      break;
    case 'workingCopy/didOpen':
      copies?.adopt(params);
      break;
    case 'workingCopy/didClose':
      copies?.forget((params as { workingCopy: string }).workingCopy);
      break;
    case 'window/logMessage':
      logMessage(params, log);
      break;
  }
}

function logMessage(
  { type, message }: { type: number; message: string },
  log: vscode.LogOutputChannel,
): void {
  if (type === 1) log.error(message);
  else if (type === 2) log.warn(message);
  else if (type === 3) log.info(message);
  else log.debug(message);
}

function showState(
  state: ServerState,
  status: vscode.StatusBarItem,
  log: vscode.LogOutputChannel,
): void {
  switch (state.kind) {
    case 'running': {
      const { client, serverInfo } = state.facts;
      log.info(`quen ${serverInfo.version}, svn ${client.version ?? '-'} (${client.path ?? '-'})`);
      setContext('quen.state', client.path === null ? 'noClient' : 'running');
      status.hide();
      break;
    }
    case 'restarting':
      log.error(state.reason);
      status.text = `$(sync~spin) ${vscode.l10n.t('Subversion is restarting')}`;
      status.tooltip = state.reason;
      status.show();
      break;
    case 'unavailable':
      log.error(state.reason.message);
      setContext('quen.state', state.reason.kind === 'notFound' ? 'noServer' : 'broken');
      status.text = `$(error) ${vscode.l10n.t('Subversion is not available')}`;
      status.tooltip = state.reason.message;
      status.show();
      break;
    case 'idle':
      break;
  }
}

function setContext(key: string, value: unknown): void {
  void vscode.commands.executeCommand('setContext', key, value);
}
