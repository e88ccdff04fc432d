// Locks: got with a comment, released, and taken from somebody else only after a question.

import * as vscode from 'vscode';
import { command } from '../commands';
import { OperationFailed } from '../server/failures';
import type { Services } from '../services';
import { byCopy, pathsOf, urisFrom, type Argument } from '../targets';
import type { SourceControls } from '../view/sourceControls';
import { perform } from '../work';

/** The client's numbers for a lock of somebody else, and for none in this working copy. */
const heldByAnother = 160035;
const notHeldHere = [195007, 160038, 160039, 160040];

export function registerLocks(services: Services, controls: SourceControls): vscode.Disposable {
  const each = async (
    args: readonly Argument[],
    run: (copy: ReturnType<typeof byCopy>[number]) => Promise<void>,
  ) => {
    for (const targets of byCopy(services, urisFrom(controls, args))) await run(targets);
  };
  return vscode.Disposable.from(
    command('quen.lock', async (...args: Argument[]) => {
      const message = await vscode.window.showInputBox({
        title: vscode.l10n.t('Lock'),
        prompt: vscode.l10n.t('What for? Others see it. May be left empty.'),
        ignoreFocusOut: true,
      });
      if (message === undefined) return;
      await each(args, async ({ copy, uris }) => {
        const paths = pathsOf(uris);
        const work = { title: vscode.l10n.t('Locking'), copy, isLong: true };
        const steal = vscode.l10n.t('Take the Lock');
        await orWithForce(
          () => perform(services, work, 'lock/get', { paths, message }),
          () => perform(services, work, 'lock/get', { paths, message, steal: true }),
          [heldByAnother],
          steal,
        );
      });
    }),
    command('quen.unlock', (...args: Argument[]) =>
      each(args, async ({ copy, uris }) => {
        const paths = pathsOf(uris);
        const work = { title: vscode.l10n.t('Releasing the lock'), copy, isLong: true };
        await orWithForce(
          () => perform(services, work, 'lock/release', { paths }),
          () => perform(services, work, 'lock/release', { paths, force: true }),
          notHeldHere,
          vscode.l10n.t('Break the Lock'),
        );
      }),
    ),
  );
}

/** Where the lock is somebody else's, says whose it is and asks before it is taken away. */
async function orWithForce(
  run: () => Promise<unknown>,
  force: () => Promise<unknown>,
  codes: readonly number[],
  label: string,
): Promise<void> {
  try {
    await run();
  } catch (error) {
    const known = error instanceof OperationFailed ? error.error : null;
    const text = known?.clientText ?? '';
    const isAnothers = codes.some(
      (code) => known?.codes.includes(code) === true || text.includes(`W${code}`),
    );
    if (!isAnothers) throw error;
    const answer = await vscode.window.showWarningMessage(
      vscode.l10n.t('The lock is not this working copy’s.'),
      { modal: true, detail: text.trim() },
      label,
    );
    if (answer === label) await force();
  }
}
