// Entry of the tests that run inside the extension host; the window has a demonstration open.

import { attributeTests } from './attributes';
import { bringingInTests } from './bringingIn';
import { changesTests } from './changes';
import { comparingTests } from './comparing';
import { contentTests } from './contents';
import { lookingBackTests } from './lookingBack';
import { runAll } from './runner';
import { signingInTests } from './signingIn';
import { upkeepTests } from './upkeep';
import { viewTests } from './view';

export function run(): Promise<void> {
  return runAll([
    ...viewTests,
    ...contentTests,
    ...lookingBackTests,
    ...comparingTests,
    ...attributeTests,
    ...changesTests,
    ...upkeepTests,
    ...bringingInTests,
    ...signingInTests,
  ]);
}
