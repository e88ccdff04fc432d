#!/usr/bin/env python3
"""Runs the environment of the examples on a working copy whose server wants a password.

    sign_in.py ENVIRONMENT SCRATCH
"""
import os
import re
import signal
import socket
import subprocess
import sys
import time

program, scratch = sys.argv[1:]
home, store, copy = (os.path.join(scratch, name) for name in ("home", "store", "copy"))
os.makedirs(home)
variables = {**os.environ, "HOME": home, "LC_ALL": "C.UTF-8"}


def run(*words, patience=60):
    done = subprocess.run(words, env=variables, capture_output=True, text=True, timeout=patience)
    return done.returncode, done.stdout + done.stderr


def must(*words):
    status, text = run(*words)
    if status != 0:
        sys.exit(f"{words} ended with {status}:\n{text}")
    return text


def start_server():
    """One that listens; another's port may be taken from under our hands, so it is tried again."""
    for _ in range(5):
        with socket.socket() as place:
            place.bind(("127.0.0.1", 0))
            port = place.getsockname()[1]
        server = subprocess.Popen(["svnserve", "-d", "--foreground", "-r", scratch, "--listen-host",
                                   "127.0.0.1", "--listen-port", str(port)])
        until = time.monotonic() + 10
        while server.poll() is None and time.monotonic() < until:
            with socket.socket() as probe:
                if probe.connect_ex(("127.0.0.1", port)) == 0:
                    return server, port
        server.kill()
    sys.exit("no server could be started")


def expect(text, pattern):
    if not re.fullmatch(pattern, text):
        sys.exit(f"There was\n{text}instead of\n{pattern}")


must("svnadmin", "create", store)
must("svn", "mkdir", "-q", "-m", "Begin", f"file://{store}/trunk")
with open(os.path.join(store, "conf/svnserve.conf"), "w") as file:
    file.write("[general]\nanon-access = none\nauth-access = write\npassword-db = passwd\n"
               "realm = example\n")
with open(os.path.join(store, "conf/passwd"), "w") as file:
    file.write("[users]\nalice = wonder land\n")
server, port = start_server()
try:
    url = f"svn://127.0.0.1:{port}"
    must("svn", "checkout", "-q", "--no-auth-cache", "--non-interactive", "--username", "alice",
         "--password", "wonder land", f"{url}/store/trunk", copy)
    with open(os.path.join(copy, "new.txt"), "w") as file:
        file.write("new\n")

    asked = f"sign in: <{url}> example\n"
    signed_in = [program, "--user", "alice", "--password", "wonder land"]
    expect(run(*signed_in, "--progress", copy)[1], re.escape(asked) + r"(?:  \d+ bytes so far\n)+" +
           re.escape(f"changes in {copy}\n  new {copy}/new.txt\n  r1 Begin\n") + r"  cancelled\n")

    refused = run(program, "--user", "alice", "--password", "wrong", copy)[1]
    expect(refused, f"(?:{re.escape(asked)})+changes in {re.escape(copy)}\n"
           r"(?:  new \S+\n)?  failed: (?s:.*)[Aa]uthentic(?s:.*)  cancelled\n")

    # A server that has stopped to answer.
    server.send_signal(signal.SIGSTOP)
    began = time.monotonic()
    status, text = run(*signed_in, "--patience", "1", copy)
    expect(text, re.escape(f"changes in {copy}\n") + r"  failed: .*cancelled.*\n")
    if status != 0 or not 1 <= time.monotonic() - began < 30:
        sys.exit(f"given up with status {status} after {time.monotonic() - began} s")
finally:
    server.send_signal(signal.SIGCONT)
    server.kill()
    server.wait()
