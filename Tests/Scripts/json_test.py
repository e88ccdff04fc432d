#!/usr/bin/python3
"""What `--json` and `--jsonl` print is what the schemas say, of every command, and nothing else.

    json_test.py PROGRAM SCHEMAS

Runs every command that has the option on a real repository and validates what it prints, and what it
says of a failure, with its schema. A command without a schema fails, and so does a schema without
a command, a member that no schema knows, and one that no run has printed.
"""

import json
import pathlib
import sys

from jsonschema import Draft202012Validator

from sandbox import Sandbox

# Members that a run needs another server, another person or a broken disk for.
NOT_SEEN = {
    "status": {"switched", "fileExternal", "workingCopyLocked", "repositoryLock", "comment",
               "expires"},
    "diff": set(),
}

failures = []


def fail(words, text):
    failures.append(f"quen {' '.join(words)}: {text}")


class Schemas:
    def __init__(self, directory):
        self.all = {path.name.removesuffix(".schema.json"): json.loads(path.read_text())
                    for path in sorted(pathlib.Path(directory).glob("*.schema.json"))}
        self.seen = {name: set() for name in self.all}
        for schema in self.all.values():
            Draft202012Validator.check_schema(schema)

    def validate(self, words, name, value, part=None):
        schema = self.all.get(name)
        if schema is None:
            return fail(words, f"there is no schema {name}")
        if part:
            schema = {**schema["$defs"][part], "$defs": schema["$defs"]}
        for error in Draft202012Validator(schema).iter_errors(value):
            fail(words, f"{name}: {error.json_path}: {error.message[:300]}"
                 + "".join(f"\n    {each.json_path}: {each.message[:200]}"
                           for each in error.context or []))
        self.seen[name] |= members_of(value)


def members_of(value):
    if isinstance(value, dict):
        return set(value) | {name for each in value.values() for name in members_of(each)}
    if isinstance(value, list):
        return {name for each in value for name in members_of(each)}
    return set()


def members_in(schema):
    """The names of all members that a schema knows."""
    if isinstance(schema, list):
        return {name for each in schema for name in members_in(each)}
    if not isinstance(schema, dict):
        return set()
    members = schema.get("properties", {})
    parts = [*members.values(), *(each for key, each in schema.items() if key != "properties")]
    return set(members) | {name for part in parts for name in members_in(part)}


def open_objects(schema, place="$"):
    """The objects in a schema that let in members without a name."""
    if isinstance(schema, list):
        return [found for i, each in enumerate(schema) for found in open_objects(each, f"{place}[{i}]")]
    if not isinstance(schema, dict):
        return []
    members = schema.get("properties", {})
    own = [place] if members and schema.get("additionalProperties") is not False else []
    parts = {**members, **{key: each for key, each in schema.items() if key != "properties"}}
    return own + [found for key, each in parts.items() for found in open_objects(each, f"{place}.{key}")]


def parsed(words, text):
    try:
        return json.loads(text)
    except ValueError as error:
        fail(words, f"not JSON ({error}): {text[:200]!r}")
        return None


def check(sandbox, schemas, words, name, status=0):
    ran = sandbox.quen(*words)
    out, err = ran.stdout.decode(), ran.stderr.decode()
    if ran.returncode != status:
        fail(words, f"ended with {ran.returncode} instead of {status}: {err}")
    if "--jsonl" in words:
        for line in out.splitlines():
            schemas.validate(words, name, parsed(words, line), "line")
    elif out:
        if out.count("\n") != 1:
            fail(words, f"not one line: {out!r}")
        schemas.validate(words, name, parsed(words, out))
    if status == 3 and not err:
        return
    if status == 0:
        if "--check" not in words and out == "" and "--jsonl" not in words:
            fail(words, "nothing was printed")
        return
    if err.count("\n") != 1:
        fail(words, f"a failure is told in one line, not: {err!r}")
    failure = parsed(words, err)
    schemas.validate(words, "error", failure)
    if failure and (failure["error"]["exitStatus"] != ran.returncode or not failure["error"]["message"]):
        fail(words, f"the failure does not say what it is: {err}")


def check_plain(sandbox, words, status=0):
    """Without a terminal: the same status as with JSON, no colours, no pager, no editor, no question."""
    started = sandbox.root / "started"
    program = f"sh -c 'cat >/dev/null; touch {started}' --"
    variables = {name: program for name in ("PAGER", "QUEN_PAGER", "EDITOR", "VISUAL", "SVN_EDITOR")}
    ran = sandbox.quen(*words, variables=variables)
    said = (ran.stdout + ran.stderr).decode(errors="replace")
    if ran.returncode != status:
        fail(words, f"ended with {ran.returncode} instead of {status}: {said}")
    if "\x1b" in said:
        fail(words, f"has colours without a terminal: {said!r}")
    if "[y/N]" in said:
        fail(words, f"asks without a terminal: {said!r}")
    if started.exists():
        fail(words, "started a pager or an editor without a terminal")
        started.unlink()


def make_history(sandbox):
    sandbox.write("a.c", "one\ntwo\nthree\n")
    sandbox.write("b@2x.c", "b\n")
    sandbox.write("src/main.c", "main\n")
    sandbox.write("blob", b"\0\xff")
    sandbox.svn("add", "-q", "a.c", "b@2x.c@", "src", "blob")
    sandbox.svn("propset", "-q", "svn:mime-type", "application/octet-stream", "blob")
    sandbox.commit("First")
    sandbox.write("a.c", "one\nTWO\nthree\n")
    sandbox.commit("Shout\n\nLouder.", "bob")
    sandbox.svn("copy", "-q", "-m", "Branch", sandbox.url("trunk"), sandbox.url("branches/fix"))
    sandbox.svn("copy", "-q", "-m", "Tag", sandbox.url("trunk"), sandbox.url("tags/1.0"))
    sandbox.svn("update", "-q")


def change_locally(sandbox):
    sandbox.write("a.c", "one\nTWO\nthree\nfour\n")
    sandbox.write("new.c", "new\n")
    sandbox.write("later.c", "later\n")
    sandbox.write("latin.c", b"\xe9\n")
    sandbox.svn("add", "-q", "new.c", "latin.c")
    sandbox.svn("changelist", "-q", "work", "new.c")
    sandbox.svn("move", "-q", "src/main.c", "src/start.c")
    sandbox.svn("lock", "a.c")


def change_elsewhere(sandbox):
    """What comes in: a change on both sides, and a file where a local one lies."""
    other = sandbox.root / "other"
    sandbox.svn("checkout", "-q", sandbox.url("trunk"), str(other))
    (other / "b@2x.c").write_text("theirs\n")
    (other / "new.c").write_text("theirs\n")
    sandbox.svn("add", "-q", "new.c", directory=other)
    sandbox.svn("copy", "-q", "blob", "blob2", directory=other)
    sandbox.svn("commit", "-q", "-m", "Theirs", directory=other)
    sandbox.write("b@2x.c", "mine\n")


LOOKING = [
    (["status"], "status"),
    (["status", "-u"], "status"),
    (["diff"], "diff"),
    (["diff", "a.c"], "diff"),
    (["diff", "latin.c"], "diff"),
    (["diff", "src/nothing.c"], "diff", 1),
    (["diff", "--stat"], "diff"),
    (["diff", "-c", "2,3"], "diff"),
    (["diff", "--summarize", "-r", "2:3", "a.c"], "diff"),
    (["diff", "-r", "2"], "diff", 2),
    (["log"], "log"),
    (["log", "-v"], "log"),
    (["log", "-v", "SANDBOX"], "log"),
    (["log", "nowhere.c"], "log", 1),
    (["log", "--author", "nobody"], "log"),
    (["log", "--graph", "-v"], "log"),
    (["log", "--graph", "a.c"], "log", 1),
    (["log", "-l", "0"], "log", 2),
    (["show", "3"], "show"),
    (["show", "4"], "show"),
    (["show", "99"], "show", 1),
    (["incoming"], "incoming"),
    (["incoming", "-v"], "incoming"),
    (["incoming", ".."], "incoming", 1),
    (["blame", "a.c"], "blame"),
    (["blame", "--ignore-rev", "3", "a.c"], "blame"),
    (["blame", "-r", "3^", "a.c"], "blame"),
    (["blame", "-r", "2^", "a.c"], "blame", 1),
    (["blame", "nowhere.c"], "blame", 1),
    (["info", "a.c", "src"], "info"),
    (["info", "new.c"], "info"),
    (["info", "nowhere.c"], "info", 1),
    (["list"], "list"),
    (["list", "-R"], "list"),
    (["list", "-r", "2"], "list"),
    (["list", "nowhere"], "list", 1),
    (["cat", "a.c"], "cat"),
    (["cat", "-r", "2", "a.c"], "cat"),
    (["export", "a.c", "../exported"], "export"),
    (["export", "a.c", "../exported"], "export", 1),
    (["branch"], "branch"),
    (["branch", "SANDBOX/tags"], "branch"),
    (["branch", "SANDBOX/branches/fix"], "branch"),
    (["branches"], "branches"),
    (["tags"], "tags"),
    (["update", "--preview"], "update", 3),
    (["merge", "--preview", "fix"], "merge"),
    (["help"], "help"),
    (["help", "log"], "help"),
    (["help", "nothing"], "help", 2),
    (["--version"], "version"),
    (["frob"], "help", 2),
    (["log", "--frob"], "log", 2),
    (["update", "nowhere/at/all"], "update", 1),
    (["report"], "report"),
    (["report"], "report", 1),
]

# What is printed as it is, and cannot be JSON.
ONLY_PLAIN = [
    (["cat", "blob"], "cat", 1),
]

# With `--jsonl` in place of `--json`.
STREAMING = [
    (["status"], "status"),
    (["status", "-u", "a.c", "new.c"], "status"),
    (["log", "-v"], "log"),
    (["log", "--graph"], "log"),
    (["blame", "--ignore-rev", "3", "a.c"], "blame"),
    (["log", "nowhere.c"], "log", 1),
    (["blame", "a.c"], "blame"),
    (["list", "-R"], "list"),
]

CHANGING = [
    (["revert", "a.c"], "revert", 1),
    (["revert", "--yes", "a.c"], "revert"),
    (["undo", "--list"], "undo"),
    (["undo"], "undo"),
    (["undo", "/"], "undo", 1),
    (["update"], "update", 3),
    (["status"], "status"),
    (["resolve", "."], "resolve"),
    (["resolve", "new.c"], "resolve"),
    (["cleanup"], "cleanup"),
    (["cleanup", "/"], "cleanup", 1),
    (["commit", "-m", "All"], "commit"),
    (["commit", "-m", "Nothing"], "commit"),
    (["commit", "-m", ""], "commit"),
    (["mkdir", "made"], "mkdir"),
    (["mkdir", "SANDBOX/trunk/there", "-m", "M"], "mkdir"),
    (["copy", "a.c", "made/a.c"], "copy"),
    (["status"], "status"),
    (["move", "b@2x.c", "made/b.c"], "move"),
    (["add", "later.c"], "add"),
    (["add", "made"], "add"),
    (["mkdir", "-p", "made"], "mkdir"),
    (["add", "nowhere"], "add", 1),
    (["remove", "--yes", "new.c"], "remove"),
    (["remove", "--yes", "SANDBOX/trunk/there", "-m", "M"], "remove"),
    (["ignore", "*.o"], "ignore"),
    (["unignore", "*.o"], "unignore"),
    (["import", "a.c", "SANDBOX/trunk/imported.c", "-m", "M"], "import"),
    (["branch", "create", "next", "-m", "M"], "branch-create"),
    (["branch", "create", "next", "-m", "M"], "branch-create", 1),
    (["tag", "v9", "-m", "M"], "tag"),
    (["tag", "v9", "-m", "M"], "tag", 1),
    (["branch", "delete", "--yes", "next", "-m", "M"], "branch-delete"),
    (["merge", "--yes", "fix"], "merge", 1),
    (["update"], "update"),
    (["merge", "--yes", "fix"], "merge"),
    (["revert", "--yes", "."], "revert"),
    (["switch", "--yes", "fix"], "switch"),
    (["switch", "nowhere"], "switch", 1),
    (["checkout", "SANDBOX/trunk", "../second"], "checkout"),
]

# What is for people, or has a format of its own.
WITHOUT_JSON = {"tour", "request", "serve", "complete"}


def commands_with_json(command, found):
    for each in command["commands"]:
        commands_with_json(each, found)
    names = {option["longName"] for option in command["options"]}
    if command["name"] != "quen":
        found[command["name"].removeprefix("quen ").replace(" ", "-")] = names
    return found


def check_completeness(sandbox, schemas):
    description = json.loads(sandbox.quen("help", "--json").stdout)
    found = commands_with_json(description, {})
    for name, options in found.items():
        if name in WITHOUT_JSON:
            continue
        if "--json" not in options:
            fail([name], "has no --json")
        if name not in schemas.all:
            fail([name], f"has no schema {name}.schema.json")
        elif ("--jsonl" in options) != ("line" in schemas.all[name].get("$defs", {})):
            fail([name], "--jsonl and the schema of its lines do not go together")
    for name in set(schemas.all) - set(found) - {"error", "version"}:
        failures.append(f"{name}.schema.json belongs to no command")


def check_members(schemas):
    for name, schema in schemas.all.items():
        for place in open_objects(schema):
            failures.append(f"{name}.schema.json lets in anything at {place}")
        missing = members_in(schema) - schemas.seen[name] - NOT_SEEN.get(name, set())
        missing = {member for member in missing if name not in TRANSFERS or member not in CONFLICTS}
        if missing:
            failures.append(f"{name}.schema.json: no run has printed {sorted(missing)}")


# One transfer shows what conflicts look like for all.
TRANSFERS = {"merge", "switch", "checkout"}
CONFLICTS = {"conflicts", "skipped", "path", "kind", "state", "theirs", "mine", "description",
             "reason", "action", "properties", "status"}
NOT_SEEN["update"] = {"reason"}


def located(sandbox, words):
    return [sandbox.url(word[8:]) if word.startswith("SANDBOX") else word for word in words]


def make_project(sandbox):
    make_history(sandbox)
    change_locally(sandbox)
    change_elsewhere(sandbox)


def main(program, directory):
    schemas = Schemas(directory)
    with Sandbox(program) as sandbox:
        make_project(sandbox)
        check_completeness(sandbox, schemas)
        for option, table in (("--json", LOOKING), ("--json", ONLY_PLAIN),
                              ("--jsonl", STREAMING), ("--json", CHANGING)):
            for words, name, *status in table:
                check(sandbox, schemas, [*located(sandbox, words), option], name, *status)
    with Sandbox(program) as sandbox:
        make_project(sandbox)
        for words, _, *status in LOOKING + CHANGING:
            check_plain(sandbox, located(sandbox, words), *status)
    check_members(schemas)
    print("\n".join(failures) or f"{len(schemas.all)} schemas hold")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
