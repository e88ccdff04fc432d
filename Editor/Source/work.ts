// Work that takes its time: shown in the notification or in the view, with cancel, and told to the
// working copy so that the status bar shows it.

import * as vscode from 'vscode';
import type { WorkingCopy } from './model/workingCopy';
import { succeeded } from './server/failures';
import type { Method, Outcome, Params, Result, WorkDone } from './server/protocol';
import type { Services } from './services';

export interface Work {
  readonly title: string;
  readonly copy?: WorkingCopy | undefined;
  /** Long work has a notification with a Cancel button; short work shows in the view alone. */
  readonly isLong: boolean;
}

/** Runs a method of the server and answers its result; rejects where the client failed. */
export async function perform<M extends Method>(
  services: Services,
  work: Work,
  method: M,
  params: Params<M>,
): Promise<Result<M> & Partial<Outcome>> {
  return busy(services, work.copy, () =>
    vscode.window.withProgress(
      {
        location: work.isLong
          ? vscode.ProgressLocation.Notification
          : vscode.ProgressLocation.SourceControl,
        title: work.title,
        cancellable: work.isLong,
      },
      async (progress, token) => {
        const answer = await services.server.request(method, params, {
          token,
          progress: (value) => {
            progress.report(inWords(value));
          },
        });
        return succeeded(answer as Result<M> & Partial<Outcome>);
      },
    ),
  );
}

async function busy<R>(
  { copies }: Services,
  copy: WorkingCopy | undefined,
  run: () => Thenable<R>,
): Promise<R> {
  if (!copy) return run();
  copy.busy += 1;
  copies.touch(copy);
  try {
    return await run();
  } finally {
    copy.busy -= 1;
    copies.touch(copy);
  }
}

function inWords(value: WorkDone): { message?: string } {
  switch (value.kind) {
    case 'begin':
      return {};
    case 'report':
      return {
        message:
          value.items > 0
            ? `${value.items.toLocaleString(vscode.env.language)} · ${value.message}`
            : value.message,
      };
    case 'end':
      return value.message === undefined ? {} : { message: value.message };
  }
}
