'use strict';

// Everything that comes from a repository is put in as text, never as markup.

const SVG = 'http://www.w3.org/2000/svg';

function fill(node, attributes, children) {
  for (const [name, value] of Object.entries(attributes)) {
    if (typeof value === 'function') node.addEventListener(name, value);
    else if (value !== undefined && value !== false) node.setAttribute(name, value === true ? '' : value);
  }
  node.append(...children.filter(child => child !== null));
  return node;
}

const element = (name, attributes = {}, ...children) =>
  fill(document.createElement(name), attributes, children);
const drawn = (name, attributes = {}, ...children) =>
  fill(document.createElementNS(SVG, name), attributes, children);
const place = id => document.getElementById(id);

const numberText = number => number.toLocaleString('en');
const counted = (count, noun) => `${numberText(count)} ${noun}${count === 1 ? '' : 's'}`;
const day = seconds => seconds === null ? '' : new Date(seconds * 1000).toISOString().slice(0, 10);
const colour = index => `var(--c${index % 6})`;

function shortened(text, length) {
  const characters = Array.from(text);
  return characters.length > length ? characters.slice(0, length - 1).join('') + '…' : text;
}

// What is under the pointer or has the focus, in words.
const tip = {
  show(text, event) {
    const node = place('tip');
    node.textContent = text;
    node.hidden = false;
    const box = event.target.getBoundingClientRect();
    const x = event.clientX || box.left + box.width / 2;
    const y = event.clientY || box.top;
    node.style.left = `${Math.max(8, Math.min(x + 14, innerWidth - node.offsetWidth - 8))}px`;
    node.style.top = `${y + 18 + node.offsetHeight > innerHeight ? y - node.offsetHeight - 10 : y + 18}px`;
  },
  hide() { place('tip').hidden = true; },
};

const told = text => ({
  pointermove: event => tip.show(text, event),
  pointerleave: tip.hide,
  focus: event => tip.show(text, event),
  blur: tip.hide,
});

// A table whose rows are sorted by the heading that is pressed. A column has a title, the value that
// is sorted by, and what is shown where that is something else.
function sortableTable({ caption, columns, rows, sorted = 0, falling = true, onRow = null, rowName = null, selected = null }) {
  let [by, down] = [sorted, falling];
  const body = element('tbody');
  const compare = (one, other) => {
    const [a, b] = [columns[by].value(one), columns[by].value(other)];
    const order = typeof a === 'string' ? a.localeCompare(b) : (a ?? -1) - (b ?? -1);
    return down ? -order : order;
  };
  const cell = (column, row) => element('td', { class: column.kind || '' },
    column.show ? column.show(row) : String(column.value(row) ?? ''));
  const rowOf = row => {
    const press = event => {
      if (event.type === 'click' || event.key === 'Enter' || event.key === ' ') {
        event.preventDefault();
        onRow(row);
      }
    };
    const attributes = onRow
      ? { tabindex: 0, click: press, keydown: press, 'aria-label': rowName(row), 'aria-selected': String(Boolean(selected && selected(row))) }
      : {};
    return element('tr', attributes, ...columns.map(column => cell(column, row)));
  };
  const heads = columns.map((column, index) => {
    const head = element('th', { scope: 'col', class: column.kind || '' });
    head.append(column.title === '' ? '' : element('button', {
      type: 'button',
      click: () => { down = by === index ? !down : column.kind === 'number'; by = index; show(); },
    }, column.title));
    return head;
  });
  function show() {
    heads.forEach((head, index) => head.setAttribute('aria-sort', index !== by ? 'none' : down ? 'descending' : 'ascending'));
    body.replaceChildren(...[...rows].sort(compare).map(rowOf));
  }
  show();
  return element('table', {}, element('caption', { class: 'skip' }, caption), element('thead', {}, element('tr', {}, ...heads)), body);
}

// The same facts as a chart's, in words, for whoever does not see it.
const asTable = (caption, columns, rows) => element('details', {}, element('summary', {}, 'Show as a table'),
  element('div', { class: 'scroll' }, sortableTable({ caption, columns, rows, falling: false })));
