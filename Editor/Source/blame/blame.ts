// Who changed which line, beside the lines: the whole file on demand, the current line on demand.

import * as vscode from 'vscode';
import { command } from '../commands';
import { compare } from '../content/comparisons';
import { addressOf, revisionUri, scheme } from '../content/revisionUri';
import { whenOf } from '../history/entries';
import { reportQuietly } from '../report';
import { succeeded } from '../server/failures';
import type { BlameRevision, Place, Revision } from '../server/protocol';
import type { Services } from '../services';
import { Messages } from './messages';

interface FileBlame {
  readonly place: Place;
  readonly revisions: readonly BlameRevision[];
  readonly lines: readonly number[];
}

const widestColumn = 30;

export function registerBlame(services: Services): vscode.Disposable {
  const wholeFile = vscode.window.createTextEditorDecorationType({
    before: { color: new vscode.ThemeColor('quen.blame'), margin: '0 1.5em 0 0' },
    rangeBehavior: vscode.DecorationRangeBehavior.ClosedOpen,
  });
  const currentLine = vscode.window.createTextEditorDecorationType({
    after: { color: new vscode.ThemeColor('quen.blame'), margin: '0 0 0 3em' },
  });
  const known = new Map<string, Promise<FileBlame>>();
  const shown = new Set<string>();
  const messages = new Messages(services);
  let showsLine = isLineWanted();

  const blameOf = (document: vscode.TextDocument): Promise<FileBlame> => {
    const key = document.uri.toString();
    const running = known.get(key) ?? readBlame(services, document.uri);
    known.set(key, running);
    running.catch(() => known.delete(key));
    return running;
  };

  const showFile = async (editor: vscode.TextEditor) => {
    if (!shown.has(editor.document.uri.toString())) {
      editor.setDecorations(wholeFile, []);
      return;
    }
    const blame = await blameOf(editor.document);
    await messages.fetch(blame.place, revisionsIn(blame, editor.visibleRanges));
    const width = columnOf(blame);
    const options = blame.lines
      .slice(0, editor.document.lineCount)
      .map((index, line) => fileDecoration(blame, index, line, width, messages));
    editor.setDecorations(wholeFile, options);
  };

  const showLine = async (editor: vscode.TextEditor) => {
    const line = editor.selection.active.line;
    if (!showsLine || !services.copies.of(editor.document.uri) || editor.document.isDirty) {
      editor.setDecorations(currentLine, []);
      return;
    }
    const blame = await blameOf(editor.document);
    const index = blame.lines[line];
    const revision = index === undefined ? undefined : blame.revisions[index];
    if (revision) await messages.fetch(blame.place, [revision.revision]);
    if (editor.selection.active.line !== line) return; // The caret went on meanwhile.
    editor.setDecorations(currentLine, [lineDecoration(editor, blame, revision, line, messages)]);
  };

  const show = (editor: vscode.TextEditor | undefined) => {
    if (!editor) return;
    // Nobody asked for it: a file that has no blame shows none, and the log says why.
    showFile(editor).catch(reportQuietly);
    showLine(editor).catch(reportQuietly);
  };
  const forget = (uri: vscode.Uri) => {
    known.delete(uri.toString());
  };

  return vscode.Disposable.from(
    wholeFile,
    currentLine,
    command('quen.toggleBlame', async () => {
      const editor = vscode.window.activeTextEditor;
      if (!editor) return;
      const key = editor.document.uri.toString();
      if (!shown.delete(key)) shown.add(key);
      await showFile(editor);
    }),
    command('quen.toggleLineBlame', async () => {
      showsLine = !showsLine;
      if (vscode.window.activeTextEditor) await showLine(vscode.window.activeTextEditor);
    }),
    command('quen.blamePrevious', (place?: Place, revision?: number) =>
      blamePrevious(shown, place, revision, blameOf),
    ),
    command('quen.openRevisionOfLine', (place: Place, revision: number) => {
      const title = `r${revision - 1} ↔ r${revision}`;
      return compare(revisionUri(place, revision - 1), revisionUri(place, revision), title);
    }),
    vscode.window.onDidChangeActiveTextEditor(show),
    vscode.window.onDidChangeTextEditorVisibleRanges(({ textEditor }) => {
      if (shown.has(textEditor.document.uri.toString())) showFile(textEditor).catch(reportQuietly);
    }),
    vscode.window.onDidChangeTextEditorSelection(({ textEditor }) => {
      if (showsLine) showLine(textEditor).catch(reportQuietly);
    }),
    vscode.workspace.onDidSaveTextDocument((document) => {
      forget(document.uri);
      for (const editor of vscode.window.visibleTextEditors) {
        if (editor.document === document) show(editor);
      }
    }),
    vscode.workspace.onDidCloseTextDocument(({ uri }) => {
      forget(uri);
    }),
    services.copies.onDidChange(({ paths }) => {
      for (const path of paths ?? []) forget(vscode.Uri.file(path));
    }),
  );
}

function isLineWanted(): boolean {
  return vscode.workspace.getConfiguration('quen').get<boolean>('blame.currentLine', false);
}

async function readBlame(services: Services, uri: vscode.Uri): Promise<FileBlame> {
  const at: { place: Place; revision?: Revision } =
    uri.scheme === scheme ? addressOf(uri) : { place: { path: uri.path } };
  const revision = at.revision === undefined ? {} : { revision: at.revision };
  const answer = await services.server.request('file/blame', { ...at.place, ...revision });
  const { revisions, lines } = succeeded(answer);
  return { place: at.place, revisions, lines };
}

function revisionsIn(blame: FileBlame, ranges: readonly vscode.Range[]): number[] {
  const indices = new Set<number>();
  for (const { start, end } of ranges) {
    for (const index of blame.lines.slice(start.line, end.line + 1)) indices.add(index);
  }
  return [...indices].flatMap((index) => blame.revisions[index]?.revision ?? []);
}

function short(revision: BlameRevision | undefined): string {
  if (!revision) return vscode.l10n.t('not committed');
  return `r${revision.revision} ${revision.author ?? ''} ${whenOf(revision.date)}`;
}

function columnOf(blame: FileBlame): number {
  const widths = [short(undefined), ...blame.revisions.map(short)].map(({ length }) => length);
  return Math.min(widestColumn, Math.max(...widths));
}

function fileDecoration(
  blame: FileBlame,
  index: number,
  line: number,
  width: number,
  messages: Messages,
): vscode.DecorationOptions {
  const revision = blame.revisions[index];
  // No-break spaces: the column keeps its width.
  const text = short(revision).slice(0, width).padEnd(width).replaceAll(' ', '\u00a0');
  return {
    range: new vscode.Range(line, 0, line, 0),
    renderOptions: { before: { contentText: text } },
    ...hover(blame, revision, messages),
  };
}

function lineDecoration(
  editor: vscode.TextEditor,
  blame: FileBlame,
  revision: BlameRevision | undefined,
  line: number,
  messages: Messages,
): vscode.DecorationOptions {
  const summary = revision
    ? (messages.of(blame.place, revision.revision)?.split('\n', 1)[0] ?? '')
    : '';
  return {
    range: editor.document.lineAt(line).range,
    renderOptions: { after: { contentText: [short(revision), summary].join('  ') } },
    ...hover(blame, revision, messages),
  };
}

function hover(
  blame: FileBlame,
  revision: BlameRevision | undefined,
  messages: Messages,
): { hoverMessage?: vscode.MarkdownString } {
  if (!revision) return {};
  const text = new vscode.MarkdownString('', true);
  text.isTrusted = { enabledCommands: ['quen.openRevisionOfLine', 'quen.blamePrevious'] };
  text.appendMarkdown(`**r${revision.revision}** `);
  text.appendText(
    `${revision.author ?? ''} ${revision.date ? new Date(revision.date).toLocaleString(vscode.env.language) : ''}`,
  );
  text.appendMarkdown('\n\n');
  text.appendText(messages.of(blame.place, revision.revision) ?? '');
  const args = encodeURIComponent(JSON.stringify([blame.place, revision.revision]));
  const change = vscode.l10n.t('Change');
  const before = vscode.l10n.t('Blame before this revision');
  text.appendMarkdown(
    `\n\n[$(diff) ${change}](command:quen.openRevisionOfLine?${args}) · [$(history) ${before}](command:quen.blamePrevious?${args})`,
  );
  return { hoverMessage: text };
}

/** Opens the file as it was before a revision, blamed. */
async function blamePrevious(
  shown: Set<string>,
  place: Place | undefined,
  revision: number | undefined,
  blameOf: (document: vscode.TextDocument) => Promise<FileBlame>,
): Promise<void> {
  const editor = vscode.window.activeTextEditor;
  let of = place !== undefined && revision !== undefined ? { place, revision } : undefined;
  if (!of && editor) {
    const blame = await blameOf(editor.document);
    const found = blame.revisions[blame.lines[editor.selection.active.line] ?? -1];
    if (found) of = { place: blame.place, revision: found.revision };
  }
  if (!of) return;
  const uri = revisionUri(of.place, of.revision - 1);
  shown.add(uri.toString());
  const document = await vscode.workspace.openTextDocument(uri);
  await vscode.window.showTextDocument(document);
}
