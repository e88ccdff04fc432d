#!/usr/bin/python3
"""What a person sees: the commands in a terminal of 40, 80 and 250 columns, compared with files.

    terminal_test.py PROGRAM GOLDEN            compares
    terminal_test.py PROGRAM GOLDEN --update   writes the files anew, to be looked at

Colours are written as `{32m}`. Dates and the sandbox's place are replaced by texts of the same width.
"""

import fcntl
import os
import pathlib
import pty
import re
import shutil
import struct
import sys
import termios

from sandbox import Sandbox

COMMANDS = [
    ["status"],
    ["status", "-u"],
    ["log"],
    ["log", "--oneline"],
    ["log", "--graph"],
    ["log", "--graph", "--oneline"],
    ["blame", "greet.c"],
    ["blame", "--ignore-rev", "3", "greet.c"],
    ["branches"],
    ["tags"],
    ["diff", "--stat"],
    ["list", "-v"],
    ["info", "greet.c"],
    ["incoming"],
    ["help"],
    ["help", "log"],
]
WIDTHS = [40, 80, 250]

# Each at 80 columns: a name, the commands, and the variables.
VARIANTS = [
    ("dark", [["status"], ["log", "--oneline"], ["log", "--graph", "-q"], ["diff"], ["blame", "greet.c"]],
     {"COLORFGBG": "15;0"}),
    ("light", [["status"], ["log", "--oneline"], ["diff"], ["blame", "greet.c"]], {"COLORFGBG": "0;15"}),
    ("dumb", [["status"], ["log"], ["diff"]], {"TERM": "dumb"}),
    ("no-colour", [["status"], ["log"], ["diff"]], {"NO_COLOR": "1"}),
    ("c-locale", [["status"], ["log"], ["log", "--oneline"], ["log", "--graph", "--oneline"], ["blame", "greet.c"], ["list", "-v"]],
     {"LC_ALL": "C", "NO_COLOR": "1"}),
]


def make_project(sandbox):
    hook = sandbox.root / "repository/hooks/pre-revprop-change"
    hook.write_text("#!/bin/sh\n")
    hook.chmod(0o755)
    sandbox.write("greet.c", "#include <stdio.h>\n\nint main(void) {\n    puts(\"hello\");\n}\n")
    sandbox.write("Übersicht der Grüße.txt", "ü\n")
    sandbox.write("a/very/long/way/down/to/a/file/with/a/name/that/does/not/fit.txt", "x\n" * 700)
    sandbox.svn("add", "-q", "greet.c", "Übersicht der Grüße.txt", "a")
    sandbox.commit("First files")
    sandbox.write("greet.c", "#include <stdio.h>\n\nint main(void) {\n    puts(\"Hello, world\");\n}\n")
    sandbox.commit("Greet the world, with a first line of the message that is longer than most terminals "
                   "are wide, so that it is cut where one line is all there is\n\nNobody is to feel left out.",
                   "bartholomew")
    sandbox.svn("copy", "-q", "-m", "Branch", "--username", "alice", sandbox.url("trunk"), sandbox.url("branches/languages"))
    sandbox.svn("copy", "-q", "-m", "Tag", "--username", "alice", sandbox.url("trunk"), sandbox.url("tags/1.0"))
    sandbox.svn("update", "-q")
    other = sandbox.root / "other"
    sandbox.svn("checkout", "-q", sandbox.url("trunk"), str(other))
    (other / "Übersicht der Grüße.txt").write_text("ü\nö\n")
    sandbox.svn("commit", "-q", "-m", "Mehr Grüße", "--username", "bob", str(other))
    sandbox.svn("switch", "-q", sandbox.url("branches/languages"), str(other))
    (other / "greet.c").write_text((other / "greet.c").read_text().replace("Hello", "Hallo"))
    sandbox.svn("commit", "-q", "-m", "Speak German", "--username", "bartholomew", str(other))
    sandbox.svn("switch", "-q", sandbox.url("trunk"), str(other))
    sandbox.svn("update", "-q", str(other))
    sandbox.svn("merge", "-q", "^/branches/languages", directory=other)
    sandbox.svn("commit", "-q", "-m", "Merge languages", "--username", "bob", str(other))
    for revision in range(1, 9):
        sandbox.svn("propset", "-q", "--revprop", "-r", str(revision), "svn:date",
                    f"200{min(revision, 6)}-03-15T10:00:00.000000Z", sandbox.url())
    # What a working copy knows of dates is from its last update.
    shutil.rmtree(sandbox.copy)
    sandbox.svn("checkout", "-q", "-r", "5", sandbox.url("trunk"), str(sandbox.copy), directory=sandbox.root)
    sandbox.write("greet.c", "#include <stdio.h>\n\nint main(void) {\n    puts(\"Hello, world!\");\n}\n")
    sandbox.write("notes.txt", "n\n")
    sandbox.write("icon@2x.txt", "x\n")
    sandbox.svn("add", "-q", "icon@2x.txt@")


def on_terminal(sandbox, words, width, variables):
    """What is shown on a terminal of its own until the program ends."""
    child, terminal = pty.fork()
    if child == 0:
        fcntl.ioctl(0, termios.TIOCSWINSZ, struct.pack("HHHH", 50, width, 0, 0))
        os.chdir(sandbox.copy)
        os.execve(sandbox.program, ["quen", *words], sandbox.environment({"PAGER": "", **variables}))
    shown = b""
    while True:
        try:
            piece = os.read(terminal, 65536)
        except OSError:
            break
        if not piece:
            break
        shown += piece
    os.close(terminal)
    os.waitpid(child, 0)
    # Progress is drawn after a tenth of a second, and wiped off again: on a busy machine only.
    shown = re.sub(rb"\r[^\r\n\x1b]*\x1b\[K", b"", shown)
    return shown.decode(errors="replace").replace("\r\n", "\n")


def neutral(sandbox, text):
    text = text.replace(str(sandbox.root), "/SANDBOX")
    text = re.sub(r"\x1b\[([0-9;]*[A-Za-z])", r"{\1}", text)
    # Years go by; the widths stay.
    return re.sub(r"\b2\d years ago", "NN years ago", text)


def pages(sandbox):
    """The name of each file and what it must hold."""
    for width in WIDTHS:
        yield f"{width}-columns", "".join(
            f"$ quen {' '.join(words)}\n" + neutral(sandbox, on_terminal(sandbox, words, width, {"NO_COLOR": "1"})) + "\n"
            for words in COMMANDS)
    for name, commands, variables in VARIANTS:
        yield name, "".join(
            f"$ quen {' '.join(words)}\n" + neutral(sandbox, on_terminal(sandbox, words, 80, variables)) + "\n"
            for words in commands)


def difference(name, wanted, found):
    for number, (one, other) in enumerate(zip(wanted.split("\n"), found.split("\n")), 1):
        if one != other:
            return f"{name}.txt:{number}:\n  is    {other}\n  was   {one}"
    return f"{name}.txt: of another length"


def main(program, golden, update=None):
    failures = []
    golden = pathlib.Path(golden)
    with Sandbox(program) as sandbox:
        make_project(sandbox)
        for name, text in pages(sandbox):
            place = golden / f"{name}.txt"
            if update:
                golden.mkdir(exist_ok=True)
                place.write_text(text)
            elif place.read_text() != text:
                failures.append(difference(name, place.read_text(), text))
    print("\n".join(failures) or "All as it was")
    if failures:
        print(f"Where this is meant: {sys.argv[0]} PROGRAM {golden} --update")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
