"""Repositories for measurements, always the same."""

import datetime


class Dump:
    """A repository in the client's dump format, with a revision every so many minutes."""

    def __init__(self, out, minutes=1):
        self.out = out
        self.step = datetime.timedelta(minutes=minutes)
        self.write(b"SVN-fs-dump-format-version: 2\n\n")

    def write(self, data):
        self.out.write(data)

    @staticmethod
    def properties(values):
        return b"".join(
            b"K %d\n%s\nV %d\n%s\n" % (len(name), name, len(value), value)
            for name, value in values.items()
        ) + b"PROPS-END\n"

    def revision(self, number, message, author=""):
        values = {
            b"svn:log": message.encode(),
            b"svn:author": author.encode() or (b"alice", b"bob", b"carol")[number % 3],
            b"svn:date": (datetime.datetime(2020, 1, 1) + number * self.step)
            .strftime("%Y-%m-%dT%H:%M:%S.000000Z").encode(),
        }
        text = self.properties(values)
        self.write(
            b"Revision-number: %d\nProp-content-length: %d\nContent-length: %d\n\n%s\n"
            % (number, len(text), len(text), text)
        )

    def directory(self, path):
        self.write(b"Node-path: %s\nNode-kind: dir\nNode-action: add\n\n\n" % path.encode())

    def file(self, path, action, content):
        self.write(
            b"Node-path: %s\nNode-kind: file\nNode-action: %s\nText-content-length: %d\n"
            b"Content-length: %d\n\n" % (path.encode(), action, len(content), len(content))
        )
        self.write(content + b"\n\n")

    def copied_directory(self, path, source, revision):
        self.write(
            b"Node-path: %s\nNode-kind: dir\nNode-action: add\nNode-copyfrom-rev: %d\n"
            b"Node-copyfrom-path: %s\n\n\n" % (path.encode(), revision, source.encode())
        )

    def merged(self, path, info):
        """A directory that remembers what was merged into it."""
        text = self.properties({b"svn:mergeinfo": info.encode()})
        self.write(
            b"Node-path: %s\nNode-kind: dir\nNode-action: change\nProp-content-length: %d\n"
            b"Content-length: %d\n\n%s\n" % (path.encode(), len(text), len(text), text)
        )
