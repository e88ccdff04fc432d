#!/bin/bash
# Runs the tests of the server's client with node's own runner, against the program $1.
#
#     Scripts/client-tests.sh PROGRAM

cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." || exit
. Scripts/node.sh

[[ -x ${1:-} ]] || { editor_say "not a program: ${1:-}"; exit 2; }
editor_install . || exit
node build.mjs --client-tests || exit
QUEN_PROGRAM=$1 exec node --test out/client/
