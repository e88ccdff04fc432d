#!/bin/bash
# Measures the extension on very many changed files, with the program $1 in the build directory that
# it was made in.
#
#     Scripts/figures.sh BUILD/bin/quen [COUNT]

program=$(realpath -- "$1") || exit
cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." || exit
. Scripts/node.sh

[[ -x $program ]] || { editor_say "not a program: $program"; exit 2; }
places=$(Workbench/install --with-browser) || exit
eval "$places"
QUEN_EDITOR_EXTENSION=$PWD/../$(./package --build "${program%/bin/*}") || exit
node build.mjs --browser-tests || exit
export QUEN_PROGRAM=$program QUEN_EDITOR_MODULES QUEN_EDITOR_EXTENSION
exec "$QUEN_EDITOR_NODE" out/browser/figures.js ${2:+"$2"}
