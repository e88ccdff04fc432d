// Journeys of a person, each in an editor of its own. The pictures that they make are looked at by
// people; those in the README are among them.

import assert from 'node:assert/strict';
import { randomUUID } from 'node:crypto';
import { readdirSync, readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { after, before, test } from 'node:test';
import type { Browser } from 'playwright-core';
import type { Demonstration } from '../../Workbench/demonstration';
import { PasswordServer } from '../../Workbench/passwordServer';
import type { Sandbox } from '../../Workbench/repository';
import { launch, type Theme } from './driver';
import { onStage } from './stage';

const bound = { timeout: 120_000 };
let browser: Browser;

before(async () => {
  browser = await launch();
});
after(() => browser.close());

for (const theme of ['light', 'dark'] as const satisfies readonly Theme[]) {
  test(`the view, a change, blame and the history in ${theme} colours`, bound, async () => {
    await onStage(browser, { theme }, async ({ editor }) => {
      const { page } = editor;
      await editor.waitForBadge(7);
      await editor.showSourceControl();
      await editor.row('station.c').waitFor();
      await editor.row('station.c').click();
      await page.waitForSelector('.monaco-diff-editor .line-insert');
      await editor.picture(`changes-${theme}`);

      await editor.command('Subversion: History of the Working Copy');
      await page
        .locator('.pane-body .monaco-list-row', { hasText: 'Notes for the roof' })
        .first()
        .waitFor();
      await editor.picture(`history-${theme}`);

      await editor.row('station.c').hover();
      await editor.row('station.c').locator('.action-label[aria-label="Open File"]').click();
      await page.waitForSelector('.dirty-diff-glyph');
      await editor.command('Subversion: Toggle Blame of the File');
      // Its words are the style's: the editor writes them beside the text, not into it.
      await page.waitForFunction((words) => {
        const spans = [...document.querySelectorAll('.view-lines span[class*="ced-"]')];
        return spans.some((span) => getComputedStyle(span, '::before').content.includes(words));
      }, 'not\u00a0committed');
      await editor.picture(`blame-${theme}`);
      await page.locator('.statusbar-item', { hasText: 'trunk' }).first().waitFor();

      await page.keyboard.press('Control+Shift+E');
      await page.waitForFunction(() => {
        const row = '.explorer-folders-view .monaco-list-row[aria-label*="README"]';
        const parts = [...document.querySelectorAll(`${row}, ${row} *`)];
        return parts.some((part) => getComputedStyle(part, '::after').content === '"P"');
      });
      await editor.picture(`explorer-${theme}`);
    });
  });
}

test('Ctrl+Enter commits what the view shows and empties the box afterwards', bound, async () => {
  await onStage(browser, {}, async ({ editor, copy, url }) => {
    await editor.waitForBadge(7);
    await editor.showSourceControl();
    await editor.type('Show two decimals');
    await editor.page.keyboard.press('Control+Enter');
    // Left: the missing file and the unversioned one.
    await editor.waitForBadge(2);
    assert.equal(await editor.page.locator('.scm-editor .view-line').first().textContent(), '');
    assert.match(copy.svn('log', '-r', 'HEAD', url), /Show two decimals/);
  });
});

test('revert says what is lost, and undo brings it back', bound, async () => {
  await onStage(browser, {}, async ({ editor, copy }) => {
    const { page } = editor;
    await editor.waitForBadge(7);
    await editor.showSourceControl();
    await editor.row('station.c').hover();
    await editor.row('station.c').locator('.action-label[aria-label="Revert..."]').click();
    const dialog = page.locator('.monaco-dialog-box');
    await dialog.filter({ hasText: 'src/station.c' }).waitFor();
    await editor.picture('revert-light');
    await dialog.locator('.monaco-button', { hasText: 'Revert' }).click();
    await editor.waitForBadge(6);
    await editor.toast('Reverted items: 1').locator('.monaco-button', { hasText: 'Undo' }).click();
    await editor.waitForBadge(7);
    assert.match(copy.svn('diff', 'src/station.c'), /%6\.2f/);
  });
});

test('where both sides changed a file, theirs waits beside mine', bound, async () => {
  await onStage(browser, {}, async ({ editor, other }) => {
    const { page } = editor;
    other.commit('Three decimals', {
      'docs/roof.md': 'The ladder is in the attic.\n',
    });
    await editor.waitForBadge(7);
    await editor.showSourceControl();
    await editor.command('Subversion: Update');
    const dialog = page.locator('.monaco-dialog-box');
    await dialog.filter({ hasText: 'docs/roof.md' }).waitFor();
    await editor.picture('update-plan-light');
    await dialog.locator('.monaco-button', { hasText: 'Continue' }).click();
    await editor
      .toast('Changed on both sides')
      .locator('.monaco-button', { hasText: 'Show' })
      .click();
    await page.waitForSelector('.merge-editor, .monaco-diff-editor');
    await page.locator('.view-line', { hasText: 'attic' }).first().waitFor();
    await editor.picture('settled-light');
  });
});

test('a German editor shows German texts', bound, async () => {
  await onStage(browser, { language: 'de' }, async ({ editor }) => {
    const { page } = editor;
    await editor.waitForBadge(7);
    await editor.showSourceControl();
    for (const group of ['Änderungen', 'Fehlend', 'Nicht versioniert']) {
      await editor.row(group).waitFor();
    }
    await editor.row('station.c').hover();
    await editor.row('station.c').locator('.action-label[aria-label="Zurücksetzen..."]').click();
    const dialog = page.locator('.monaco-dialog-box');
    await dialog.filter({ hasText: 'src/station.c' }).waitFor();
    await editor.picture('german-light');
    await dialog.locator('.monaco-button', { hasText: 'Zurücksetzen' }).waitFor();
    await page.keyboard.press('Escape');
    await editor.command('Subversion: Verlauf der Arbeitskopie');
    await page.locator('.pane-header', { hasText: 'Verlauf' }).first().waitFor();
    await page
      .locator('.pane-body .monaco-list-row', { hasText: 'Notes for the roof' })
      .first()
      .waitFor();
    // Dates too: 19.11.2026, not 11/19/2026.
    await page
      .locator('.pane-body .monaco-list-row', { hasText: /\d+\.\d+\.\d{4}/ })
      .first()
      .waitFor();
    await editor.picture('german-history-light');
  });
});

test('where there is no server, the view says what to do', bound, async () => {
  await onStage(browser, { settings: { 'quen.path': '/nowhere/quen' } }, async ({ editor }) => {
    await editor.showSourceControl();
    await editor.page
      .locator('.welcome-view-content', { hasText: 'does not run' })
      .first()
      .waitFor();
    await editor.picture('no-server-light');
  });
});

test('a folder that is not a working copy offers a checkout', bound, async () => {
  const folder = (sandbox: { directory: string }) => sandbox.directory + '/editor';
  await onStage(browser, { folder }, async ({ editor }) => {
    await editor.showSourceControl();
    await editor.page
      .locator('.welcome-view-content', { hasText: 'not a Subversion' })
      .first()
      .waitFor();
    await editor.picture('not-a-working-copy-light');
  });
});

test(
  'a password is asked for once, stays while one looks elsewhere, and is kept nowhere',
  bound,
  async () => {
    let passwords: PasswordServer | undefined;
    const folder = async (sandbox: Sandbox) => {
      passwords = await PasswordServer.start(sandbox, 'repository', `s3cr3t-${randomUUID()}`);
      return passwords.checkOut('protected').root;
    };
    await onStage(browser, { folder }, async ({ editor, sandbox }) => {
      const { page } = editor;
      const secret = passwords?.password ?? '';
      const box = page.locator('.quick-input-widget .quick-input-box input');
      await page.locator('.statusbar-item', { hasText: 'trunk' }).first().waitFor();
      await editor.command('Subversion: Check for Incoming Changes');
      await page.locator('.quick-input-widget', { hasText: 'Weather station' }).waitFor();
      await editor.picture('sign-in-light');
      await box.fill('ann');
      await page.keyboard.press('Enter');
      await page.locator('.quick-input-widget', { hasText: 'Password of ann' }).waitFor();
      await page.locator('.part.editor').click();
      await box.fill(secret);
      await page.keyboard.press('Enter');
      await page
        .locator('.quick-input-list .monaco-list-row', { hasText: 'until the editor' })
        .click();
      await page.locator('.quick-input-widget').waitFor({ state: 'hidden' });
      await editor.command('Subversion: Update');
      await page
        .locator('.statusbar-item', { hasText: /Revision \d+/ })
        .first()
        .waitFor();
      assert.equal(await page.locator('.quick-input-widget').isVisible(), false);
      assert.deepEqual(filesWith(sandbox.path('home'), secret), []);
      assert.deepEqual(filesWith(sandbox.path('editor'), secret), []);
    }).finally(() => passwords?.stop());
  },
);

function filesWith(directory: string, text: string): string[] {
  return readdirSync(directory, { recursive: true, withFileTypes: true })
    .filter((entry) => entry.isFile())
    .map((entry) => join(entry.parentPath, entry.name))
    .filter((path) => readFileSync(path).includes(text));
}

test('several folders are several source controls', bound, async () => {
  const folder = (sandbox: Sandbox, { copy, other }: Demonstration) => {
    const path = sandbox.path('both.code-workspace');
    const folders = [copy, other].map(({ root }) => ({ path: root }));
    writeFileSync(path, JSON.stringify({ folders }));
    return path;
  };
  await onStage(browser, { folder }, async ({ editor, other }) => {
    await editor.waitForBadge(7);
    other.write({ 'README.md': 'theirs\n' });
    await editor.waitForBadge(8);
    await editor.showSourceControl();
    for (const name of ['weather-station', 'colleague']) await editor.row(name).waitFor();
    await editor.picture('several-light');
  });
});
