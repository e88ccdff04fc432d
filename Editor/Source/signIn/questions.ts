// The server's questions, put to the person one at a time. How often there is one is the server's
// matter: once for each realm, and never for work that no person asked for.

import * as vscode from 'vscode';
import type { Question, ServerQuestions } from '../server/protocol';
import { askTrust } from './certificates';
import { Passwords } from './passwords';

export interface SignIn {
  ask<Q extends Question>(
    question: Q,
    params: ServerQuestions[Q]['params'],
    token?: vscode.CancellationToken,
  ): Promise<ServerQuestions[Q]['result']>;
  forgetAll(): Promise<void>;
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
  const answer = (
    question: Question,
    params: unknown,
    token?: vscode.CancellationToken,
  ): Promise<unknown> => {
    if (token?.isCancellationRequested) return Promise.resolve(null);
    switch (question) {
      case 'credentials/get':
        return passwords.get(params as ServerQuestions['credentials/get']['params'], token);
      case 'certificate/confirm':
        return unlessCancelled(
          askTrust(params as ServerQuestions['certificate/confirm']['params']),
          token,
        );
      case 'ssh/ask':
        return askSsh(params as ServerQuestions['ssh/ask']['params'], token);
    }
  };
  return {
    ask: <Q extends Question>(
      question: Q,
      params: ServerQuestions[Q]['params'],
      token?: vscode.CancellationToken,
    ) => inTurn(() => answer(question, params, token)) as Promise<ServerQuestions[Q]['result']>,
    forgetAll: () => passwords.forgetAll(),
  };
}

/** A dialog cannot be closed from here; its answer no longer counts, and the next question comes. */
function unlessCancelled<R>(
  answer: Promise<R>,
  token?: vscode.CancellationToken,
): Promise<R | null> {
  const cancelled = new Promise<null>((resolve) => {
    token?.onCancellationRequested(() => {
      resolve(null);
    });
  });
  return Promise.race([answer, cancelled]);
}

async function askSsh(
  params: ServerQuestions['ssh/ask']['params'],
  token?: vscode.CancellationToken,
): Promise<string | null> {
  const typed = await vscode.window.showInputBox(
    {
      title: 'ssh',
      prompt: params.prompt,
      password: params.secret,
      ignoreFocusOut: true,
    },
    token,
  );
  return typed ?? null;
}
