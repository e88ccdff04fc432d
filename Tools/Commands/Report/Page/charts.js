const WIDTH = 1000;

// The period that a moment lies in.
function stepAt(steps, time) {
  let [low, high] = [0, steps.starts.length - 1];
  while (low < high) {
    const middle = Math.ceil((low + high) / 2);
    if (steps.starts[middle] <= time) low = middle; else high = middle - 1;
  }
  return low;
}

function niceTop(most) {
  const unit = 10 ** Math.floor(Math.log10(Math.max(most, 1)));
  return [1, 2, 5, 10].map(each => each * unit).find(each => each >= most);
}

function yAxis(top, height, left, width) {
  return [0, 0.5, 1].filter(part => Number.isInteger(top * part)).flatMap(part => {
    const y = height - height * part;
    return [drawn('line', { class: 'axis', x1: left, x2: width, y1: y, y2: y }),
      drawn('text', { x: left - 6, y: y + 4, 'text-anchor': 'end' }, numberText(top * part))];
  });
}

const stepName = (steps, index) => {
  const start = day(steps.starts[index]);
  return steps.kind === 'day' ? start : steps.kind === 'week' ? `Week of ${start}`
    : steps.kind === 'month' ? start.slice(0, 7) : steps.kind === 'year' ? start.slice(0, 4)
      : `${start.slice(0, 4)} Q${1 + Math.floor((Number(start.slice(5, 7)) - 1) / 3)}`;
};

function timeAxis(steps, xOf, y) {
  const every = Math.max(1, Math.ceil(steps.starts.length / 9));
  return steps.starts.filter((_, index) => index % every === 0).map(start =>
    drawn('text', { x: xOf(start), y }, steps.kind === 'day' || steps.kind === 'week' ? day(start)
      : steps.kind === 'year' ? day(start).slice(0, 4) : day(start).slice(0, 7)));
}

function showActivity() {
  const node = place('activity');
  if (timed.length === 0) return node.replaceChildren(element('p', { class: 'none' }, 'No revision has a date.'));
  const steps = stepsOfTime();
  const [left, height] = [44, 150];
  const counts = new Array(steps.starts.length).fill(0);
  for (const each of chosenAtAnyTime()) if (each.time !== null) counts[stepAt(steps, each.time)]++;
  const top = niceTop(Math.max(...counts));
  const xOf = time => left + (WIDTH - left) * (time - steps.starts[0]) / (steps.end - steps.starts[0]);
  const endOf = index => index + 1 < steps.starts.length ? steps.starts[index + 1] : steps.end;
  const bars = counts.map((count, index) => {
    const [x, end] = [xOf(steps.starts[index]), xOf(endOf(index))];
    const isOut = (choice.from !== null && endOf(index) <= choice.from) || (choice.to !== null && steps.starts[index] >= choice.to);
    return drawn('rect', { class: isOut ? 'bar out' : 'bar', x: x + 0.5, width: Math.max(1, end - x - 1.5), y: height - height * count / top, height: height * count / top });
  });
  const svg = drawn('svg', { viewBox: `0 -8 ${WIDTH} ${height + 32}`, role: 'img',
    'aria-label': `${counted(counts.reduce((sum, each) => sum + each, 0), 'revision')} from ${day(firstTime)} to ${day(lastTime)}; at most ${Math.max(...counts)} in a ${steps.kind}.` },
    ...yAxis(top, height, left, WIDTH), ...bars, ...timeAxis(steps, xOf, height + 18));
  makeBrush(svg, steps, counts, { left, height, xOf, endOf });
  node.replaceChildren(svg, asTable(`Revisions in each ${steps.kind}`, [
    { title: 'Period', value: each => stepName(steps, each.index) },
    { title: 'Revisions', kind: 'number', value: each => each.count },
  ], counts.map((count, index) => ({ count, index })).filter(each => each.count > 0)));
}

// A time range is dragged; a click takes one period. The fields above do the same by keys.
function makeBrush(svg, steps, counts, { left, height, xOf, endOf }) {
  const brush = drawn('rect', { class: 'brush', y: 0, height, x: left, width: 0 });
  const hit = drawn('rect', { class: 'hit', x: left, y: 0, width: WIDTH - left, height });
  let started = null;
  const indexAt = event => {
    const box = svg.getBoundingClientRect();
    const x = (event.clientX - box.left) / box.width * WIDTH;
    const time = steps.starts[0] + (x - left) / (WIDTH - left) * (steps.end - steps.starts[0]);
    return stepAt(steps, time);
  };
  const rangeTo = index => [Math.min(started, index), Math.max(started, index)];
  hit.addEventListener('pointerdown', event => { started = indexAt(event); hit.setPointerCapture(event.pointerId); });
  hit.addEventListener('pointermove', event => {
    const index = indexAt(event);
    tip.show(`${stepName(steps, index)}\n${counted(counts[index], 'revision')}`, event);
    if (started === null) return;
    const [first, last] = rangeTo(index);
    brush.setAttribute('x', xOf(steps.starts[first]));
    brush.setAttribute('width', xOf(endOf(last)) - xOf(steps.starts[first]));
  });
  hit.addEventListener('pointerup', event => {
    if (started === null) return;
    const [first, last] = rangeTo(indexAt(event));
    started = null;
    tip.hide();
    choose({ from: steps.starts[first], to: endOf(last) });
  });
  hit.addEventListener('pointerleave', tip.hide);
  svg.append(brush, hit);
}

const meterOf = (part, most) => element('span', { style: '' , class: 'fill', 'data-part': most === 0 ? 0 : part / most });
function sizeMeters(node) {
  for (const meter of node.querySelectorAll('.fill')) meter.style.width = `${100 * Number(meter.dataset.part)}%`;
}

function showAuthors(list) {
  const counts = countedBy(list, each => [each.author]);
  const last = new Map();
  for (const each of list) last.set(each.author, Math.max(last.get(each.author) || 0, each.time || 0));
  const rows = [...counts].map(([author, count]) => ({ author, count, last: last.get(author) }));
  const most = Math.max(0, ...rows.map(row => row.count));
  const table = sortableTable({
    caption: 'Authors', sorted: 2,
    columns: [
      { title: 'Author', value: row => authorName(row.author) },
      { title: '', kind: 'meter', value: row => row.count, show: row => meterOf(row.count, most) },
      { title: 'Revisions', kind: 'number', value: row => row.count, show: row => numberText(row.count) },
      { title: 'Last', kind: 'short', value: row => row.last, show: row => row.last ? day(row.last) : '' },
    ],
    rows, onRow: row => choose({ author: choice.author === row.author ? NEVER : row.author }),
    rowName: row => `${authorName(row.author)}, ${counted(row.count, 'revision')}: show only these`,
    selected: row => row.author !== NEVER && row.author === choice.author,
  });
  place('authors').replaceChildren(rows.length ? element('div', { class: 'scroll' }, table) : noneChosen());
  sizeMeters(place('authors'));
}

const noneChosen = () => element('p', { class: 'none' }, 'Nothing matches the filters.');

const CLASSES = [[1, 1], [2, 3], [4, 7], [8, 15], [16, 31], [32, 63], [64, 127], [128, Infinity]];

function showSizes(list) {
  const rows = CLASSES.map(([least, most]) => ({
    name: most === Infinity ? `${least} or more` : least === most ? `${least}` : `${least} to ${most}`,
    count: list.filter(each => each.size >= least && each.size <= most).length,
  }));
  const most = Math.max(1, ...rows.map(row => row.count));
  place('sizes').replaceChildren(sortableTableWithoutSort('Revisions by the number of changed paths', rows, most));
  sizeMeters(place('sizes'));
}

// The order of the classes says more than any other.
const sortableTableWithoutSort = (caption, rows, most) => element('table', {}, element('caption', { class: 'skip' }, caption),
  element('thead', {}, element('tr', {}, element('th', { scope: 'col' }, 'Paths'), element('th', { scope: 'col' }), element('th', { scope: 'col', class: 'number' }, 'Revisions'))),
  element('tbody', {}, ...rows.map(row => element('tr', {}, element('td', { class: 'short' }, row.name),
    element('td', { class: 'meter' }, meterOf(row.count, most)), element('td', { class: 'number' }, numberText(row.count))))));
