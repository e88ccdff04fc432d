import * as vscode from 'vscode';
import type { ServerQuestions } from '../server/protocol';

type Params = ServerQuestions['certificate/confirm']['params'];
type Answer = ServerQuestions['certificate/confirm']['result'];

export async function askTrust(params: Params): Promise<Answer> {
  const once = vscode.l10n.t('Trust Once');
  const always = vscode.l10n.t('Trust Always');
  const chosen = await vscode.window.showWarningMessage(
    vscode.l10n.t('The certificate of {0} is not trusted.', params.hostname),
    { modal: true, detail: detailOf(params) },
    once,
    always,
  );
  if (chosen === once) return 'once';
  return chosen === always ? 'always' : 'reject';
}

function detailOf({ url, issuer, validity, fingerprint, failures }: Params): string {
  return [
    ...failures,
    '',
    url,
    vscode.l10n.t('Issuer: {0}', issuer),
    vscode.l10n.t('Valid: {0}', validity),
    vscode.l10n.t('Fingerprint: {0}', fingerprint),
    '',
    vscode.l10n.t(
      'Compare the fingerprint with the one that the administrator of the server tells you.',
    ),
  ].join('\n');
}
