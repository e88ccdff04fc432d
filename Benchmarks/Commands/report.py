#!/usr/bin/env python3
"""Measures `quen report` on a generated project: time, memory, size of the page.

The project has branches, merges, and texts that a page could trip over. Prints one Markdown row a
report. The page of the whole history stays where --keep says.
"""

import argparse
import os
import random
import resource
import shutil
import subprocess
import sys
import tempfile
import time

from dump import Dump

HOSTILE = [
    "</script><script>document.title='taken'</script>",
    "<!-- <script> \\ \" ' ` ${x} &lt; ]]>",
    "Emoji \U0001f680\U0001f469\u200d\U0001f4bb, \u202eright to left\u202c, \u2028a line\u2029",
    "Tabs\tand\n\nparagraphs\n",
]
FILES_PER_DIRECTORY = 50
BRANCH_EVERY = 500
MERGE_AFTER = 300


def name_of(number):
    return f"module{number // FILES_PER_DIRECTORY}/file{number % FILES_PER_DIRECTORY}.c"


def text_of(number, generator):
    return "".join(
        f"int value_{number}_{line} = {generator.randrange(1000)};\n" for line in range(40)
    ).encode()


def generate(out, revisions, files):
    """A trunk, a branch every 500 revisions that gets a third of the changes, and its merge."""
    dump, generator = Dump(out, minutes=150), random.Random(1)
    dump.revision(1, "First files")
    for directory in ("trunk", "branches", "tags"):
        dump.directory(directory)
    for number in range(files):
        if number % FILES_PER_DIRECTORY == 0:
            dump.directory("trunk/" + os.path.dirname(name_of(number)))
        dump.file("trunk/" + name_of(number), b"add", text_of(number, generator))
    branch, info = "", ""
    for number in range(2, revisions + 1):
        step = number % BRANCH_EVERY
        author = "<b>\u202emallory" if number % 997 == 0 else f"person{generator.randrange(60)}"
        hostile = number % 101 == 0
        dump.revision(number, HOSTILE[number % 4] if hostile else f"Change {number}\n\nWhy.", author)
        if step == 0:
            branch = f"branches/work-{number}"
            dump.copied_directory(branch, "trunk", number - 1)
        elif step == MERGE_AFTER and branch:
            info += f"/{branch}:{number - MERGE_AFTER + 1}-{number - 1}\n"
            dump.merged("trunk", info)
        on_branch = branch and 0 < step < MERGE_AFTER and number % 3 == 0
        for each in {int(files * generator.random() ** 2) for _ in range(1 + number % 4)}:
            place = branch if on_branch else "trunk"
            dump.file(f"{place}/{name_of(each)}", b"change", text_of(each, generator))


def measured(words):
    """Seconds, and the memory of the largest process, in MB."""
    start = time.perf_counter()
    process = subprocess.Popen(words, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"{words} ended with {process.returncode}")
    return time.perf_counter() - start, usage.ru_maxrss / 1024


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--quen", required=True, help="the program to measure, an optimised build")
    parser.add_argument("--small", action="store_true", help="little data, to see that it works")
    parser.add_argument("--keep", help="where the page of the whole history is put")
    options = parser.parse_args()
    quen = os.path.abspath(options.quen)
    revisions, files = (1200, 200) if options.small else (20000, 4000)
    with tempfile.TemporaryDirectory() as directory:
        repository, page = directory + "/repository", directory + "/page.html"
        subprocess.run(["svnadmin", "create", repository], check=True)
        load = ["svnadmin", "load", "-q", "--no-flush-to-disk", repository]
        with subprocess.Popen(load, stdin=subprocess.PIPE) as process:
            generate(process.stdin, revisions, files)
            process.stdin.close()
        url = f"file://{repository}/trunk"
        print("| report | time | memory | page |\n|---|---|---|---|")
        for name, words in [
            ("as it is by default", []),
            ("the whole history", ["--limit", str(revisions)]),
            ("no ages", ["--blame", "0"]),
        ]:
            seconds, memory = measured([quen, "report", "--force", "-o", page, *words, url])
            size = os.path.getsize(page) / 1e6
            print(f"| {name} | {seconds:.1f} s | {memory:.0f} MB | {size:.1f} MB |", flush=True)
            if options.keep and words[:1] == ["--limit"]:
                shutil.copy(page, options.keep)


if __name__ == "__main__":
    main()
