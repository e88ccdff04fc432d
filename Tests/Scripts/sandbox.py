"""A repository with a history, and programs run there in an environment of their own."""

import os
import pathlib
import subprocess
import tempfile


class Sandbox:
    """A fresh repository with a working copy of its trunk; removed with the object's `with`."""

    def __init__(self, program):
        self.program = os.path.realpath(program)
        self.directory = tempfile.TemporaryDirectory(prefix="quen-scripts-")
        self.root = pathlib.Path(os.path.realpath(self.directory.name))
        self.home = self.root / "home"
        self.home.mkdir()
        self.copy = self.root / "wc"
        self.run(["svnadmin", "create", str(self.root / "repository")], self.root)
        self.svn("mkdir", "-q", "-m", "The usual layout", "--username", "alice",
                 self.url("trunk"), self.url("branches"), self.url("tags"), directory=self.root)
        self.svn("checkout", "-q", self.url("trunk"), str(self.copy), directory=self.root)

    def __enter__(self):
        return self

    def __exit__(self, *failure):
        self.directory.cleanup()

    def url(self, path=""):
        return f"file://{self.root}/repository" + (f"/{path}" if path else "")

    def environment(self, variables=None):
        kept = {"PATH": f"{os.path.dirname(self.program)}:{os.environ['PATH']}"}
        return {**kept, "HOME": str(self.home), "TZ": "UTC", "LC_ALL": "C.UTF-8",
                "TERM": "xterm", **(variables or {})}

    def run(self, words, directory=None, variables=None):
        """The finished run; standard input is empty."""
        return subprocess.run(words, cwd=directory or self.copy, stdin=subprocess.DEVNULL,
                              env=self.environment(variables), capture_output=True, timeout=60)

    def svn(self, *words, directory=None):
        ran = self.run(["svn", "--non-interactive", *words], directory)
        if ran.returncode != 0:
            raise RuntimeError(f"svn {words}: {ran.stderr.decode()}")
        return ran.stdout.decode()

    def quen(self, *words, directory=None, variables=None):
        return self.run([self.program, *words], directory, variables)

    def write(self, path, text):
        place = self.copy / path
        place.parent.mkdir(parents=True, exist_ok=True)
        place.write_bytes(text if isinstance(text, bytes) else text.encode())

    def commit(self, message, author="alice"):
        self.svn("commit", "-q", "--username", author, "-m", message)
        self.svn("update", "-q")
