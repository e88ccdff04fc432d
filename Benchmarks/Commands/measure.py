#!/usr/bin/env python3
"""Measures quen's commands beside the client's, in turns, on a generated repository.

Prints one Markdown row a figure: the median of the ratios of all turns, the least times of both, the
bound. Ends with status 1 where a bound is not met. Bounds are those of a quiet machine; --slack widens
them all.
"""

import argparse
import os
import random
import statistics
import subprocess
import sys
import tempfile
import time

from dump import Dump


def generate(out, revisions, lines, megabytes):
    dump = Dump(out)
    dump.revision(1, "Begin")
    dump.directory("trunk")
    dump.file("trunk/a.txt", b"add", b"0\n")
    text = [b"int value_%d = compute(%d);\n" % (i, i * 7) for i in range(lines)]
    dump.revision(2, "Lines")
    dump.file("trunk/lines.c", b"add", b"".join(text))
    text[::50] = [b"int changed_%d;\n" % i for i in range(0, lines, 50)]
    dump.revision(3, "Change lines")
    dump.file("trunk/lines.c", b"change", b"".join(text))
    dump.revision(4, "Bytes")
    dump.file("trunk/big.bin", b"add", random.Random(1).randbytes(megabytes * 1_000_000))
    for number in range(5, revisions + 1):
        dump.revision(number, f"Change {number}\n\nA second paragraph says why.")
        dump.file("trunk/a.txt", b"change", b"%d\n" % number)


def first_line(command):
    start = time.perf_counter()
    with subprocess.Popen(command, stdout=subprocess.PIPE) as process:
        if not process.stdout.readline():
            sys.exit(f"{command} printed nothing")
        took = time.perf_counter() - start
        process.kill()
    return took


def whole(command):
    start = time.perf_counter()
    subprocess.run(command, stdout=subprocess.DEVNULL, check=True)
    return time.perf_counter() - start


def figure(name, take, ours, theirs, turns, bound):
    take(ours), take(theirs)
    pairs = [(take(ours), take(theirs)) for _ in range(turns)]
    ratio = statistics.median(one / other for one, other in pairs)
    least = [min(times) * 1000 for times in zip(*pairs)]
    is_met = ratio <= bound
    print(
        f"| {name} | {ratio:.2f} | {least[0]:.0f} ms, {least[1]:.0f} ms | {bound:.2f} "
        f"| {'yes' if is_met else '**no**'} |",
        flush=True,
    )
    return is_met


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--quen", required=True, help="the program to measure, an optimised build")
    parser.add_argument("--small", action="store_true", help="little data, to see that it works")
    parser.add_argument("--slack", type=float, default=1.0, help="factor for all bounds")
    options = parser.parse_args()
    quen = os.path.abspath(options.quen)
    revisions, lines, megabytes = (300, 2000, 1) if options.small else (20000, 400000, 20)
    with tempfile.TemporaryDirectory() as directory:
        repository, copy = directory + "/repository", directory + "/wc"
        subprocess.run(["svnadmin", "create", repository], check=True)
        load = ["svnadmin", "load", "-q", "--no-flush-to-disk", repository]
        with subprocess.Popen(load, stdin=subprocess.PIPE) as process:
            generate(process.stdin, revisions, lines, megabytes)
            process.stdin.close()
        url = f"file://{repository}/trunk"
        subprocess.run(["svn", "checkout", "-q", url, copy], check=True)
        os.chdir(copy)
        print("| figure | ratio | least | bound | met |\n|---|---|---|---|---|")
        rows = [
            ("log, first line", first_line, ["log"], ["log", "-r", "HEAD:1"], 25, 1.5),
            ("log of a URL, first line", first_line, ["log", url], ["log", url], 25, 1.5),
            ("cat, whole", whole, ["cat", "big.bin"], ["cat", "big.bin"], 9, 2.5),
            ("blame, whole", whole, ["blame", "lines.c"], ["blame", "-v", "lines.c"], 3, 1.3),
        ]
        met = [
            figure(name, take, [quen, *ours], ["svn", *theirs], turns, bound * options.slack)
            for name, take, ours, theirs, turns, bound in rows
        ]
    return 0 if all(met) else 1


if __name__ == "__main__":
    sys.exit(main())
