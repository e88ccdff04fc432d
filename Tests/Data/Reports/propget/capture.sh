#!/bin/sh
# Makes the reports of this directory again: the ignore lists of several directories, asked of the
# client on PATH. The paths in them differ each time.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
export LC_ALL=C.UTF-8
svn() { command svn --config-dir "$place/config" --non-interactive --username jane "$@"; }
lists() { svn propget --xml svn:ignore "$place/ours/$1"; }

svnadmin create "$place/repository"
svn checkout -q "file://$place/repository" "$place/ours"
cd "$place/ours"
svn mkdir -q several single odd none
svn propset -q svn:ignore "$(printf 'b.txt\na.txt\nc.txt')" several
svn propset -q svn:ignore 'a.txt' single
svn propset -q svn:ignore "$(printf 'b.txt\n\n*\na & b <ü>\n  *.o ')" odd

lists several > "$here/several.xml"
lists single > "$here/single.xml"
lists odd > "$here/odd.xml"
lists none > "$here/none.xml" 2> "$here/none.stderr" || true
mkdir "$place/elsewhere"
svn propget --xml svn:ignore "$place/elsewhere" > "$here/not-a-working-copy.xml" 2> /dev/null || true
