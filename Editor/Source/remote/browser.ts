// The repository as a tree.

import * as vscode from 'vscode';
import { command } from '../commands';
import { compare } from '../content/comparisons';
import { revisionUri } from '../content/revisionUri';
import { detailOf } from '../history/entries';
import type { HistoryView } from '../history/historyView';
import { succeeded } from '../server/failures';
import type { RepositoryEntry } from '../server/protocol';
import type { Services } from '../services';
import { describeLock } from '../model/words';
import { copyFrom, type Argument } from '../targets';
import type { SourceControls } from '../view/sourceControls';
import { checkoutFrom } from './branches';
import { askUrl } from './questions';
import type { RepositoryNode as Node } from './repositoryNode';

export class RepositoryTree implements vscode.TreeDataProvider<Node> {
  private readonly changes = new vscode.EventEmitter<Node | undefined>();
  readonly onDidChangeTreeData = this.changes.event;
  private readonly others: Node[] = [];

  constructor(private readonly services: Services) {}

  refresh(node?: Node): void {
    this.changes.fire(node);
  }

  add(url: string): void {
    this.others.push({ url, repositoryRoot: url, entry: null });
    this.refresh();
  }

  async getChildren(node?: Node): Promise<Node[]> {
    if (!node) return this.roots();
    const { entries } = succeeded(
      await this.services.server.request('repository/list', { url: node.url }),
    );
    return entries
      .map((entry) => ({ url: entry.url, repositoryRoot: node.repositoryRoot, entry }))
      .sort((a, b) => byKindAndName(a.entry, b.entry));
  }

  getTreeItem({ url, entry }: Node): vscode.TreeItem {
    const isFile = entry?.kind === 'file';
    const item = new vscode.TreeItem(
      entry?.name ?? url,
      isFile ? vscode.TreeItemCollapsibleState.None : vscode.TreeItemCollapsibleState.Collapsed,
    );
    item.id = url;
    item.tooltip = entry?.lock ? `${url}\n${describeLock(entry.lock)}` : url;
    item.contextValue = isFile ? 'file' : 'directory';
    item.iconPath = isFile
      ? vscode.ThemeIcon.File
      : new vscode.ThemeIcon(entry ? 'folder' : 'repo');
    if (entry?.lock) item.iconPath = new vscode.ThemeIcon('lock');
    if (isFile) item.resourceUri = vscode.Uri.parse(url, true).with({ scheme: 'quen-repository' });
    if (entry?.revision !== undefined) {
      const { revision, author = null, date = null } = entry;
      item.description = detailOf({ revision, author, date, message: null });
    }
    if (isFile) {
      item.command = {
        command: 'vscode.open',
        title: vscode.l10n.t('Open'),
        arguments: [revisionUri({ url }, 'HEAD')],
      };
    }
    return item;
  }

  private roots(): Node[] {
    const roots = new Set(this.services.copies.all.map(({ facts }) => facts.repositoryRoot));
    const own = [...roots].map((url) => ({ url, repositoryRoot: url, entry: null }));
    return [...own, ...this.others];
  }
}

function byKindAndName(a: RepositoryEntry, b: RepositoryEntry): number {
  if (a.kind !== b.kind) return a.kind === 'dir' ? -1 : 1;
  return a.name.localeCompare(b.name);
}

export function registerBrowser(
  services: Services,
  controls: SourceControls,
  history: HistoryView,
  tree: RepositoryTree,
): vscode.Disposable {
  const view = vscode.window.createTreeView('quen.repository', {
    treeDataProvider: tree,
    showCollapseAll: true,
    canSelectMany: true,
  });
  return vscode.Disposable.from(
    view,
    services.copies.onDidOpen(() => {
      tree.refresh();
    }),
    services.copies.onDidClose(() => {
      tree.refresh();
    }),
    command('quen.repository.refresh', (node?: Node) => {
      tree.refresh(node);
    }),
    command('quen.repository.browse', async () => {
      const url = await askUrl(vscode.l10n.t('Browse which repository?'));
      if (url !== undefined) tree.add(url);
    }),
    command('quen.repository.history', ({ url, repositoryRoot, entry }: Node) =>
      history.show({ title: entry?.name ?? url, place: { url }, repositoryRoot }),
    ),
    command('quen.repository.checkout', ({ url }: Node) => checkoutFrom(services, url)),
    command('quen.repository.copyUrl', ({ url }: Node) => vscode.env.clipboard.writeText(url)),
    command('quen.repository.compareSelected', async (_node: Node, nodes: readonly Node[]) => {
      const [left, right] = nodes;
      if (left?.entry?.kind !== 'file' || right?.entry?.kind !== 'file') {
        void vscode.window.showInformationMessage(vscode.l10n.t('Choose two files to compare.'));
        return;
      }
      await compare(
        revisionUri({ url: left.url }, 'HEAD'),
        revisionUri({ url: right.url }, 'HEAD'),
        `${left.entry.name} ↔ ${right.entry.name}`,
      );
    }),
    command('quen.copyUrl', async (...args: Argument[]) => {
      const copy = await copyFrom(services, controls, args);
      if (copy) await vscode.env.clipboard.writeText(copy.facts.url);
    }),
  );
}
