#!/usr/bin/env python3
"""Each task of a working day with svn and with quen: keystrokes, lines of output and time.

    Benchmarks/WorkingDay/run.py PROGRAM [PAGE]

Runs both on copies of the same project and writes the table into PAGE, or prints it. A row in which quen
takes more keys, lines or runs of the client, and for which no reason is given, is an error.
"""

import pathlib
import resource
import shutil
import statistics
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve()
sys.path.insert(0, str(HERE.parents[2] / "Tests/Scripts"))

from sandbox import Sandbox  # noqa: E402

ROUNDS = 5
EDITOR = {"SVN_EDITOR": "printf '*.log\\n' >"}

# The task, what is typed for svn and for quen (several commands with `; `), and why quen needs more
# where it does. `-` is a task that cannot be done.
TASKS = [
    ("See what has changed here", "svn st", "quen st", "one line more: how many items of each kind"),
    ("See the changes line by line", "svn di", "quen di", ""),
    ("See how much changed in each file", "svn di", "quen di --stat", "svn has no such thing: one counts by eye"),
    ("See what others have committed", "svn log -r BASE:HEAD", "quen incoming", "asks first which revision is here"),
    ("Get it", "svn up", "quen up", ""),
    ("Last five commits, a line each", "svn log -l 5", "quen log --oneline -5", "svn shows them in paragraphs alone"),
    ("Whole messages of the last five", "svn log -l 5", "quen log -5", ""),
    ("What a revision changed, and why", "svn log -v -c 3 ^/; svn di -c 3 ^/", "quen show 3", "one run more: where the repository begins"),
    ("Find the commits of a person", "svn log --search bob", "quen log --author bob", "svn searches messages and paths as well, so that bob in a message is found too"),
    ("Who changed which line", "svn ann greet.c", "quen ann greet.c", "one run more: the lines themselves, which are not in the client's report"),
    ("A file as it was", "svn cat -r 2 greet.c", "quen cat -r 2 greet.c", ""),
    ("A name with an @", "svn info icon@2x.txt@", "quen info icon@2x.txt", ""),
    ("What lies in the directory", "svn ls", "quen ls", ""),
    ("Rename a file", "svn mv greet.c hello.c", "quen mv greet.c hello.c", ""),
    ("Put new files under version control", "svn add notes.txt", "quen add notes.txt", ""),
    ("Put all that is new under version control", "svn add --force .", "quen add .", "looks first what is new, so that it can be shown and asked about"),
    ("Ignore logs as well", "svn pe svn:ignore .", "quen ignore '*.log'", "for svn the name is typed in the editor, not counted here; the list is read before and after, so that nothing is lost of one that is not text or that another program writes at the same time"),
    ("Commit", "svn ci -m Fix", "quen ci -m Fix", "looks first what is sent, and shows it in words"),
    ("Drop the changes of a file", "svn revert greet.c", "quen revert -y greet.c", "svn asks nothing and keeps nothing; quen looks what would be lost, asks unless told not to, and `quen undo` brings it back"),
    ("Get dropped changes back", "-", "quen undo", ""),
    ("Which branch is this", "svn info --show-item relative-url", "quen branch", "one run more: where trunk and branches lie"),
    ("Which branches are there", "svn ls ^/branches", "quen branches", "one line more, the trunk, and the last change of each; asks where they lie and which of them is here"),
    ("Begin a branch and go there", "svn cp -m Fix ^/trunk ^/branches/fix; svn sw ^/branches/fix", "quen branch create -m Fix fix; quen sw -y fix", "looks first where the branches lie, whether the name is free, and what here would be in the way on the branch"),
    ("Tag what is on the trunk", "svn cp -m Tag ^/trunk ^/tags/1.1", "quen tag -m Tag 1.1", "looks first where tags lie and whether the name is free: svn would put the copy into a tag that is there"),
    ("Which tags are there, and how old", "svn ls -v ^/tags", "quen tags", "one run more: where tags lie"),
    ("Take a commit back, here", "svn merge -c -3 .", "quen merge -y -c -3 trunk", "names the branch; -y because there are changes here, into which svn merges without a word"),
    ("Merge a branch", "svn revert -qR .; svn merge ^/branches/old", "quen revert -y .; quen merge old", "looks what would be lost and what the merge would meet; `quen undo` brings both back"),
]


def make_project(sandbox):
    sandbox.write("greet.c", "".join(f"line {i}\n" for i in range(200)))
    sandbox.write("icon@2x.txt", "x\n")
    for i in range(30):
        sandbox.write(f"src/part{i}.c", f"{i}\n")
    sandbox.svn("add", "-q", "greet.c", "icon@2x.txt@", "src")
    sandbox.commit("First files")
    for revision in range(20):
        sandbox.write(f"src/part{revision}.c", f"changed {revision}\n")
        sandbox.commit(f"Change part {revision}\n\nFor a reason that takes a line.", ["alice", "bob"][revision % 2])
    sandbox.svn("copy", "-q", "-m", "Branch", sandbox.url("trunk"), sandbox.url("branches/old"))
    sandbox.svn("copy", "-q", "-m", "Tag", sandbox.url("trunk"), sandbox.url("tags/1.0"))
    other = sandbox.root / "old"
    sandbox.svn("checkout", "-q", sandbox.url("branches/old"), str(other))
    (other / "src/part1.c").write_text("on the branch\n")
    sandbox.svn("commit", "-q", "-m", "On the branch", str(other))
    sandbox.svn("update", "-q")
    sandbox.svn("checkout", "-q", sandbox.url("trunk"), str(sandbox.root / "theirs"))
    (sandbox.root / "theirs/src/part2.c").write_text("theirs\n")
    sandbox.svn("commit", "-q", "-m", "Theirs", "--username", "bob", str(sandbox.root / "theirs"))
    sandbox.write("greet.c", "changed\n" + "".join(f"line {i}\n" for i in range(1, 200)))
    sandbox.write("src/part9.c", "changed here\n")
    sandbox.write("notes.txt", "n\n")
    for name in ("wc", "repository"):
        shutil.copytree(sandbox.root / name, sandbox.root / "kept" / name, symlinks=True)


def renew(sandbox, task):
    for name in ("wc", "repository"):
        shutil.rmtree(sandbox.root / name)
        shutil.copytree(sandbox.root / "kept" / name, sandbox.root / name, symlinks=True)
    if task == "Get dropped changes back":
        sandbox.quen("revert", "-y", "greet.c")
    if task == "Merge a branch":
        sandbox.svn("update", "-q")


def processor_time():
    """Of all programs that have been started from here, and what they have started."""
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    return used.ru_utime + used.ru_stime


def typed(sandbox, line, variables):
    """How many lines come of a line that is typed."""
    ran = subprocess.run(["bash", "-c", line.replace("; ", " && ")], cwd=sandbox.copy, stdin=subprocess.DEVNULL,
                         env=sandbox.environment(variables), capture_output=True, timeout=60)
    if ran.returncode not in (0, 3):  # 3: done, and something is to be looked at
        raise RuntimeError(f"{line}: {ran.stderr.decode()}")
    return ran.stdout.count(b"\n") + ran.stderr.count(b"\n")


def client_runs(sandbox, task, line):
    """How often the client is started."""
    record, client = sandbox.root / "runs", sandbox.root / "counting/svn"
    client.parent.mkdir(exist_ok=True)
    client.write_text(f"#!/bin/sh\necho >> {record}\nexec {shutil.which('svn')} \"$@\"\n")
    client.chmod(0o755)
    path = f"{client.parent}:{sandbox.environment()['PATH']}"
    record.write_text("")
    renew(sandbox, task)
    typed(sandbox, line, {**EDITOR, "PATH": path})
    return record.read_text().count("\n")


def tried(sandbox, task, line):
    """Keystrokes with the enter keys, lines of output, median milliseconds, runs of the client; nothing where it cannot be done."""
    if line == "-":
        return None
    keys = sum(len(part) + 1 for part in line.split("; "))
    times, lines = [], 0
    for _ in range(ROUNDS):
        renew(sandbox, task)
        before = processor_time()
        lines = typed(sandbox, line, EDITOR)
        times.append(processor_time() - before)
    return keys, lines, round(1000 * statistics.median(times)), client_runs(sandbox, task, line)


def row(task, svn, quen, facts, reason):
    cell = lambda number: "" if number is None else str(number)
    shown = lambda line: "not possible" if line == "-" else " ".join(f"`{part}`" for part in line.split("; "))
    values = [cell(None if fact is None else fact[i]) for i in range(4) for fact in facts]
    return f"| {task} | {shown(svn)} | {shown(quen)} | {' | '.join(values)} | {reason} |"


def line_count(line):
    return line.count("; ") + 1


def measured(sandbox):
    rows, unexplained = [], []
    for task, svn, quen, reason in TASKS:
        facts = [tried(sandbox, task, line) for line in (svn, quen)]
        rows.append((row(task, svn, quen, facts, reason), facts))
        isMore = facts[0] is not None and (
            facts[1][0] > facts[0][0] + line_count(svn) or facts[1][1] > facts[0][1] or facts[1][3] > facts[0][3])
        if isMore and not reason:
            unexplained.append(f"{task}: {facts}")
    return rows, unexplained


PAGE = """# A working day

Each task with `svn` and with `quen`, on copies of the same small project in a local repository: the keys
that are typed, the enter key included; the lines that are printed; and the time of the processor, that
of the clients included, as the median of {rounds} runs, in milliseconds (which holds up on a busy machine
as well); and how often the client is started. `Benchmarks/WorkingDay/run.py` makes this page. Without completion,
`quen` is one letter longer than `svn`; that alone is not held against a row.

| task | svn | quen | keys svn | quen | lines svn | quen | ms svn | quen | runs svn | quen | remark |
|---|---|---|---|---|---|---|---|---|---|---|---|
{rows}

In time `quen` cannot be better: it is that of the client that it starts, and its own, {own} ms more at the
median of the tasks that both can do with as many runs of the client. Where it takes a multiple it starts
the client several times, to look first: the remarks say what for. With a server far away some of these
are a round trip as well; what lies in the working copy is not asked of it.
"""


def main(program, page=None):
    with Sandbox(program) as sandbox:
        make_project(sandbox)
        rows, unexplained = measured(sandbox)
    own = statistics.median(facts[1][2] - facts[0][2] for _, facts in rows
                            if facts[0] is not None and facts[0][3] == facts[1][3])
    text = PAGE.format(rounds=ROUNDS, rows="\n".join(line for line, _ in rows), own=round(own))
    if page:
        pathlib.Path(page).write_text(text)
    else:
        print(text)
    for each in unexplained:
        print(f"More, and no reason is given: {each}", file=sys.stderr)
    return 1 if unexplained else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
