#!/usr/bin/python3
"""What a page of `quen report` holds, without a browser: the facts of a project with branches and
merges, and texts that a page could trip over.

    report_page_test.py PROGRAM BENCHMARKS

The project is that of Benchmarks/Commands/report.py, on a smaller scale.
"""

import json
import pathlib
import subprocess
import sys

from sandbox import Sandbox

REVISIONS, FILES = 1000, 60

failures = []


def check(name, holds, found=""):
    if not holds:
        failures.append(f"Not so: {name}{f': {found!r:.300}' if found != '' else ''}")


def facts_in(page):
    """The data of a page, as a browser takes it out."""
    start = page.index('<script type="application/json" id="data">')
    text = page[page.index(">", start) + 1:]
    return json.loads(text[:text.index("</script>")])


def load(sandbox, project):
    """The generated project, in a repository of its own."""
    place = sandbox.root / "large"
    subprocess.run(["svnadmin", "create", str(place)], check=True)
    with subprocess.Popen(["svnadmin", "load", "-q", "--no-flush-to-disk", str(place)],
                          stdin=subprocess.PIPE) as process:
        project.generate(process.stdin, REVISIONS, FILES)
        process.stdin.close()
    return f"file://{place}/trunk"


def check_whole(sandbox, url):
    ran = sandbox.quen("report", "-o", "large.html", "--blame", "3", "--json", url)
    check("a report is made", ran.returncode == 0, ran.stderr.decode())
    told = json.loads(ran.stdout)
    page = (sandbox.copy / "large.html").read_text()
    facts = facts_in(page)
    check("all revisions are there", [each["r"] for each in facts["revisions"]] == list(range(REVISIONS, 0, -1)))
    check("and all files of the trunk", facts["files"] == told["files"] == FILES, facts["files"])
    check("every branch", {each["name"] for each in facts["branches"]} == {"trunk", "work-500", "work-1000"},
          facts["branches"])
    check("every merge", [(each["r"], facts["branches"][each["from"]]["name"]) for each in facts["merges"]]
          == [(800, "work-500")], facts["merges"])
    check("as many ages as were asked for", len(facts["ages"]) == told["blamedFiles"] == 3)
    check("lines are counted", all(sum(count for _, count in each["lines"]) == 40 for each in facts["ages"]))
    check("what is missing is said", any("age of lines" in text for text in told["leftOut"]), told["leftOut"])
    return page, facts


def check_hostile(page, facts, project):
    messages = {each["m"] for each in facts["revisions"]}
    for text in project.HOSTILE:
        check("a hostile message is whole", text in messages, text)
    check("a hostile author is whole", "<b>\u202emallory" in facts["authors"], facts["authors"])
    start = page.index('id="data">')
    data = page[start + len('id="data">'):page.index("</script>", start)]
    check("no tag begins within the data", "<" not in data)
    check("the page is one whole", page.endswith("</html>\n") and page.count("</html>") == 1)


def check_limits(sandbox, url):
    ran = sandbox.quen("report", "-o", "-", "--limit", "10", "--blame", "0", url)
    facts = facts_in(ran.stdout.decode())
    check("a limit holds", len(facts["revisions"]) == 10)
    check("and is told", any(f"older than r{REVISIONS - 9}" in text for text in facts["leftOut"]), facts["leftOut"])
    check("no ages where none are wanted", facts["ages"] == [])


def check_hostile_paths(sandbox):
    names = ["</script>.txt", "quote\"'`.txt", "\U0001f680.txt", "\u202eright.txt", "line\u2028.txt", "a@b.txt"]
    for name in names:
        sandbox.write(f"dir/{name}", "x\n")
    sandbox.svn("add", "-q", "dir")
    sandbox.commit("Names")
    ran = sandbox.quen("report", "-o", "-")
    facts = facts_in(ran.stdout.decode())
    for name in names:
        check("a path is whole", f"trunk/dir/{name}" in facts["paths"], name)
        check("and has ages", f"trunk/dir/{name}" in [each["path"] for each in facts["ages"]], name)


def check_files(sandbox):
    """What is there is never lost, and nothing half is left."""
    sandbox.write("mine.html", "my own page\n")
    for words in (["-o", "mine.html"], ["-o", "link.html"]):
        link = sandbox.copy / "link.html"
        if not link.is_symlink():
            link.symlink_to("mine.html")
        ran = sandbox.quen("report", *words)
        check("what exists is refused", ran.returncode == 1, words)
        check("and the way is told", b"already exists; use --force to overwrite it." in ran.stderr, ran.stderr)
        check("and it is as it was", (sandbox.copy / "mine.html").read_text() == "my own page\n")
    before = sorted(path.name for path in sandbox.copy.iterdir())
    ran = sandbox.quen("report", "-o", "no/such/directory/page.html")
    check("where it cannot be written it fails", ran.returncode == 1 and ran.stderr != b"")
    ran = sandbox.quen("report", "-o", "new.html", sandbox.url("nowhere/trunk"))
    check("a project that is not there fails", ran.returncode == 1, ran.stderr)
    check("and leaves nothing", sorted(path.name for path in sandbox.copy.iterdir()) == before)
    ran = sandbox.quen("report", "--force", "-o", "mine.html")
    check("with --force it is replaced", ran.returncode == 0 and
          (sandbox.copy / "mine.html").read_text().startswith("<!DOCTYPE html>"))


def main(program, benchmarks):
    sys.path.insert(0, str(pathlib.Path(benchmarks).resolve()))
    import report as project  # noqa: E402

    with Sandbox(program) as sandbox:
        url = load(sandbox, project)
        check_hostile(*check_whole(sandbox, url), project)
        check_limits(sandbox, url)
        check_hostile_paths(sandbox)
        check_files(sandbox)
    print("\n".join(failures) or "The pages hold what they should")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
