// Journeys of a person, each in an editor of its own. The pictures that they make are looked at by
// people; those in the README are among them.

import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import type { Browser } from 'playwright-core';
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

test('a folder that is no working copy offers a checkout', bound, async () => {
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
