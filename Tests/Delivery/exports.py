#!/usr/bin/env python3
"""Holds what the shared libraries export to what the public headers mark.

    exports.py NM HEADERS-LIST TREE LIBRARY...

HEADERS-LIST is cmake/QuenHeaders.cmake. A name is right where the class or function that it begins
with is marked with QUEN_EXPORT in a public header, and every further part of it is named in one;
but not what belongs to a class that the headers only declare.
"""
import re
import subprocess
import sys
from pathlib import Path


def public_text(list_file, tree, left_out=()):
    paths = re.findall(r"^ +((?:Contract|Foundation|Host)/[^\s)]+)", list_file.read_text(), re.M)
    return "\n".join((tree / path).read_text() for path in paths if path not in left_out)


def exported(nm, library):
    """The names without their parameters' types, such as quen::String::~String."""
    lines = subprocess.run([nm, "--dynamic", "--defined-only", "--demangle", str(library)],
                           check=True, capture_output=True, text=True).stdout.splitlines()
    for line in lines:
        kind, name = line.split(" ", 2)[1:]
        name = name.split("@@")[0]
        if kind != "A" and "quen::" not in name:
            yield name  # of no namespace of ours
        elif kind != "A":
            name = re.sub(r"^.* for ", "", re.sub(r"\[abi:\w+\]", "", name))
            yield re.sub(r"<[^<>]*>|\(.*", "", name)


def unknown(names, text):
    """Those that no public header marks."""
    text = re.sub(r"//.*", "", text)
    words = set(re.findall(r"\w+", text))
    marked = set(re.findall(r"QUEN_EXPORT\s+(\w+)\s*(?:final\s*)?[:{]", text))
    for statement in re.findall(r"QUEN_EXPORT[^;{]*", text):
        marked |= set(re.findall(r"(\w+)\s*(?:\(|$|=)", statement))
    defined = set(re.findall(r"(?:struct|class)\s+(?:QUEN_EXPORT\s+)?(?:\w+::)?(\w+)[^;{}]*\{", text))
    opaque = set(re.findall(r"(?:struct|class) (\w+);", text)) - defined
    for name in sorted(set(names)):
        parts = re.findall(r"~?\w+|operator\W+", name.removeprefix("quen::"))
        isOperator = parts[:1] and parts[0].startswith("operator")
        known = all(part.startswith("operator") or part.lstrip("~") in words for part in parts)
        isInside = not opaque.isdisjoint(parts[1:])
        if not parts or not known or isInside or not (isOperator or parts[0] in marked):
            yield name


def main():
    nm, list_file, tree = sys.argv[1], Path(sys.argv[2]), Path(sys.argv[3])
    names = [name for library in sys.argv[4:] for name in exported(nm, library)]
    if len(names) < 100:
        sys.exit(f"only {len(names)} names were read")
    wrong = list(unknown(names, public_text(list_file, tree)))
    if wrong:
        sys.exit("exported, and in no public header:\n  " + "\n  ".join(wrong))
    # The same look finds something where a header is no longer public.
    found = list(unknown(names, public_text(list_file, tree, ("Foundation/URL.h",))))
    if not any(name.startswith("quen::URL") for name in found):
        sys.exit(f"an internal class that is exported would not be found: {found}")
    print(f"{len(names)} names, all of public headers")


main()
