const FILES_SHOWN = 100;
const REVISIONS_STEP = 100;
let revisionsShown = REVISIONS_STEP;

function showFiles(list) {
  const facts = new Map();
  for (const revision of list) {
    for (const [path] of revision.changes) {
      // The name of a directory ends in a slash.
      if (data.paths[path].endsWith('/')) continue;
      const fact = facts.get(path) || { path, count: 0, authors: new Set(), last: 0 };
      fact.count++;
      fact.authors.add(revision.author);
      fact.last = Math.max(fact.last, revision.time || 0);
      facts.set(path, fact);
    }
  }
  const rows = [...facts.values()].sort((one, other) => other.count - one.count).slice(0, FILES_SHOWN);
  const table = sortableTable({
    caption: 'Files that change most', sorted: 1,
    columns: [
      { title: 'Path', value: row => data.paths[row.path] },
      { title: 'Changes', kind: 'number', value: row => row.count, show: row => numberText(row.count) },
      { title: 'Authors', kind: 'number', value: row => row.authors.size },
      { title: 'Last', kind: 'short', value: row => row.last, show: row => row.last ? day(row.last) : '' },
    ],
    rows, onRow: row => choose({ text: choice.text === data.paths[row.path] ? '' : data.paths[row.path] }),
    rowName: row => `${data.paths[row.path]}, ${counted(row.count, 'change')}: show only its revisions`,
    selected: row => choice.text === data.paths[row.path],
  });
  place('files').replaceChildren(rows.length ? element('div', { class: 'scroll' }, table) : noneChosen());
}

// How many of the lines of today were changed last in each year, or month of a young project.
function showAges() {
  const lines = data.ages.flatMap(file => file.lines);
  const total = lines.reduce((sum, each) => sum + each[1], 0);
  place('ages-note').textContent = total === 0 ? '' : `${counted(total, 'line')} of ${counted(data.ages.length, 'file')}, by the date of their last change`;
  if (total === 0) return place('ages').replaceChildren(element('p', { class: 'none' }, 'No lines were looked at.'));
  const length = lastTime - firstTime > 3 * 365 * DAY ? 4 : 7;
  const counts = new Map();
  for (const [number, count] of lines) {
    const revision = byNumber.get(number);
    const key = revision && revision.time !== null ? day(revision.time).slice(0, length) : 'older';
    counts.set(key, (counts.get(key) || 0) + count);
  }
  const rows = [...counts].map(([period, count]) => ({ period, count }));
  const most = Math.max(...rows.map(row => row.count));
  const table = sortableTable({
    caption: 'Lines by the date of their last change', sorted: 0,
    columns: [
      { title: length === 4 ? 'Year' : 'Month', kind: 'short', value: row => row.period },
      { title: '', kind: 'meter', value: row => row.count, show: row => meterOf(row.count, most) },
      { title: 'Lines', kind: 'number', value: row => row.count, show: row => numberText(row.count) },
      { title: 'Share', kind: 'number', value: row => row.count, show: row => `${(100 * row.count / total).toFixed(1)} %` },
    ], rows,
  });
  place('ages').replaceChildren(element('div', { class: 'scroll' }, table), agesOfFiles());
  sizeMeters(place('ages'));
}

function medianTime(file) {
  const times = file.lines.map(([number, count]) => [(byNumber.get(number) || { time: firstTime }).time || firstTime, count]).sort((one, other) => one[0] - other[0]);
  let rest = times.reduce((sum, each) => sum + each[1], 0) / 2;
  for (const [time, count] of times) if ((rest -= count) <= 0) return time;
  return null;
}

const agesOfFiles = () => element('details', {}, element('summary', {}, 'Files, the oldest first'), element('div', { class: 'scroll' }, sortableTable({
  caption: 'Age of files', sorted: 2, falling: false,
  columns: [
    { title: 'Path', value: file => file.path },
    { title: 'Lines', kind: 'number', value: file => file.lines.reduce((sum, each) => sum + each[1], 0) },
    { title: 'Median', kind: 'short', value: file => medianTime(file), show: file => day(medianTime(file)) },
  ], rows: data.ages,
})));

function showRevisions(list) {
  const rows = [...list].sort((one, other) => other.number - one.number);
  const body = element('tbody', {}, ...rows.slice(0, revisionsShown).map(each => element('tr', {},
    element('td', { class: 'number' }, `r${each.number}`),
    element('td', { class: 'short' }, day(each.time)),
    element('td', {}, authorName(each.author)),
    element('td', { class: 'short' }, each.branch === NEVER ? '' : shortened(data.branches[each.branch].name, 24)),
    element('td', { class: 'message' }, each.message, pathsOf(each)),
    element('td', { class: 'number' }, numberText(each.size)))));
  const head = element('thead', {}, element('tr', {}, ...[['', 'number'], ['Date', ''], ['Author', ''], ['Branch', ''], ['Message', 'message'], ['Paths', 'number']]
    .map(([title, kind]) => element('th', { scope: 'col', class: kind }, title || 'Revision'))));
  const more = rows.length > revisionsShown
    ? element('button', { class: 'more', type: 'button', click: () => { revisionsShown += REVISIONS_STEP; showRevisions(chosen()); } },
      `Show ${numberText(Math.min(REVISIONS_STEP, rows.length - revisionsShown))} more of ${numberText(rows.length - revisionsShown)}`)
    : null;
  place('revisions').replaceChildren(rows.length ? element('table', {}, element('caption', { class: 'skip' }, 'Revisions, the youngest first'), head, body) : noneChosen(), ...[more].filter(Boolean));
}

const WORDS = { A: 'added', D: 'deleted', M: 'modified', R: 'replaced' };
const pathsOf = revision => revision.changes.length === 0 ? '' : element('details', {}, element('summary', {}, counted(revision.changes.length, 'path')),
  element('table', {}, element('tbody', {}, ...revision.changes.map(([path, action]) =>
    element('tr', {}, element('td', { class: 'short' }, WORDS[action] || action), element('td', {}, data.paths[path]))))));

function showTotals() {
  place('title').textContent = data.title;
  document.title = `${data.title}: project report`;
  place('subtitle').textContent = `${data.url}, as of ${data.generated.slice(0, 10)}`;
  const span = timed.length ? `${day(firstTime)} to ${day(lastTime)}` : '';
  const totals = [['Revisions', revisions.length], ['Authors', data.authors.length], ['Files now', data.files], ['Branches', data.branches.length], ['Merges', data.merges.length]];
  place('totals').replaceChildren(...totals.map(([name, count]) => element('div', {}, element('dt', {}, name), element('dd', {}, numberText(count)))));
  place('totals').title = span;
  place('left-out').hidden = data.leftOut.length === 0;
  place('left-out').querySelector('ul').replaceChildren(...data.leftOut.map(text => element('li', {}, text)));
  const names = data.authors.map((name, index) => ({ name, index })).sort((one, other) => one.name.localeCompare(other.name));
  place('author').replaceChildren(element('option', { value: NEVER }, 'All'), ...names.map(each => element('option', { value: each.index }, each.name)));
}

const fieldDay = seconds => seconds === null ? '' : day(seconds);

function choose(changes) {
  Object.assign(choice, changes);
  revisionsShown = REVISIONS_STEP;
  place('search').value = choice.text;
  place('author').value = String(choice.author);
  place('from').value = fieldDay(choice.from);
  place('to').value = choice.to === null ? '' : day(choice.to - 1);
  show();
}

function show() {
  const list = chosen();
  place('shown').textContent = list.length === revisions.length ? `All ${counted(list.length, 'revision')}` : `${numberText(list.length)} of ${counted(revisions.length, 'revision')}`;
  showActivity();
  showAuthors(list);
  showSizes(list);
  showBranches(list);
  showFiles(list);
  showRevisions(list);
}

const secondsOf = text => text === '' ? null : Date.parse(`${text}T00:00:00Z`) / 1000;

function listen() {
  place('filters').addEventListener('submit', event => event.preventDefault());
  place('filters').addEventListener('reset', event => { event.preventDefault(); choose({ text: '', author: NEVER, from: null, to: null }); });
  place('search').addEventListener('input', () => { choice.text = place('search').value; revisionsShown = REVISIONS_STEP; show(); });
  place('author').addEventListener('change', () => choose({ author: Number(place('author').value) }));
  place('from').addEventListener('change', () => choose({ from: secondsOf(place('from').value) }));
  place('to').addEventListener('change', () => {
    const start = secondsOf(place('to').value);
    choose({ to: start === null ? null : start + DAY });
  });
  addEventListener('keydown', event => { if (event.key === 'Escape') tip.hide(); });
}

showTotals();
listen();
showAges();
show();
