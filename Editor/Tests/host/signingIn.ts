import assert from 'node:assert/strict';
import * as vscode from 'vscode';
import { askTrust } from '../../Source/signIn/certificates';
import { makeSignIn } from '../../Source/signIn/questions';
import { answering, row } from './answers';
import { until, type HostTest } from './runner';
import { extension, run } from './window';

const realm = '<svn://host> Weather station';
const first = { realm, url: 'svn://host', user: null, reason: 'first' } as const;
const refused = { ...first, reason: 'refused' } as const;

const certificate = {
  url: 'https://host/repository',
  hostname: 'host',
  validity: 'from 2026 to 2027',
  issuer: 'Somebody',
  fingerprint: 'AA:BB',
  failures: ['The certificate is not issued by a trusted authority.'],
};

export const signingInTests: readonly HostTest[] = [
  [
    'a kept password answers without a question; a refused one is asked again',
    async () => {
      const { services } = await extension();
      const signIn = makeSignIn(services.context);
      const typed = (password: string) => ({
        showInputBox: ['ann', password],
        showQuickPick: [row('secret storage')],
      });
      const asked = await answering(typed('one'), async () => {
        const answer = await signIn.ask('credentials/get', first);
        assert.deepEqual(answer, { user: 'ann', password: 'one', keep: 'process' });
      });
      assert.match(JSON.stringify(asked[0]?.arguments), /Sign in to .*Weather station/);
      // A box that stays while the person fetches the password from elsewhere.
      for (const {
        arguments: [options],
      } of asked) {
        assert.equal((options as { ignoreFocusOut?: boolean }).ignoreFocusOut ?? true, true);
      }
      const again = await answering({}, async () => {
        assert.equal((await signIn.ask('credentials/get', first))?.password, 'one');
      });
      assert.deepEqual(again, []);
      const other = await answering(typed('two'), async () => {
        assert.equal((await signIn.ask('credentials/get', refused))?.password, 'two');
      });
      assert.match(JSON.stringify(other[0]?.arguments), /refused/);
      await signIn.forgetAll();
    },
  ],
  [
    'a dismissed question answers no, and keeps nothing',
    async () => {
      const { services } = await extension();
      const signIn = makeSignIn(services.context);
      const ask = () => signIn.ask('credentials/get', first);
      const asked = await answering({ showInputBox: ['ann', undefined] }, async () => {
        assert.equal(await ask(), null);
      });
      assert.equal(asked.length, 2);
      assert.equal((await answering({ showInputBox: [undefined] }, ask)).length, 1);
    },
  ],
  [
    'a box closes when the server no longer wants an answer, and the next question comes',
    async () => {
      const { services } = await extension();
      const signIn = makeSignIn(services.context);
      const prompt = 'Host key?';
      for (const [question, params] of [
        ['credentials/get', first],
        ['ssh/ask', { prompt, secret: false }],
      ] as const) {
        const cancel = new vscode.CancellationTokenSource();
        const answer = signIn.ask(question, params, cancel.token);
        await run('workbench.action.focusQuickOpen'); // Comes back once the editor has drawn the box.
        cancel.cancel();
        assert.equal(await answer, null);
      }
      await answering({ showInputBox: ['yes'] }, async () => {
        assert.equal(await signIn.ask('ssh/ask', { prompt, secret: false }), 'yes');
      });
    },
  ],
  [
    'a dialog that the server no longer wants an answer to holds up nothing',
    async () => {
      const { services } = await extension();
      const signIn = makeSignIn(services.context);
      const cancel = new vscode.CancellationTokenSource();
      let isShown = false;
      const stays = () => {
        isShown = true;
        return new Promise(() => undefined);
      };
      await answering({ showWarningMessage: [stays], showInputBox: ['yes'] }, async () => {
        const answer = signIn.ask('certificate/confirm', certificate, cancel.token);
        await until(() => isShown);
        cancel.cancel();
        assert.equal(await answer, null);
        assert.equal(await signIn.ask('ssh/ask', { prompt: '?', secret: false }), 'yes');
      });
    },
  ],
  [
    'a certificate is shown with what the client says of it, and trusted only when chosen',
    async () => {
      for (const [chosen, answer] of [
        ['Trust Once', 'once'],
        ['Trust Always', 'always'],
        [undefined, 'reject'],
      ] as const) {
        const asked = await answering({ showWarningMessage: [chosen] }, async () => {
          assert.equal(await askTrust(certificate), answer);
        });
        assert.match(JSON.stringify(asked[0]?.arguments), /AA:BB/);
        assert.match(JSON.stringify(asked[0]?.arguments), /not issued by a trusted authority/);
      }
    },
  ],
  [
    'a question of the secure shell is put in its own words; a secret one hides what is typed',
    async () => {
      const { services } = await extension();
      const signIn = makeSignIn(services.context);
      const prompt = "Enter passphrase for key '/home/ann/.ssh/id':";
      const asked = await answering({ showInputBox: ['phrase'] }, async () => {
        assert.equal(await signIn.ask('ssh/ask', { prompt, secret: true }), 'phrase');
      });
      const [options] = asked[0]?.arguments ?? [];
      assert.deepEqual(
        [(options as { prompt: string }).prompt, (options as { password: boolean }).password],
        [prompt, true],
      );
    },
  ],
];
