#!/usr/bin/python3
"""Completion in the shells themselves: what they offer for a beginning of a command line.

    completion_test.py PROGRAM
"""

import os
import pty
import select
import sys
import time

from sandbox import Sandbox

# What is typed, and what must be offered, and what must not.
CASES = [
    ("quen sta", ["status"], ["update"]),
    ("quen branch ", ["create", "delete"], []),
    ("quen switch f", ["fix"], ["trunk"]),
    ("quen log --onel", ["--oneline"], []),
    ("quen log --color ", ["auto", "always", "never"], []),
    ("quen revert ", ["a.c"], ["b.c"]),
    ("quen add ", ["new file.c"], ["a.c"]),
    ("quen log -r H", ["HEAD"], ["BASE"]),
    ("quen help inc", ["incoming"], []),
]

failures = []


def script_for(sandbox, shell):
    place = sandbox.root / f"quen.{shell}"
    place.write_bytes(sandbox.quen("complete", shell).stdout)
    return place


def offered_by_fish(sandbox, typed):
    script = script_for(sandbox, "fish")
    ran = sandbox.run(["fish", "--no-config", "-c", f"source {script}; complete -C '{typed}'"])
    return [line.split("\t")[0].replace("\\ ", " ") for line in ran.stdout.decode().splitlines()]


def offered_by_bash(sandbox, typed):
    """What the function that is bound to the command leaves in COMPREPLY."""
    script = script_for(sandbox, "bash")
    words = " ".join(f"'{word}'" for word in typed.split(" "))
    ran = sandbox.run(["bash", "--norc", "-c",
                       f"source {script}; COMP_WORDS=({words}); COMP_CWORD=$((${{#COMP_WORDS[@]}} - 1)); "
                       "_quen 2>/dev/null; printf '%s\\n' \"${COMPREPLY[@]}\""])
    return [line.replace("\\ ", " ") for line in ran.stdout.decode().splitlines()]


class Terminal:
    """A shell with somebody in front of it. Every wait has a bound."""

    def __init__(self, words, sandbox):
        self.child, self.keys = pty.fork()
        if self.child == 0:
            os.chdir(sandbox.copy)
            os.execvpe(words[0], words, sandbox.environment({"PS1": "", "COLUMNS": "200"}))
        self.shown = b""
        self.found = 0

    def type(self, text):
        os.write(self.keys, text.encode())

    def wait_for(self, text, seconds=20):
        """Reads until the text is shown behind what this found before; whether it was."""
        deadline = time.monotonic() + seconds
        while (place := self.shown.find(text.encode(), self.found)) < 0:
            if not select.select([self.keys], [], [], max(0, deadline - time.monotonic()))[0]:
                return False
            try:
                self.shown += os.read(self.keys, 65536)
            except OSError:
                return False
        self.found = place + len(text)
        return True

    def end(self):
        os.close(self.keys)
        os.waitpid(self.child, 0)


# Prints what the completion system was given instead of drawing a menu.
ZSH = """
autoload -Uz compinit && compinit -u -D
compadd() {{
    local -a found
    builtin compadd -O found "$@"
    print -rl -- $found >>{record}
    builtin compadd "$@"
}}
source {script}
complete-and-tell() {{ zle complete-word; zle -M "done-$((40+2))" }}
zle -N complete-and-tell
bindkey '^I' complete-and-tell
print ready-$((40+2))
"""

# The line editor has the terminal when it asks for pasted text to be marked.
EDITING = "\x1b[?2004h"


def offered_by_zsh(sandbox, typed):
    record = sandbox.root / "offered"
    record.write_text("")
    setup = sandbox.root / "setup.zsh"
    setup.write_text(ZSH.format(record=record, script=script_for(sandbox, "zsh")))
    shell = Terminal(["zsh", "-f", "-i"], sandbox)
    shell.type(f"source {setup}\n")
    if not (shell.wait_for("ready-42") and shell.wait_for(EDITING)):
        failures.append(f"zsh does not start: {shell.shown!r}")
    shell.type(f"{typed}\t")
    if not shell.wait_for("done-42"):
        failures.append(f"zsh does not answer: {shell.shown!r}")
    shell.end()
    return [line.rstrip("/") for line in record.read_text().splitlines()]


SHELLS = {"bash": offered_by_bash, "fish": offered_by_fish, "zsh": offered_by_zsh}


def make_project(sandbox):
    for name in ("a.c", "b.c"):
        sandbox.write(name, "one\n")
        sandbox.svn("add", "-q", name)
    sandbox.commit("First")
    sandbox.svn("copy", "-q", "-m", "Branch", sandbox.url("trunk"), sandbox.url("branches/fix"))
    sandbox.svn("update", "-q")
    sandbox.write("a.c", "two\n")
    sandbox.write("new file.c", "new\n")


def main(program):
    with Sandbox(program) as sandbox:
        make_project(sandbox)
        for shell, offered_by in SHELLS.items():
            for typed, wanted, unwanted in CASES:
                offered = offered_by(sandbox, typed)
                missing = [word for word in wanted if word not in offered]
                extra = [word for word in unwanted if word in offered]
                if missing or extra:
                    failures.append(f"{shell}: {typed!r} offers {offered}, "
                                    f"without {missing}, with {extra}")
    print("\n".join(failures) or f"{len(CASES)} beginnings in {len(SHELLS)} shells")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
