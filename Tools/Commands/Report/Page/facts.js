// What is in the page, and what of it is chosen.

const data = JSON.parse(place('data').textContent);

const NEVER = -1;
const choice = { text: '', author: NEVER, from: null, to: null };

const revisions = data.revisions.map(each => ({
  number: each.r, time: each.t, author: each.a, message: each.m, changes: each.p, size: each.n, branch: each.b,
  words: (each.m + '\n' + each.p.map(change => data.paths[change[0]]).join('\n')).toLowerCase(),
}));
const timed = revisions.filter(each => each.time !== null);
const byNumber = new Map(revisions.map(each => [each.number, each]));
const firstTime = timed.reduce((least, each) => Math.min(least, each.time), Infinity);
const lastTime = timed.reduce((most, each) => Math.max(most, each.time), -Infinity);

const authorName = index => index === NEVER ? '(no author)' : data.authors[index];

function matchesText(revision) {
  const text = choice.text.trim().toLowerCase();
  return text === '' || `r${revision.number}` === text || revision.words.includes(text) ||
    authorName(revision.author).toLowerCase().includes(text);
}

const inRange = revision => (choice.from === null || (revision.time !== null && revision.time >= choice.from)) &&
  (choice.to === null || (revision.time !== null && revision.time < choice.to));
const byChosenAuthor = revision => choice.author === NEVER || revision.author === choice.author;

// What the chart of the activity shows does not depend on the time that is chosen in it.
const chosenAtAnyTime = () => revisions.filter(each => byChosenAuthor(each) && matchesText(each));
const chosen = () => chosenAtAnyTime().filter(inRange);

function countedBy(list, keysOf) {
  const counts = new Map();
  for (const each of list) for (const key of keysOf(each)) counts.set(key, (counts.get(key) || 0) + 1);
  return counts;
}

const DAY = 86400;

// Steps of time that make neither a fence nor three lone bars.
function stepsOfTime() {
  const days = Math.max(1, (lastTime - firstTime) / DAY);
  const kind = days <= 70 ? 'day' : days <= 500 ? 'week' : days <= 3700 ? 'month' : days <= 15000 ? 'quarter' : 'year';
  const starts = [];
  const date = new Date(firstTime * 1000);
  date.setUTCHours(0, 0, 0, 0);
  if (kind === 'week') date.setUTCDate(date.getUTCDate() - (date.getUTCDay() + 6) % 7);
  if (kind === 'month' || kind === 'quarter' || kind === 'year') date.setUTCDate(1);
  if (kind === 'quarter') date.setUTCMonth(date.getUTCMonth() - date.getUTCMonth() % 3);
  if (kind === 'year') date.setUTCMonth(0);
  while (date.getTime() / 1000 <= lastTime) {
    starts.push(date.getTime() / 1000);
    if (kind === 'day') date.setUTCDate(date.getUTCDate() + 1);
    if (kind === 'week') date.setUTCDate(date.getUTCDate() + 7);
    if (kind === 'month') date.setUTCMonth(date.getUTCMonth() + 1);
    if (kind === 'quarter') date.setUTCMonth(date.getUTCMonth() + 3);
    if (kind === 'year') date.setUTCFullYear(date.getUTCFullYear() + 1);
  }
  return { kind, starts, end: date.getTime() / 1000 };
}
