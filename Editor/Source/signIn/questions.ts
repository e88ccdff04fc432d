// The server's questions, put to the person: one at a time, and a dismissed one is not asked again
// until the person acts.

import * as vscode from 'vscode';
import type { Question, ServerQuestions } from '../server/protocol';
import { askTrust } from './certificates';
import { Passwords } from './passwords';

export interface SignIn {
  ask<Q extends Question>(
    question: Q,
    params: ServerQuestions[Q]['params'],
  ): Promise<ServerQuestions[Q]['result']>;
  /** The person wants to be asked again. */
  reset(): void;
  forgetAll(): Promise<void>;
  dispose(): void;
}

export function makeSignIn(context: vscode.ExtensionContext): SignIn {
  const passwords = new Passwords(context.secrets, context.globalState);
  let last: Promise<unknown> = Promise.resolve();
  /** One question after the other: a second box would close the first one. */
  const inTurn = <R>(run: () => Promise<R>): Promise<R> => {
    const turn = last.then(run, run);
    last = turn.catch(() => undefined); // Told to whoever asked; the next one goes on.
    return turn;
  };
  const answer = (question: Question, params: unknown): Promise<unknown> => {
    switch (question) {
      case 'credentials/get':
        return passwords.get(params as ServerQuestions['credentials/get']['params']);
      case 'certificate/confirm':
        return askTrust(params as ServerQuestions['certificate/confirm']['params']);
      case 'ssh/ask':
        return askSsh(params as ServerQuestions['ssh/ask']['params']);
    }
  };
  return {
    ask: <Q extends Question>(question: Q, params: ServerQuestions[Q]['params']) =>
      inTurn(() => answer(question, params)) as Promise<ServerQuestions[Q]['result']>,
    reset: () => {
      passwords.reset();
    },
    forgetAll: () => passwords.forgetAll(),
    dispose: () => {
      passwords.reset();
    },
  };
}

async function askSsh(params: ServerQuestions['ssh/ask']['params']): Promise<string | null> {
  const typed = await vscode.window.showInputBox({
    title: 'ssh',
    prompt: params.prompt,
    password: params.secret,
    ignoreFocusOut: true,
  });
  return typed ?? null;
}
