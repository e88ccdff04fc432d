// One source control for each working copy.

import * as vscode from 'vscode';
import { quickDiffOf } from '../content/quickDiff';
import { branchName, type Change, type WorkingCopy } from '../model/workingCopy';
import type { Item } from '../server/protocol';
import type { Services } from '../services';
import { Groups } from './groups';

interface Shown {
  readonly control: vscode.SourceControl;
  readonly groups: Groups;
  /** The facts that the editor was told last: most changes of a file leave them as they are. */
  told: string;
}

export class SourceControls implements vscode.Disposable {
  private readonly shown = new Map<WorkingCopy, Shown>();
  private readonly subscriptions: vscode.Disposable[];

  constructor(private readonly services: Services) {
    const { copies } = services;
    this.subscriptions = [
      copies.onDidOpen((copy) => {
        this.open(copy);
      }),
      copies.onDidClose((copy) => {
        this.close(copy);
      }),
      copies.onDidChange((change) => {
        this.change(change);
      }),
      vscode.workspace.onDidChangeConfiguration((event) => {
        if (event.affectsConfiguration('quen')) this.showAll();
      }),
    ];
  }

  inputBoxOf(copy: WorkingCopy): vscode.SourceControlInputBox | undefined {
    return this.shown.get(copy)?.control.inputBox;
  }

  /** The working copy of a source control, as menus hand it over. */
  copyOf(control: vscode.SourceControl): WorkingCopy | undefined {
    for (const [copy, shown] of this.shown) if (shown.control === control) return copy;
    return undefined;
  }

  /** The working copy and all items of a group, shown or not. */
  contentsOf(
    group: vscode.SourceControlResourceGroup,
  ): { copy: WorkingCopy; items: readonly Item[] } | undefined {
    for (const [copy, { groups }] of this.shown) {
      const items = groups.itemsOf(group);
      if (items) return { copy, items };
    }
    return undefined;
  }

  /** The paths of all rows of the local groups, shown or not. */
  rowsOf(copy: WorkingCopy): readonly string[] {
    return this.shown.get(copy)?.groups.paths ?? [];
  }

  /** What a commit of everything would take, without the changelist that is never meant. */
  committable(copy: WorkingCopy): readonly Item[] {
    return this.shown.get(copy)?.groups.committable('ignore-on-commit') ?? [];
  }

  dispose(): void {
    vscode.Disposable.from(...this.subscriptions).dispose();
    for (const copy of [...this.shown.keys()]) this.close(copy);
  }

  private open(copy: WorkingCopy): void {
    const control = vscode.scm.createSourceControl('quen', 'Subversion', copy.uri);
    control.acceptInputCommand = {
      command: 'quen.commit',
      title: vscode.l10n.t('Commit'),
      arguments: [control],
    };
    control.quickDiffProvider = quickDiffOf(copy, (uri) => this.services.copies.of(uri));
    const isOther = (path: string) =>
      path !== copy.path && this.services.copies.get(path) !== undefined;
    this.shown.set(copy, { control, groups: new Groups(control, copy, isOther), told: '' });
    this.showFacts(copy);
  }

  private close(copy: WorkingCopy): void {
    const shown = this.shown.get(copy);
    this.shown.delete(copy);
    shown?.groups.dispose();
    shown?.control.dispose();
  }

  private change({ copy, paths }: Change): void {
    const shown = this.shown.get(copy);
    if (!shown) return;
    const { groups } = shown;
    if (paths) groups.update(paths);
    else groups.reset();
    groups.showIncoming();
    groups.showSettled();
    this.showFacts(copy);
    if (!paths) this.showRowsBehind(copy, shown);
  }

  /** The count leaves for the editor before very many rows are made. */
  private showRowsBehind(copy: WorkingCopy, shown: Shown): void {
    setTimeout(() => {
      if (this.shown.get(copy) === shown) shown.groups.showLocal();
    }, 0);
  }

  private showAll(): void {
    for (const copy of this.shown.keys()) this.showFacts(copy);
  }

  private showFacts(copy: WorkingCopy): void {
    const shown = this.shown.get(copy);
    if (!shown) return;
    const counted = vscode.workspace
      .getConfiguration('quen', copy.uri)
      .get<'all' | 'versioned' | 'off'>('count', 'all');
    shown.control.count = counted === 'off' ? 0 : shown.groups.count(counted);
    const { url, revision, branch } = copy.facts;
    const facts = [url, revision, branch, copy.needsSignIn, copy.busy, copy.incoming.length];
    const told = JSON.stringify(facts);
    if (shown.told === told) return;
    shown.told = told;
    shown.control.statusBarCommands = statusBarCommands(copy, shown.control);
    shown.control.inputBox.placeholder = placeholder(copy);
  }
}

function placeholder(copy: WorkingCopy): string {
  return vscode.l10n.t('Message for {1} ({0})', '{0}', branchName(copy.facts.branch, copy));
}

function statusBarCommands(copy: WorkingCopy, control: vscode.SourceControl): vscode.Command[] {
  const branch: vscode.Command = {
    command: 'quen.switch',
    title: `$(${copy.facts.branch?.isTrunk === false ? 'git-branch' : 'repo'}) ${branchName(copy.facts.branch, copy)}`,
    tooltip: vscode.l10n.t('{0}, revision {1}. Switch...', copy.facts.url, copy.facts.revision),
    arguments: [control],
  };
  return [branch, updateCommand(copy, control)];
}

function updateCommand(copy: WorkingCopy, control: vscode.SourceControl): vscode.Command {
  const shared = { command: 'quen.update', arguments: [control] };
  if (copy.needsSignIn) {
    return {
      command: 'quen.signIn',
      title: `$(key) ${vscode.l10n.t('Sign in')}`,
      tooltip: vscode.l10n.t('The repository wants you to sign in'),
      arguments: [control],
    };
  }
  if (copy.busy > 0) {
    return { ...shared, title: '$(sync~spin)', tooltip: vscode.l10n.t('Subversion is busy') };
  }
  const count = copy.incoming.length;
  return count > 0
    ? {
        ...shared,
        title: `$(cloud-download) ${count}`,
        tooltip: vscode.l10n.t('{0} incoming changes. Update', count),
      }
    : { ...shared, title: '$(sync)', tooltip: vscode.l10n.t('Update') };
}
