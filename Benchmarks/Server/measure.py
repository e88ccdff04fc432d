#!/usr/bin/env python3
"""What the server costs beside the bare client: one table, all in one run.

    Benchmarks/Server/measure.py [--server PROGRAM] [--small]

Ends with status 1 where a bound is not met. Repositories are made in TMPDIR.
"""
import argparse
import concurrent.futures
import json
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import threading
import time

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path.insert(0, os.path.join(ROOT, "Examples"))
import editor_client  # noqa: E402

met = True


def row(name, value, bound, detail):
    global met
    met = met and (bound is None or value <= bound)
    shown = "" if bound is None else f"{bound:g}"
    print(f"| {name} | {value:.3g} | {shown} | {detail} |", flush=True)


def bare(*words):
    """The client with its output thrown away; the seconds it took."""
    begin = time.perf_counter()
    subprocess.run(["svn", *words], stdout=subprocess.DEVNULL, check=True)
    return time.perf_counter() - begin


def timed(work):
    begin = time.perf_counter()
    work()
    return time.perf_counter() - begin


def in_turn(count, *works):
    """The medians of works that take turns, so that all meet the same machine."""
    times = [[work() for work in works] for _ in range(count)]
    return [statistics.median(column) for column in zip(*times)]


class Bench:
    def __init__(self, command, roots=()):
        self.news = threading.Condition()
        self.heard = []
        self.parts = []
        self.server = editor_client.Server([command, "serve"], self.hear)
        self.server.request("initialize", roots=list(roots))
        self.server.notify("initialized")

    def hear(self, method, params):
        with self.news:
            if method == "workingCopy/changed":
                self.heard.append(time.perf_counter())
            elif method == "$/progress":
                self.parts.append(time.perf_counter())
            self.news.notify_all()

    def wait_for(self, what, count):
        with self.news:
            if not self.news.wait_for(lambda: len(what) >= count, 60):
                raise RuntimeError("the server told nothing")
            return what[count - 1]

    def process_facts(self, name, fields):
        with open(f"/proc/{self.server.process.pid}/{name}", encoding="utf-8") as file:
            return fields(file.read())

    def kilobytes(self):
        return self.process_facts("status", lambda text: int(text.split("VmRSS:")[1].split()[0]))

    def processor_seconds(self):
        ticks = self.process_facts("stat", lambda text: text.rsplit(")", 1)[1].split())
        return (int(ticks[11]) + int(ticks[12])) / os.sysconf("SC_CLK_TCK")


def make_working_copy(place, files):
    """A working copy of that many files, 500 in a directory."""
    repository, copy = os.path.join(place, "repository"), os.path.join(place, "wc")
    subprocess.run(["svnadmin", "create", repository], check=True)
    subprocess.run(["svn", "checkout", "-q", "file://" + repository, copy], check=True)
    for number in range(files):
        directory = os.path.join(copy, f"d{number // 500}")
        os.makedirs(directory, exist_ok=True)
        with open(os.path.join(directory, f"f{number}.c"), "w", encoding="utf-8") as file:
            file.write("a\n")
    names = [os.path.join(copy, name) for name in sorted(os.listdir(copy)) if name != ".svn"]
    subprocess.run(["svn", "add", "-q", *names], check=True)
    subprocess.run(["svn", "commit", "-q", "-m", "all", copy], check=True)
    subprocess.run(["svn", "update", "-q", copy], check=True)
    return copy


def change_all(copy):
    for directory, _, names in os.walk(copy):
        if ".svn" not in directory:
            for name in names:
                with open(os.path.join(directory, name), "a", encoding="utf-8") as file:
                    file.write("b\n")


def measure_status(command, place, idle):
    copy = make_working_copy(place, 20)
    change_all(copy)
    bench = Bench(command)
    bench.server.request("workingCopy/open", path=copy)

    def served():
        return timed(lambda: bench.server.request("workingCopy/status", workingCopy=copy, refresh=True))

    own, theirs = in_turn(41, served, lambda: bare("status", "--no-ignore", "--xml", copy))
    row("status of 20 files, over the client", own / theirs, 1.1,
        f"{own * 1e3:.1f} ms, client {theirs * 1e3:.1f} ms")
    client = [lambda: bare("status", "--no-ignore", "--xml", copy)] * 100

    def hundred():
        for started in [bench.server.start("provider/perform", request={
                "type": "RequestTypeStatus", "files": [copy]}) for _ in range(100)]:
            bench.server.wait(started)

    def clients():
        with concurrent.futures.ThreadPoolExecutor(100) as pool:
            list(pool.map(lambda work: work(), client))

    own, theirs = in_turn(5, lambda: timed(hundred), lambda: timed(clients))
    row("a hundred requests at once, over the clients", own / theirs, 1.1,
        f"{own:.2f} s, clients {theirs:.2f} s")
    before = bench.processor_seconds()
    time.sleep(idle)
    row(f"idle processor time in {idle} s, seconds", bench.processor_seconds() - before, 0.0, "")
    bench.server.close()


def measure_large(command, place, files):
    copy = make_working_copy(place, files)
    bench = Bench(command)
    bench.server.request("workingCopy/open", path=copy)
    path = os.path.join(copy, "d0", "f0.c")
    state = {"text": 0}

    def noticed():
        state["text"] += 1
        # What is gathered for the client that ran before must be over.
        time.sleep(0.2)
        with open(path, "w", encoding="utf-8") as file:
            file.write("a\n" if state["text"] % 2 == 0 else "changed\n")
        count = len(bench.heard)
        begin = time.perf_counter()
        bench.server.notify("workingCopy/didChange", paths=[path])
        # The time of gathering is meant, and is not a cost.
        return bench.wait_for(bench.heard, count + 1) - begin - 0.1

    def one():
        return bare("status", "--no-ignore", "--xml", path)

    def everything():
        return bare("status", "--no-ignore", "--xml", copy)

    def first_count():
        """A fresh server, told of the working copy as an editor does it, until its status is there."""
        fresh = Bench(command, [copy])
        began = time.perf_counter()
        fresh.server.request("workingCopy/open", path=copy)
        fresh.server.request("workingCopy/status", workingCopy=copy)
        seconds = time.perf_counter() - began
        fresh.server.close()
        return seconds

    own, theirs = in_turn(21, noticed, one)
    first, full = in_turn(5, first_count, everything)
    row(f"first count of {files} files, over a full status", first / full, 1.25,
        f"{first:.2f} s, client {full:.2f} s")
    row(f"one changed file of {files}, over the client on it", own / theirs, 1.5,
        f"{own * 1e3:.1f} ms behind the gathering, client {theirs * 1e3:.1f} ms")
    row(f"one changed file of {files}, over a full status", own / full, 0.05, f"full {full:.2f} s")
    change_all(copy)
    first, changed = in_turn(3, first_count, everything)
    row(f"first count of {files} changed files, over a full status", first / changed, None,
        f"{first:.2f} s, client {changed:.2f} s; read and parsed by this program")
    before = bench.kilobytes()
    seconds = timed(lambda: bench.server.request("workingCopy/status", workingCopy=copy, refresh=True))
    row(f"memory with {files} changed items, MB", bench.kilobytes() / 1024, None,
        f"{before / 1024:.0f} MB before; the status took {seconds:.2f} s")
    begin = time.perf_counter()
    items = bench.server.request("workingCopy/status", workingCopy=copy)["items"]
    seconds = time.perf_counter() - begin
    size = len(json.dumps(items)) / 1e6
    row("JSON written and read, MB/s", size / seconds, None, f"{size:.1f} MB in {seconds:.2f} s")
    bench.server.close()


def measure_log(command, place, revisions):
    repository = os.path.join(place, "history")
    subprocess.run(["svnadmin", "create", repository], check=True)
    records = ["SVN-fs-dump-format-version: 2\n\n"]
    for number in range(1, revisions + 1):
        properties = ("K 7\nsvn:log\nV 12\nA change {:4d}\nK 10\nsvn:author\nV 5\nalice\n"
                      "K 8\nsvn:date\nV 27\n2020-01-01T00:00:00.000000Z\nPROPS-END\n")
        text = properties.format(number % 10000).replace("V 12\nA change", "V 13\nA change")
        node = "add\n" if number == 1 else "change\n"
        records.append(f"Revision-number: {number}\nProp-content-length: {len(text)}\n"
                       f"Content-length: {len(text)}\n\n{text}\n"
                       f"Node-path: a\nNode-kind: file\nNode-action: {node}"
                       f"Text-content-length: 8\nContent-length: 8\n\n{number:07d}\n\n\n")
    subprocess.run(["svnadmin", "load", "-q", "--no-flush-to-disk", "-M", "64", repository], check=True,
                   input="".join(records).encode())
    url = "file://" + repository
    bench = Bench(command)

    def served():
        count = len(bench.parts)
        begin = time.perf_counter()
        started = bench.server.start("history/log", url=url, limit=revisions, partialResultToken=1)
        first = bench.wait_for(bench.parts, count + 1) - begin
        bench.server.wait(started)
        return first

    def client():
        begin = time.perf_counter()
        with subprocess.Popen(["svn", "log", "--xml", url], stdout=subprocess.PIPE) as process:
            process.stdout.readline()
            first = time.perf_counter() - begin
            while process.stdout.read(1 << 20):
                pass
        return first

    own, theirs = in_turn(5, served, client)
    row(f"first records of {revisions} revisions, over the client's first line", own / theirs, 1.5,
        f"{own * 1e3:.1f} ms, client {theirs * 1e3:.1f} ms")
    bench.server.close()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--server", default=os.path.join(ROOT, "build/release/bin/quen"))
    parser.add_argument("--small", action="store_true")
    options = parser.parse_args()
    place = tempfile.mkdtemp(prefix="quen-")
    print("| figure | value | at most | |\n|---|---|---|---|")
    try:
        for name, work in (("status", lambda *to: measure_status(*to, 5 if options.small else 60)),
                           ("large", lambda *to: measure_large(*to, 2000 if options.small else 60000)),
                           ("log", lambda *to: measure_log(*to, 300 if options.small else 60000))):
            os.mkdir(os.path.join(place, name))
            work(options.server, os.path.join(place, name))
    finally:
        shutil.rmtree(place)
    return 0 if met else 1


if __name__ == "__main__":
    sys.exit(main())
