// Entry of the tests that run inside the extension host; the window has a demonstration open.

import { changesTests } from './changes';
import { contentTests } from './contents';
import { lookingBackTests } from './lookingBack';
import { runAll } from './runner';
import { viewTests } from './view';

export function run(): Promise<void> {
  return runAll([...viewTests, ...contentTests, ...lookingBackTests, ...changesTests]);
}
