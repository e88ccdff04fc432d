#!/usr/bin/python3
"""The commands in the documentation print what it says, and those that it only names exist.

    documentation_test.py PROGRAM DOCUMENTATION            compares
    documentation_test.py PROGRAM DOCUMENTATION --update   writes what is printed into the pages

Each console block of commands.md and scripting.md is run in a fresh copy of a small project; dates, ages and places are
left out of the comparison.
"""

import datetime
import json
import pathlib
import re
import shlex
import shutil
import sys

from sandbox import Sandbox

# What is done before a block that begins with the command.
PREPARATIONS = {
    "quen undo": "quen revert --yes greet.c",
    "quen switch languages": "svn revert -q -R .",
    "quen log --graph --oneline -5": "svn revert -q -R . && svn merge -q ^/branches/languages && "
                                     "svn commit -q --username alice -m 'Merge languages'",
    "quen incoming": "svn update -q -r 3",
}


def make_project(sandbox):
    hook = sandbox.root / "repository/hooks/pre-revprop-change"
    hook.write_text("#!/bin/sh\n")
    hook.chmod(0o755)
    sandbox.write("README", "Greets.\n")
    sandbox.write("hello.c", '#include <stdio.h>\n\nint main(void) {\n    puts("hello");\n}\n')
    sandbox.write("icons/icon@2x.txt", "x\n")
    sandbox.svn("add", "-q", "README", "hello.c", "icons")
    sandbox.svn("propset", "-q", "svn:ignore", "*.log", ".")
    sandbox.commit("First files")
    sandbox.write("hello.c", '#include <stdio.h>\n\nint main(void) {\n    puts("Hello, world");\n}\n')
    sandbox.write("icons/icon@2x.txt", "x\ny\n")
    sandbox.commit("Greet the world\n\nNobody is to feel left out.", "bob")
    sandbox.svn("move", "-q", "hello.c", "greet.c")
    sandbox.commit("The file is named after what it does")
    sandbox.svn("copy", "-q", "-m", "A branch for languages", "--username", "alice",
                sandbox.url("trunk"), sandbox.url("branches/languages"))
    other = sandbox.root / "languages"
    sandbox.svn("checkout", "-q", sandbox.url("branches/languages"), str(other))
    (other / "README").write_text("Greets in many languages.\n")
    sandbox.svn("commit", "-q", "-m", "Say what comes", "--username", "bob", str(other))
    shutil.rmtree(other)
    date_revisions(sandbox)
    shutil.rmtree(sandbox.copy)
    sandbox.svn("checkout", "-q", sandbox.url("trunk"), str(sandbox.copy), directory=sandbox.root)
    sandbox.write("greet.c", '#include <stdio.h>\n\nint main(void) {\n    puts("Hello, world!");\n}\n')
    sandbox.write("icons/new.txt", "n\n")
    sandbox.svn("add", "-q", "icons/new.txt")
    sandbox.write("notes.txt", "n\n")
    sandbox.write("build.log", "l\n")


def date_revisions(sandbox):
    now = datetime.datetime.now(datetime.timezone.utc)
    ages = {1: 43, 2: 42.2, 3: 3.1, 4: 0.84, 5: 0.6, 6: 0.5}
    for revision, days in ages.items():
        date = (now - datetime.timedelta(days=days)).strftime("%Y-%m-%dT%H:%M:%S.000000Z")
        sandbox.svn("propset", "-q", "--revprop", "-r", str(revision), "svn:date", date, sandbox.url())


def neutral(text):
    text = re.sub(r"\d{4}-\d\d-\d\d[T ]\d\d:\d\d:\d\d(\.\d+Z| [+-]\d{4})", "DATE", text)
    text = re.sub(r"\d{4}-\d\d-\d\d", "DAY", text)
    return re.sub(r" *(\d+ (second|minute|hour|day|week|month)s? ago|just now|yesterday)", " AGE", text)


class Project:
    """The project as each block finds it."""

    def __init__(self, sandbox):
        self.sandbox = sandbox
        self.kept = sandbox.root / "kept"
        self.kept.mkdir()
        for name in ("wc", "repository"):
            shutil.copytree(sandbox.root / name, self.kept / name, symlinks=True)

    def renew(self):
        for name in ("wc", "repository"):
            shutil.rmtree(self.sandbox.root / name)
            shutil.copytree(self.kept / name, self.sandbox.root / name, symlinks=True)
        shutil.rmtree(self.sandbox.home, ignore_errors=True)
        self.sandbox.home.mkdir()

    def printed(self, command):
        """Standard output, then standard error, as the page shows them."""
        words = shlex.split(self.here(command))
        ran = self.sandbox.run([self.sandbox.program if words[0] == "quen" else words[0], *words[1:]])
        return self.there((ran.stdout + ran.stderr).decode())

    def here(self, text):
        return text.replace("file:///srv/svn/greet", self.sandbox.url())

    def there(self, text):
        return text.replace(self.sandbox.url(), "file:///srv/svn/greet").replace(
            str(self.sandbox.copy), "/home/alice/greet")


BLOCK = re.compile(r"```console\n(.*?)```", re.DOTALL)


def told(project, block):
    """The block with what its commands really print."""
    project.renew()
    text = ""
    for command in re.findall(r"^\$ (.*)$", block, re.MULTILINE):
        if text == "" and command in PREPARATIONS:
            prepared = project.sandbox.run(["sh", "-c", PREPARATIONS[command]])
            if prepared.returncode != 0:
                raise RuntimeError(f"{PREPARATIONS[command]}: {prepared.stderr.decode()}")
        text += f"$ {command}\n{project.printed(command)}"
    return text


def check_commands(project, page, update):
    text = page.read_text()
    failures = []

    def renewed(match):
        now = told(project, match.group(1))
        if neutral(now) != neutral(match.group(1)):
            failures.append(f"{page.name} shows\n{match.group(1)}and it is\n{now}")
            return f"```console\n{now}```"
        return match.group(0)

    new = BLOCK.sub(renewed, text)
    if update:
        page.write_text(new)
        return []
    return failures or ([] if BLOCK.search(text) else [f"{page.name} shows no command"])


def described(command, names):
    """The description of the innermost command that is named, and the words behind its name."""
    words = names
    while words:
        found = [each for each in command["commands"]
                 if words[0] in (each["name"].split()[-1], *each["aliases"])]
        if not found:
            break
        command, words = found[0], words[1:]
    return command, words


def check_named(program, page):
    """Every command line between backticks names a command, and options that it has."""
    failures = []
    for line in re.findall(r"`(quen [^`]*)`", page.read_text()):
        words = shlex.split(line.replace("\\|", "|"))[1:]
        while words[:1] == ["-C"]:
            words = words[2:]
        if words[:1] in (["--version"], ["COMMAND"], ["help"], ["manual"]) or not words:
            continue
        command, rest = described(program, words)
        if command is program:
            failures.append(f"{page.name}: there is no command in `{line}`")
        options = {name for each in command["options"] for name in (each["shortName"], each["longName"], each["alias"])}
        for word in rest:
            name = word.split("=")[0]
            if name.startswith("-") and name not in options and not re.fullmatch(r"-\d*|--", name) \
                    and name[:2] not in options:
                failures.append(f"{page.name}: `{line}`: {command['name']} has no {name}")
    return failures


def main(program, documentation, update=None):
    documentation = pathlib.Path(documentation)
    with Sandbox(program) as sandbox:
        make_project(sandbox)
        project = Project(sandbox)
        failures = [failure for name in ("commands.md", "scripting.md")
                    for failure in check_commands(project, documentation / name, update)]
        description = json.loads(sandbox.quen("help", "--json").stdout)
    for page in sorted(documentation.glob("*.md")):
        failures += check_named(description, page)
    print("\n\n".join(failures) or "All is as the pages say")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
