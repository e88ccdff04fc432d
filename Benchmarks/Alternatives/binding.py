#!/usr/bin/python3
"""The client's own library through its Python binding: no client process and no report at all.

    binding.py KIND PLACE

PLACE is a working copy for a status and a URL else. Prints how many records it made, and the seconds
it took without the interpreter's own start.
"""

import sys
import time

from svn import client, core


def revision(kind, number=0):
    one = core.svn_opt_revision_t()
    one.kind = kind
    if number:
        one.value.number = number
    return one


HEAD = revision(core.svn_opt_revision_head)
FIRST = revision(core.svn_opt_revision_number, 1)


def status(context, place, records):
    def take(path, state, _pool):
        records.append({"path": path, "item": state.text_status, "props": state.prop_status,
                        "revision": state.revision, "changed": state.changed_rev,
                        "author": state.changed_author, "date": state.changed_date})

    client.svn_client_status5(context, place, revision(core.svn_opt_revision_unspecified),
                              core.svn_depth_infinity, False, False, False, False, False, None, take)


def log(context, place, records):
    def take(entry, _pool):
        paths = [(path, change.action) for path, change in entry.changed_paths2.items()]
        records.append({"revision": entry.revision, "paths": paths, **entry.revprops})

    everything = core.svn_opt_revision_range_t()
    everything.start, everything.end = HEAD, FIRST
    client.svn_client_log5([place], HEAD, [everything], 0, True, False, False, None, take, context)


def blame(context, place, records):
    def take(line, number, author, date, _text, _pool):
        records.append({"line": line, "revision": number, "author": author, "date": date})

    client.svn_client_blame2(place, HEAD, FIRST, HEAD, take, context)


def main():
    kind, place = sys.argv[1], sys.argv[2].encode()
    context = client.svn_client_create_context()
    context.auth_baton = core.svn_auth_open([client.get_simple_provider()])
    records = []
    begin = time.perf_counter()
    {"status": status, "log": log, "blame": blame}[kind](context, place, records)
    print(len(records), time.perf_counter() - begin)


main()
