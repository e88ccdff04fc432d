#!/usr/bin/env python3
"""Does what a page says, in a root and a home of its own, and compares what is printed.

    transcript.py PAGE ROOT PACKAGES HOME

With QUEN_WRITE_TRANSCRIPT=1 it writes into the page what is printed.

Each line of a page's ```console blocks that begins with `$` is a command; the lines up to the next
one are what it must print, on both streams. The page speaks of /usr and of /home/me: these are
ROOT/usr and HOME. Installing unpacks the packages that are named, from PACKAGES, into ROOT.
"""
import os
import re
import subprocess
import sys

page, root, packages, home = (os.path.abspath(word) for word in sys.argv[1:])


def steps(text):
    """Commands with what they print."""
    for block in re.findall(r"^```console\n(.*?)^```", text, re.M | re.S):
        for part in re.split(r"^\$ ", block, flags=re.M)[1:]:
            command, _, output = part.partition("\n")
            yield command, output


def perform(command):
    installed = re.findall(r"\./(\S+\.deb)", command)
    if command.startswith("sudo apt install") and installed:
        for package in installed:
            subprocess.run(["dpkg-deb", "-x", os.path.join(packages, package), root], check=True)
        return ""
    here = command.replace("/usr/", f"{root}/usr/").replace("/home/me", home)
    done = subprocess.run(["bash", "-c", here], cwd=home, env=variables, text=True,
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, timeout=300)
    return done.stdout.replace(root, "").replace(home, "/home/me")


os.makedirs(home, exist_ok=True)
variables = {**os.environ, "HOME": home, "USER": "me", "LC_ALL": "C.UTF-8",
             "PATH": f"{root}/usr/bin:{os.environ['PATH']}", "CMAKE_PREFIX_PATH": f"{root}/usr",
             "PKG_CONFIG_PATH": f"{root}/usr/lib/pkgconfig", "LD_LIBRARY_PATH": f"{root}/usr/lib"}
with open(page) as file:
    text = file.read()
found = list(steps(text))
printed = [(command, perform(command)) for command, _ in found]
if os.environ.get("QUEN_WRITE_TRANSCRIPT"):
    for (command, expected), (_, output) in zip(found, printed):
        text = text.replace(f"$ {command}\n{expected}", f"$ {command}\n{output}", 1)
    with open(page, "w") as file:
        file.write(text)
elif len(found) < 5:
    sys.exit(f"{page} has only {len(found)} commands")
for (command, expected), (_, output) in zip(found, printed):
    if expected != output:
        sys.exit(f"$ {command}\nprinted\n{output}where the page had\n{expected}")
print(f"{len(found)} commands print what {os.path.basename(page)} says")
