// Names and passwords: from the editor's secret storage, or from the person.

import * as vscode from 'vscode';
import type { ServerQuestions } from '../server/protocol';

type Params = ServerQuestions['credentials/get']['params'];
type Answer = ServerQuestions['credentials/get']['result'];

interface Stored {
  readonly user: string;
  readonly password: string;
}

const realmsKey = 'quen.realms';

export class Passwords {
  constructor(
    private readonly secrets: vscode.SecretStorage,
    private readonly memory: vscode.Memento,
  ) {}

  async get(params: Params, token?: vscode.CancellationToken): Promise<Answer> {
    const stored = params.reason === 'first' ? await this.stored(params.realm) : undefined;
    if (stored) return { ...stored, keep: 'process' };
    const typed = await askPerson(params, token);
    if (!typed) return null;
    const { keep, ...answer } = typed;
    if (keep) await this.store(params.realm, answer);
    else await this.forget(params.realm);
    return { ...answer, keep: 'process' };
  }

  async forgetAll(): Promise<void> {
    for (const realm of this.realms()) await this.forget(realm);
  }

  private realms(): string[] {
    return this.memory.get<string[]>(realmsKey, []);
  }

  private async stored(realm: string): Promise<Stored | undefined> {
    const text = await this.secrets.get(secretKey(realm));
    return text === undefined ? undefined : (JSON.parse(text) as Stored);
  }

  private async store(realm: string, { user, password }: Stored): Promise<void> {
    await this.secrets.store(secretKey(realm), JSON.stringify({ user, password }));
    await this.memory.update(realmsKey, [...new Set([...this.realms(), realm])]);
  }

  private async forget(realm: string): Promise<void> {
    await this.secrets.delete(secretKey(realm));
    await this.memory.update(
      realmsKey,
      this.realms().filter((known) => known !== realm),
    );
  }
}

function secretKey(realm: string): string {
  return `quen.password:${realm}`;
}

interface Typed extends Stored {
  readonly keep: boolean;
}

async function askPerson(
  { realm, user, reason }: Params,
  token?: vscode.CancellationToken,
): Promise<Typed | undefined> {
  const title =
    reason === 'refused'
      ? vscode.l10n.t('{0} refused that name or password', realm)
      : vscode.l10n.t('Sign in to {0}', realm);
  const name = await vscode.window.showInputBox(
    { title, prompt: vscode.l10n.t('Name'), value: user ?? '', ignoreFocusOut: true },
    token,
  );
  if (name === undefined) return undefined;
  const password = await vscode.window.showInputBox(
    {
      title,
      prompt: vscode.l10n.t('Password of {0}', name),
      password: true,
      ignoreFocusOut: true,
    },
    token,
  );
  if (password === undefined) return undefined;
  const keep = await askKeep(token);
  return keep === undefined ? undefined : { user: name, password, keep };
}

async function askKeep(token?: vscode.CancellationToken): Promise<boolean | undefined> {
  const chosen = await vscode.window.showQuickPick(
    [
      { label: vscode.l10n.t('Keep it in the editor’s secret storage'), keep: true },
      { label: vscode.l10n.t('Use it until the editor is closed'), keep: false },
    ],
    { title: vscode.l10n.t('Keep the password?'), ignoreFocusOut: true },
    token,
  );
  return chosen?.keep;
}
