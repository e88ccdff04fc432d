#!/usr/bin/python3
"""The page of `quen report` in a real browser, light and dark, with pictures.

    report_test.py PROGRAM PICTURES

The page of a project with hostile names and messages is opened in Chromium; a script that is put
behind its own presses and types as a person would and writes down what is there then.
"""

import html
import json
import pathlib
import re
import subprocess
import sys

from sandbox import Sandbox

HOSTILE = "</script><script>document.title='taken'</script><img src=x onerror=\"document.title='taken'\">"

# What is done in the page. `checks` gets a name and whether it holds.
STEPS = """
const checks = [];
const check = (name, holds) => checks.push([name, Boolean(holds)]);
const rows = id => [...document.querySelectorAll('#' + id + ' > table > tbody > tr, #' + id + ' > .scroll > table > tbody > tr')];
const text = id => document.getElementById(id).textContent;
const type = (id, value) => { const field = document.getElementById(id); field.value = value; field.dispatchEvent(new Event('input')); field.dispatchEvent(new Event('change')); };
const press = (node, key) => node.dispatchEvent(new KeyboardEvent('keydown', { key, bubbles: true }));
const WHOLE = data.revisions.length;
addEventListener('error', event => checks.push(['no error: ' + event.message, false]));

check('nothing came from the network', performance.getEntriesByType('resource').length === 0);
check('the colours are those that were asked for', matchMedia('(prefers-color-scheme: SCHEME)').matches);
check('no hostile text became a part of the page', document.title !== 'taken' && document.querySelectorAll('img').length === 0 && document.scripts.length === 3);
check('a hostile message is shown as it is', text('revisions').includes('onerror='));
check('every chart says what it shows', [...document.querySelectorAll('svg')].every(svg => svg.getAttribute('role') === 'img' && svg.getAttribute('aria-label').length > 10));
check('every field has a label', [...document.querySelectorAll('input, select')].every(field => field.labels.length === 1));
check('every table has a caption, but for the paths of one revision', [...document.querySelectorAll('section > div > table, .scroll > table')].every(table => table.caption));
check('all revisions are shown at first', text('shown') === 'All ' + WHOLE + ' revisions');
check('branches, their lanes and a merge are drawn', document.querySelectorAll('#branches line.lane').length === 3 && document.querySelectorAll('#branches path.merge').length === 1);
check('lines have ages', rows('ages').length > 0 && /^[1-9]/.test(text('ages-note')));
check('authors are counted', rows('authors').length === 3);

type('search', 'shout');
check('text is searched', rows('revisions').length === 1 && text('revisions').includes('Shout'));
type('search', 'src/main.c');
check('paths are searched', rows('revisions').length === 1);
type('search', 'nothing like this');
check('nothing found is said', text('revisions').includes('Nothing matches'));
document.getElementById('reset').click();
check('all are shown again', text('shown') === 'All ' + WHOLE + ' revisions');

press(rows('authors').find(row => row.textContent.startsWith('bob')), 'Enter');
check('an author is chosen with a key', rows('revisions').every(row => row.cells[2].textContent === 'bob') && document.getElementById('author').value !== '-1');
check('revisions of others are faded', document.querySelectorAll('#branches circle.faded').length > 0);
document.getElementById('reset').click();

type('from', '2024-03-01');
check('a time range is chosen', rows('revisions').length < WHOLE && rows('revisions').every(row => row.cells[1].textContent >= '2024-03-01'));
document.getElementById('reset').click();

const hit = document.querySelector('#activity .hit');
hit.setPointerCapture = () => {};
const box = hit.getBoundingClientRect();
const point = (kind, x) => hit.dispatchEvent(new PointerEvent(kind, { clientX: box.left + x * box.width, clientY: box.top + 5, bubbles: true, pointerId: 1 }));
point('pointerdown', 0.001);
point('pointermove', 0.3);
check('the tip tells of the period', !document.getElementById('tip').hidden && text('tip').includes('revision'));
point('pointerup', 0.3);
check('a dragged range is chosen', document.getElementById('from').value !== '' && rows('revisions').length < WHOLE && rows('revisions').length > 0);
document.getElementById('reset').click();

const names = () => rows('files').map(row => row.cells[0].textContent);
const before = names().join();
document.querySelector('#files th button').click();
check('a heading sorts', names().join() === [...names()].sort((a, b) => a.localeCompare(b)).join() && document.querySelector('#files th').getAttribute('aria-sort') === 'ascending');
rows('files').find(row => row.textContent.startsWith('trunk/a.c')).click();
check('a file chooses its revisions', rows('revisions').every(row => row.textContent.includes('trunk/a.c')));
document.getElementById('reset').click();
const colours = getComputedStyle(document.body);
check('the page has the scheme of the system', 'SCHEME' === (colours.backgroundColor.match(/[0-9]+/)[0] > 128 ? 'light' : 'dark'));
check('nothing is wider than the window', document.documentElement.scrollWidth <= innerWidth);
document.body.dataset.checks = JSON.stringify(checks);
"""


def make_project(sandbox):
    hooks = sandbox.root / "repository/hooks/pre-revprop-change"
    hooks.write_text("#!/bin/sh\n")
    hooks.chmod(0o755)
    sandbox.write("a.c", "one\ntwo\n")
    sandbox.write("src/main.c", "main\n")
    sandbox.write("<img src=x onerror=alert(1)>.txt", "x\n")
    sandbox.svn("add", "-q", "a.c", "src", "<img src=x onerror=alert(1)>.txt")
    sandbox.commit("First")
    sandbox.write("a.c", "one\nTWO\n")
    sandbox.commit("Shout", "bob")
    sandbox.svn("copy", "-q", "-m", "Branch", "--username", "bob", sandbox.url("trunk"), sandbox.url("branches/fix"))
    sandbox.svn("copy", "-q", "-m", "Tag", "--username", "alice", sandbox.url("trunk"), sandbox.url("tags/1.0"))
    other = sandbox.root / "fix"
    sandbox.svn("checkout", "-q", sandbox.url("branches/fix"), str(other))
    (other / "a.c").write_text("one\nTWO\nthree\n")
    sandbox.svn("commit", "-q", "-m", HOSTILE, "--username", "<b>mallory</b>", str(other))
    sandbox.svn("update", "-q")
    sandbox.svn("merge", "-q", "^/branches/fix")
    sandbox.commit("Merge fix")
    for revision in range(1, 8):
        sandbox.svn("propset", "-q", "--revprop", "-r", str(revision), "svn:date",
                    f"2024-0{revision}-15T10:00:00.000000Z", sandbox.url())


def browse(sandbox, page, scheme, *options):
    """Chromium's output; the profile is the sandbox's own."""
    dark = "0" if scheme == "dark" else "1"
    words = ["chromium", "--headless", "--no-sandbox", "--disable-gpu", "--hide-scrollbars",
             f"--blink-settings=preferredColorScheme={dark}", "--virtual-time-budget=3000",
             f"--user-data-dir={sandbox.root}/browser", "--window-size=1280,2200", *options, page.as_uri()]
    return sandbox.run(words, sandbox.root).stdout.decode()


def main(program, pictures):
    pictures = pathlib.Path(pictures).resolve()
    pictures.mkdir(parents=True, exist_ok=True)
    failures, count = [], 0
    with Sandbox(program) as sandbox:
        make_project(sandbox)
        ran = sandbox.quen("report", "--output", "page.html")
        if ran.returncode != 0:
            print(ran.stderr.decode())
            return 1
        page = sandbox.copy / "page.html"
        for scheme in ("light", "dark"):
            tried = sandbox.root / f"{scheme}.html"
            tried.write_text(page.read_text().replace(
                "</body>", f"<script>{STEPS.replace('SCHEME', scheme)}</script></body>"))
            found = re.search('data-checks="([^"]*)"', browse(sandbox, tried, scheme, "--dump-dom"))
            checks = json.loads(html.unescape(found.group(1))) if found else [["the page ran to its end", False]]
            count += len(checks)
            failures += [f"{scheme}: {name}" for name, holds in checks if not holds]
            picture = pictures / f"report-{scheme}.png"
            browse(sandbox, page, scheme, f"--screenshot={picture}")
            if not picture.exists():
                failures.append(f"{scheme}: there is no picture")
    print("\n".join(f"Not so: {failure}" for failure in failures) or f"{count} checks hold")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
