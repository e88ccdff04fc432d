#!/usr/bin/env python3
"""A client of `quen serve` in a page: opens a working copy, shows its status, follows its changes.

    editor_client.py [--server "quen serve"] DIRECTORY
"""
import argparse
import itertools
import json
import os
import shlex
import subprocess
import sys
import threading


class Server:
    """One server process. Requests may be sent from any thread."""
    def __init__(self, command, on_notification=lambda method, params: None,
                 on_question=lambda method, params: None):
        self.process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.on_notification, self.on_question = on_notification, on_question
        self.ids, self.lock, self.waiting = itertools.count(1), threading.Lock(), {}
        threading.Thread(target=self._read, daemon=True).start()

    def request(self, method, **params):
        """The result; raises RuntimeError with the error's message."""
        return self.wait(self.start(method, **params))

    def start(self, method, **params):
        """Sends a request without waiting, for `wait` and `cancel`."""
        number, answer = next(self.ids), {"event": threading.Event()}
        self.waiting[number] = answer
        self._send({"id": number, "method": method, "params": params})
        return number, answer

    def wait(self, started, seconds=600):
        if not started[1]["event"].wait(seconds) or "error" in started[1]:
            raise RuntimeError(started[1].get("error", {"message": "no answer"})["message"])
        return started[1]["result"]

    def cancel(self, started):
        self.notify("$/cancelRequest", id=started[0])
    def notify(self, method, **params):
        self._send({"method": method, "params": params})

    def close(self):
        self.request("shutdown")
        self.notify("exit")
        return self.process.wait(20)

    def _send(self, message):
        body = json.dumps({"jsonrpc": "2.0", **message}).encode()
        with self.lock:
            self.process.stdin.write(b"Content-Length: %d\r\n\r\n" % len(body) + body)
            self.process.stdin.flush()

    def _read(self):
        stream = self.process.stdout
        while line := stream.readline():
            length = int(line.split(b":")[1])
            stream.readline()
            self._take(json.loads(stream.read(length)))

    def _take(self, message):
        if "method" not in message:
            answer = self.waiting.pop(message["id"], {"event": threading.Event()})
            answer.update(message)
            answer["event"].set()
        elif "id" in message:  # the server asks, for a password for instance
            answer = self.on_question(message["method"], message["params"])
            self._send({"id": message["id"], "result": answer})
        else:
            self.on_notification(message["method"], message["params"])


def show(method, params):
    for item in params["changed"] if method == "workingCopy/changed" else []:
        print(f"{item['status']:12} {item['path']}", flush=True)
    for path in params["removed"] if method == "workingCopy/changed" else []:
        print(f"{'unchanged':12} {path}", flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--server", default="quen serve")
    parser.add_argument("directory", type=os.path.abspath)
    options = parser.parse_args()
    server = Server(shlex.split(options.server), show)
    server.request("initialize", clientInfo={"name": "example"})
    server.notify("initialized")
    facts = server.request("workingCopy/open", path=options.directory)
    status = server.request("workingCopy/status", workingCopy=facts["workingCopy"])
    show("workingCopy/changed", {"changed": status["items"], "removed": []})
    print(f"{facts['url']}: {status['counts']}; changes follow, Enter ends", flush=True)
    sys.stdin.readline()
    return server.close()


if __name__ == "__main__":
    sys.exit(main())
