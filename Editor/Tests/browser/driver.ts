// The browser and the editor in it, as the journeys use them.

import { mkdirSync } from 'node:fs';
import { join } from 'node:path';
import { chromium, type Browser, type Locator, type Page } from 'playwright-core';

export type Theme = 'light' | 'dark';

export const themes: Readonly<Record<Theme, string>> = {
  light: 'Default Light Modern',
  dark: 'Default Dark Modern',
};

const size = { width: 1360, height: 860 };

export async function launch(): Promise<Browser> {
  return chromium.launch({
    executablePath: process.env.QUEN_CHROMIUM ?? '/usr/bin/chromium',
    args: ['--no-sandbox', '--disable-dev-shm-usage'],
  });
}

export class Editor {
  private constructor(
    readonly page: Page,
    private readonly pictures: string,
  ) {}

  static async open(
    browser: Browser,
    address: string,
    pictures: string,
    language = 'en',
  ): Promise<Editor> {
    const context = await browser.newContext({ viewport: size, locale: language });
    const page = await context.newPage();
    // What a pack of the editor's own texts would set; extensions follow it.
    await page.addInitScript((name) => {
      if (name !== 'en') Object.assign(globalThis, { _VSCODE_NLS_LANGUAGE: name });
    }, language);
    page.setDefaultTimeout(30_000);
    await page.goto(address);
    await page.waitForSelector('.monaco-workbench .part.statusbar');
    mkdirSync(pictures, { recursive: true });
    return new Editor(page, pictures);
  }

  async close(): Promise<void> {
    await this.page.context().close();
  }

  /** Runs a command of the palette by its whole title. */
  async command(title: string): Promise<void> {
    await this.page.keyboard.press('F1');
    const input = this.page.locator('.quick-input-filter input');
    await input.fill(`>${title}`);
    await this.page
      .locator('.quick-input-list .monaco-list-row')
      .filter({ hasText: title })
      .first()
      .click();
  }

  async showSourceControl(): Promise<void> {
    await this.page.keyboard.press('Control+Shift+G');
    await this.page
      .locator('.part.sidebar .title-label', { hasText: 'Source Control' })
      .first()
      .waitFor();
  }

  /** A row of the source control view whose accessible name holds the text. */
  row(text: string): Locator {
    return this.page.locator(`.scm-view .monaco-list-row[aria-label*="${text}"]`).first();
  }

  async badge(): Promise<string> {
    const badge = this.page.locator(
      '.activitybar .action-item:has(.codicon-source-control-view-icon) .badge-content',
    );
    return (await badge.first().textContent()) ?? '';
  }

  /** Waits until the badge counts so much. */
  async waitForBadge(count: number): Promise<void> {
    await this.page
      .locator('.activitybar .action-item:has(.codicon-source-control-view-icon) .badge-content', {
        hasText: new RegExp(`^${count}$`),
      })
      .first()
      .waitFor();
  }

  async type(text: string): Promise<void> {
    await this.page.locator('.scm-editor .monaco-editor').first().click();
    await this.page.keyboard.type(text);
  }

  toast(text: string): Locator {
    return this.page.locator('.notification-toast', { hasText: text });
  }

  async picture(name: string): Promise<void> {
    await this.page.mouse.move(700, 600);
    await this.page.screenshot({ path: join(this.pictures, `${name}.png`) });
  }
}
