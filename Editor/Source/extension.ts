import * as vscode from 'vscode';
import { registerChangelists } from './attributes/changelists';
import { registerLocks } from './attributes/locks';
import { registerProperties } from './attributes/properties';
import { registerBlame } from './blame/blame';
import { registerCommit } from './changes/commit';
import { registerEdits } from './changes/edits';
import { registerExplorerHooks } from './changes/explorer';
import { registerPatches } from './changes/patches';
import { registerRevert } from './changes/revert';
import { registerCompareAnything } from './content/anything';
import { registerComparisons } from './content/comparisons';
import { ContentProvider } from './content/contentProvider';
import { registerSnapshots } from './content/snapshots';
import { registerHistory } from './history/historyCommands';
import { HistoryView } from './history/historyView';
import { registerLinks } from './history/links';
import { registerFileTimeline } from './history/timeline';
import { registerContexts } from './contexts';
import { makeLifecycle, openFolders, registerLifecycle } from './lifecycle';
import { WorkingCopies } from './model/workingCopies';
import { registerBranches } from './remote/branches';
import { registerBrowser, RepositoryTree } from './remote/browser';
import { registerClientSettings } from './remote/clientSettings';
import { registerIncoming } from './remote/incoming';
import { registerUpdate } from './remote/update';
import { registerUpkeep } from './remote/upkeep';
import { reportQuietly, reportTo } from './report';
import type { Services } from './services';
import { makeSignIn } from './signIn/questions';
import { registerSignIn } from './signIn/signInCommands';
import { registerDecorations } from './view/decorations';
import { SourceControls } from './view/sourceControls';

/** What tests of the extension look at; no other extension is promised anything. */
export interface Inside {
  readonly services: Services;
  readonly controls: SourceControls;
  readonly history: HistoryView;
  readonly repository: RepositoryTree;
}

export function activate(context: vscode.ExtensionContext): Inside {
  const log = vscode.window.createOutputChannel('Subversion', { log: true });
  reportTo(log);
  const signIn = makeSignIn(context);
  const lifecycle = makeLifecycle(context, log, signIn);
  const { server } = lifecycle;
  const copies = new WorkingCopies(server, reportQuietly);
  lifecycle.connect(copies);
  const contents = new ContentProvider(server);
  const services: Services = { server, copies, contents, log, context };
  const controls = new SourceControls(services);
  const history = new HistoryView(services);
  const repository = new RepositoryTree(services);
  context.subscriptions.push(
    log,
    lifecycle,
    copies,
    controls,
    contents.register(),
    registerSnapshots(),
    registerContexts(services),
    registerDecorations(services),
    registerLifecycle(server, copies, log),
    registerComparisons(services, controls),
    registerCommit(services, controls),
    registerEdits(services, controls),
    registerRevert(services, controls),
    registerChangelists(services, controls),
    registerProperties(services, controls),
    registerLocks(services, controls),
    registerPatches(services, controls),
    registerCompareAnything(services, controls),
    registerUpkeep(services, controls, history),
    registerLinks(services),
    registerExplorerHooks(services),
    registerUpdate(services, controls),
    registerClientSettings(),
    registerIncoming(services),
    registerBranches(services, controls),
    registerHistory(services, controls, history),
    registerFileTimeline(services),
    registerBlame(services),
    registerBrowser(services, controls, history, repository),
    registerSignIn(services, controls, signIn),
    copies.onDidChange(({ paths }) => {
      contents.invalidate(paths && new Set(paths));
    }),
  );
  openFolders(copies);
  return { services, controls, history, repository };
}
