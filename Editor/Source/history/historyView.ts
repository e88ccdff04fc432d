// The history of a repository, of a file, or of chosen lines, as a tree: revisions, below each the
// files that it changed.

import * as vscode from 'vscode';
import { report } from '../report';
import { copyName } from '../model/workingCopy';
import type { LogEntry } from '../server/protocol';
import type { Services } from '../services';
import {
  detailOf,
  readPage,
  summaryOf,
  tooltipOf,
  whenOf,
  type Search,
  type Source,
} from './entries';
import type { FileNode, Node } from './nodes';

export class HistoryView implements vscode.TreeDataProvider<Node>, vscode.Disposable {
  private readonly changes = new vscode.EventEmitter<undefined>();
  readonly onDidChangeTreeData = this.changes.event;
  private readonly view: vscode.TreeView<Node>;
  private source: Source | undefined;
  private search: Search = {};
  private entries: LogEntry[] = [];
  private next: number | null = null;
  private reading: vscode.CancellationTokenSource | undefined;
  private isRead = false;

  constructor(private readonly services: Services) {
    this.view = vscode.window.createTreeView('quen.history', {
      treeDataProvider: this,
      showCollapseAll: true,
      canSelectMany: true,
    });
  }

  get currentSearch(): Search {
    return this.search;
  }

  /** What the view shows now; tests and commands read it. */
  get shown(): readonly LogEntry[] {
    return this.entries;
  }

  async show(source: Source, search: Search = {}): Promise<void> {
    this.source = source;
    this.search = search;
    this.forget();
    this.isRead = true;
    await this.readMore();
    await vscode.commands.executeCommand('quen.history.focus');
  }

  async searchFor(search: Search): Promise<void> {
    if (!this.source) return;
    await this.show(this.source, search);
  }

  refresh(): void {
    this.forget();
    this.changes.fire(undefined);
  }

  async readMore(): Promise<void> {
    await this.readPage();
    this.changes.fire(undefined);
  }

  async getChildren(node?: Node): Promise<Node[]> {
    const { source } = this;
    if (node?.kind === 'entry') {
      const { entry } = node;
      return (entry.files ?? []).map((file) => ({
        kind: 'file',
        file,
        entry,
        source: node.source,
      }));
    }
    if (node) return [];
    if (!source && !this.takeFirstCopy()) return [];
    if (!this.isRead) await this.readFirst();
    return this.nodes();
  }

  getTreeItem(node: Node): vscode.TreeItem {
    switch (node.kind) {
      case 'entry':
        return entryItem(node.entry, node.source);
      case 'file':
        return fileItem(node);
      case 'more':
        return moreItem();
    }
  }

  dispose(): void {
    this.reading?.cancel();
    this.view.dispose();
    this.changes.dispose();
  }

  private nodes(): Node[] {
    const { source } = this;
    if (!source) return [];
    const nodes: Node[] = this.entries.map((entry) => ({ kind: 'entry', entry, source }));
    return this.next === null ? nodes : [...nodes, { kind: 'more' }];
  }

  /** Until somebody asks for more, the view shows the history of the first working copy. */
  private takeFirstCopy(): boolean {
    const [copy] = this.services.copies.all;
    if (!copy) return false;
    this.source = {
      title: copyName(copy),
      place: { path: copy.path },
      repositoryRoot: copy.facts.repositoryRoot,
    };
    return true;
  }

  private async readFirst(): Promise<void> {
    this.isRead = true; // Also where it fails: a tree that asks again and again helps nobody.
    try {
      await this.readPage();
    } catch (error) {
      this.view.message = error instanceof Error ? error.message : String(error);
      void report(error);
    }
  }

  /** Appends the next page; one that was asked for before something else was shown is dropped. */
  private async readPage(): Promise<void> {
    const { source } = this;
    if (!source) return;
    const reading = new vscode.CancellationTokenSource();
    this.reading = reading;
    await vscode.window.withProgress({ location: { viewId: 'quen.history' } }, async () => {
      const page = await readPage(this.services, source, this.search, this.next, reading.token);
      if (reading.token.isCancellationRequested) return;
      this.entries.push(...page.entries);
      this.next = page.next;
      this.showTitle();
    });
  }

  private forget(): void {
    this.reading?.cancel();
    this.entries = [];
    this.next = null;
    this.isRead = false;
    this.view.message = '';
  }

  private showTitle(): void {
    this.view.description = this.source?.title ?? '';
    const words = [this.search.text, this.search.author].filter((word) => word !== undefined);
    this.view.message =
      words.length > 0
        ? vscode.l10n.t('Search: {0} ({1} found so far)', words.join(', '), this.entries.length)
        : '';
  }
}

function entryItem(entry: LogEntry, source: Source): vscode.TreeItem {
  // A narrow view cuts the end of a row: the revision stands where it never does.
  const label = `r${entry.revision} ${summaryOf(entry)}`;
  const item = new vscode.TreeItem(label, vscode.TreeItemCollapsibleState.Collapsed);
  item.id = `${source.title} ${entry.revision}`;
  item.description = [whenOf(entry.date), entry.author ?? ''].filter((part) => part).join(' · ');
  item.tooltip = tooltipOf(entry);
  item.iconPath = new vscode.ThemeIcon('git-commit');
  item.contextValue = source.file ? 'entry file' : 'entry';
  item.accessibilityInformation = { label: `${summaryOf(entry)}, ${detailOf(entry)}` };
  if (source.file) {
    const title = vscode.l10n.t('Compare With the Previous Revision');
    const node: Node = { kind: 'entry', entry, source };
    item.command = { command: 'quen.history.openFileChange', title, arguments: [node] };
  }
  return item;
}

const letters: Readonly<Record<string, string>> = {
  added: 'A',
  modified: 'M',
  deleted: 'D',
  replaced: 'R',
};

function fileItem(node: FileNode): vscode.TreeItem {
  const { file, entry } = node;
  const item = new vscode.TreeItem(vscode.Uri.file(file.path));
  item.description = `${letters[file.action] ?? file.action} ${file.path}`;
  item.tooltip = `${file.path}: ${file.action}`;
  item.contextValue = 'entryFile';
  item.accessibilityInformation = { label: `${file.path}, ${file.action}, r${entry.revision}` };
  item.command = {
    command: 'quen.history.openFileChange',
    title: vscode.l10n.t('Open Change'),
    arguments: [node],
  };
  return item;
}

function moreItem(): vscode.TreeItem {
  const item = new vscode.TreeItem(vscode.l10n.t('Load more...'));
  item.iconPath = new vscode.ThemeIcon('ellipsis');
  item.command = { command: 'quen.history.more', title: vscode.l10n.t('Load more...') };
  return item;
}
