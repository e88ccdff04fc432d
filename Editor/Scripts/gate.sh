#!/bin/bash
# All that must hold of the extension, against the program $1 in the build directory that it was made
# in: types, lint, the client's tests, the package, the tests in the extension host, the journeys.
#
#     Scripts/gate.sh BUILD/bin/quen

newest_package() {
    local packages=(../build/editor/quen-subversion-linux-*.vsix)
    realpath -- "${packages[0]}"
}

program=$(realpath -- "$1") || exit
cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." || exit
. Scripts/node.sh

[[ -x $program ]] || { editor_say "not a program: $program"; exit 2; }
export QUEN_PROGRAM=$program
editor_install . || exit
# What people's editors offer is what the types of 1.96 hold; a proposed interface fails here.
npm run --silent check-types || exit
npm run --silent lint || exit
Scripts/client-tests.sh "$program" || exit

places=$(Workbench/install --with-browser) || exit
eval "$places"
./package --build "${program%/bin/*}" || exit
node build.mjs && node build.mjs --host-tests --browser-tests || exit
export QUEN_EDITOR_MODULES QUEN_EDITOR_EXTENSION
QUEN_EDITOR_EXTENSION=$(newest_package) || exit
export QUEN_EDITOR_PICTURES=$PWD/../build/editor/pictures
"$QUEN_EDITOR_NODE" out/browser/host.js || exit
"$QUEN_EDITOR_NODE" --test out/browser/try.test.js || exit
exec "$QUEN_EDITOR_NODE" --test out/browser/journeys.test.js
