#!/bin/sh
# Makes the output of this directory again: what the client on PATH prints when it checks out.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
export LC_ALL=C.UTF-8
svn() { command svn --config-dir "$place/config" --non-interactive --username jane "$@"; }

svnadmin create "$place/repository"
svn mkdir -q -m 'The beginning' "file://$place/repository/trunk"
cd "$place"
svn checkout "file://$place/repository" checked-out > "$here/checked-out.txt"
