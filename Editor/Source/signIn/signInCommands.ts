import * as vscode from 'vscode';
import { command } from '../commands';
import type { Services } from '../services';
import { copyFrom, type Argument } from '../targets';
import type { SourceControls } from '../view/sourceControls';
import type { SignIn } from './questions';

export function registerSignIn(
  services: Services,
  controls: SourceControls,
  signIn: SignIn,
): vscode.Disposable {
  return vscode.Disposable.from(
    command('quen.signIn', async (...args: Argument[]) => {
      const copy = await copyFrom(services, controls, args);
      // Asking the repository something is what raises the question.
      if (copy) await services.copies.refreshIncoming(copy);
    }),
    command('quen.signOut', async () => {
      await signIn.forgetAll();
      await services.server.restart();
      vscode.window.setStatusBarMessage(vscode.l10n.t('Kept passwords were forgotten.'), 5000);
    }),
  );
}
