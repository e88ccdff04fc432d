// Answers in place of a person: each question that the extension asks takes the next one.

import assert from 'node:assert/strict';
import * as vscode from 'vscode';

type Asking =
  | 'showInputBox'
  | 'showQuickPick'
  | 'showWarningMessage'
  | 'showInformationMessage'
  | 'showErrorMessage'
  | 'showOpenDialog'
  | 'showSaveDialog';

const askings: readonly Asking[] = [
  'showInputBox',
  'showQuickPick',
  'showWarningMessage',
  'showInformationMessage',
  'showErrorMessage',
  'showOpenDialog',
  'showSaveDialog',
];

/** What is answered: a value, or what is made of the question's first argument. */
export type Answer = unknown;

export interface Question {
  readonly asking: Asking;
  readonly arguments: readonly unknown[];
}

function isMaker(answer: Answer): answer is (first: unknown) => unknown {
  return typeof answer === 'function';
}

/** The row of a list whose label holds the text. */
export function row(text: string): (items: unknown) => Promise<unknown> {
  return async (items) => {
    const rows = (await items) as readonly { label: string }[];
    const found = rows.find(({ label }) => label.includes(text));
    assert.ok(found, `${text} is not among ${rows.map(({ label }) => label).join(', ')}`);
    return found;
  };
}

/**
 * Runs `run` while questions are answered in turn, and answers what was asked. A question for which
 * there is no answer left is dismissed, and fails the test where it is a box or a list.
 */
export async function answering(
  answers: Partial<Record<Asking, readonly Answer[]>>,
  run: () => Thenable<unknown>,
): Promise<readonly Question[]> {
  const asked: Question[] = [];
  const window = vscode.window as unknown as Record<Asking, (...args: unknown[]) => unknown>;
  const before = askings.map((asking) => [asking, window[asking]] as const);
  const left = new Map(askings.map((asking) => [asking, [...(answers[asking] ?? [])]]));
  for (const asking of askings) {
    window[asking] = async (...args: unknown[]) => {
      asked.push({ asking, arguments: args });
      const queue = left.get(asking) ?? [];
      if (queue.length === 0) return undefined;
      const answer = queue.shift();
      return isMaker(answer) ? await answer(args[0]) : answer;
    };
  }
  try {
    await run();
  } finally {
    for (const [asking, original] of before) window[asking] = original;
  }
  for (const [asking, queue] of left) {
    assert.equal(queue.length, 0, `${asking} was not asked ${queue.length} times`);
  }
  return asked;
}
