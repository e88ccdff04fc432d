// Branches as lanes over the revisions: where each began, what was merged, where it ended.

const LANE = 30;
const LANES_SHOWN = 40;

function lanes() {
  const seen = new Map();
  for (const each of revisions) {
    if (each.branch === NEVER) continue;
    const lane = seen.get(each.branch) || { branch: each.branch, first: each.number, last: each.number, count: 0 };
    seen.set(each.branch, { ...lane, first: Math.min(lane.first, each.number), last: Math.max(lane.last, each.number), count: lane.count + 1 });
  }
  const all = [...seen.values()].sort((one, other) => (one.branch === 0 ? -1 : other.branch === 0 ? 1 : other.last - one.last));
  return all.slice(0, LANES_SHOWN);
}

function showBranches(list) {
  const shown = lanes();
  const node = place('branches');
  if (shown.length === 0) return node.replaceChildren(element('p', { class: 'none' }, 'No revision lies on a branch.'));
  const rowOf = new Map(shown.map((lane, row) => [lane.branch, row]));
  const left = 150;
  const [first, last] = [Math.min(...shown.map(lane => lane.first)), Math.max(...shown.map(lane => lane.last))];
  const xOf = number => left + 10 + (WIDTH - left - 30) * (last === first ? 0.5 : (number - first) / (last - first));
  const yOf = branch => 16 + LANE * rowOf.get(branch);
  const isChosen = new Set(list.map(each => each.number));
  const name = branch => data.branches[branch].name;
  const parts = shown.flatMap((lane, row) => {
    const facts = data.branches[lane.branch];
    const [y, end] = [yOf(lane.branch), lane.branch === 0 ? last : facts.deleted ?? lane.last];
    const origin = facts.from !== NEVER && rowOf.has(facts.from) && facts.created !== null;
    return [
      drawn('text', { x: left - 12, y: y + 4, 'text-anchor': 'end' }, shortened(facts.name, 22), drawn('title', {}, facts.name)),
      drawn('line', { class: 'lane', stroke: colour(row), x1: xOf(lane.first), x2: xOf(end), y1: y, y2: y }),
      origin ? drawn('path', { class: 'lane', stroke: colour(row), d: curve(xOf(Math.max(first, facts.fromRevision ?? facts.created)), yOf(facts.from), xOf(facts.created), y) }) : null,
    ];
  });
  const merges = data.merges.filter(each => rowOf.has(each.into) && rowOf.has(each.from)).map(each => drawn('path', {
    class: 'merge', stroke: colour(rowOf.get(each.from)),
    d: curve(xOf(each.of), yOf(each.from), xOf(each.r), yOf(each.into)),
    ...told(`r${each.r}: ${name(each.from)} merged into ${name(each.into)}`),
  }));
  const dots = thinned(revisions.filter(each => rowOf.has(each.branch)), xOf).map(each => drawn('circle', {
    class: isChosen.has(each.number) ? 'dot' : 'dot faded', cx: xOf(each.number), cy: yOf(each.branch), r: 4.5, fill: colour(rowOf.get(each.branch)),
    ...told(`r${each.number}  ${authorName(each.author)}  ${day(each.time)}\n${shortened(each.message, 200)}`),
    click: () => choose({ text: `r${each.number}` }),
  }));
  const height = 16 + LANE * shown.length;
  const svg = drawn('svg', { viewBox: `0 0 ${WIDTH} ${height + 20}`, role: 'img',
    'aria-label': `${counted(shown.length, 'branch').replace('branchs', 'branches')} and ${counted(data.merges.length, 'merge')}; the table below lists them.` },
    ...parts.filter(part => part !== null), ...merges, ...dots,
    drawn('text', { x: xOf(first), y: height + 10 }, `r${first}`), drawn('text', { x: xOf(last), y: height + 10, 'text-anchor': 'end' }, `r${last}`));
  node.replaceChildren(element('div', { class: 'scroll' }, svg), legend(), tableOfBranches(shown));
}

const curve = (x1, y1, x2, y2) => `M${x1},${y1}C${(x1 + x2) / 2},${y1} ${(x1 + x2) / 2},${y2} ${x2},${y2}`;

// Dots that would cover each other say nothing: of each lane and place the last one.
function thinned(list, xOf) {
  const kept = new Map();
  for (const each of list) kept.set(`${each.branch}/${Math.round(xOf(each.number) / 3)}`, each);
  return [...kept.values()];
}

const legend = () => element('ul', { class: 'legend' },
  element('li', {}, element('i'), 'branch, from where it was copied'),
  element('li', {}, element('i', { class: 'dashed' }), 'merge'),
  element('li', {}, 'a dot is a revision; a click on it shows it alone'));

function tableOfBranches(shown) {
  const mergesInto = branch => data.merges.filter(each => each.into === branch).map(each => `r${each.r} (${data.branches[each.from].name})`).join(', ');
  return asTable('Branches', [
    { title: 'Branch', value: lane => data.branches[lane.branch].name },
    { title: 'Copied from', value: lane => {
      const facts = data.branches[lane.branch];
      return facts.from === NEVER ? '' : `${data.branches[facts.from].name} r${facts.fromRevision ?? '?'}`;
    } },
    { title: 'Revisions', kind: 'number', value: lane => lane.count },
    { title: 'First', kind: 'number', value: lane => lane.first, show: lane => `r${lane.first}` },
    { title: 'Last', kind: 'number', value: lane => lane.last, show: lane => `r${lane.last}` },
    { title: 'Deleted', kind: 'number', value: lane => data.branches[lane.branch].deleted, show: lane => data.branches[lane.branch].deleted === null ? '' : `r${data.branches[lane.branch].deleted}` },
    { title: 'Merged into it', value: lane => mergesInto(lane.branch) },
  ], shown);
}
