#!/bin/sh
# Makes the reports of blame/, diff/, info/, list/ and log/ again: one repository of seven revisions
# with fixed authors and dates, one working copy with local changes, asked by the client on PATH.
# Places are replaced, so that only the order of attributes differs from one time to the next.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
export LC_ALL=C.UTF-8
svn() { command svn --config-dir "$place/config" --non-interactive --username anna "$@"; }

svnadmin create "$place/repository"
url="file://$place/repository"
svn mkdir -q -m 'Lay out the repository' "$url/trunk" "$url/branches" "$url/tags"
svn checkout -q "$url/trunk" "$place/project"
cd "$place/project"

mkdir src 'Ü folder'
printf 'int main() {\n    return 0;\n}\n' > src/main.c
printf 'first\nsecond\n' > 'Ü folder/a & b.txt'
printf 'x' > 'icon@2x.png'
touch old.c
svn add -q src 'Ü folder' 'icon@2x.png@' old.c
svn commit -q -m 'Begin: <main> & "friends"

Zweite Zeile äöü ✓'
printf '#include <stdio.h>\nint main() {\n    puts("hello");\n    return 0;\n}\n' > src/main.c
svn commit -q -m ''
svn update -q
svn copy -q ^/trunk ^/branches/feature-x -m 'Branch for x'
svn copy -q ^/trunk '^/branches/fix me' -m 'Another'
svn update -q
svn move -q old.c new.c
svn propset -q svn:eol-style native src/main.c
svn commit -q -m 'Rename'
svn update -q
svn remove -q new.c
printf 'n' > new.c
svn add -q new.c
svn commit -q -m 'Replace'

revision=1
for author in anna anna ben '' anna 'Ben Müller' ben; do
    printf '%s' "$author" > "$place/author"
    if [ -n "$author" ]; then
        svnadmin setrevprop "$place/repository" -r "$revision" svn:author "$place/author"
    else
        svnadmin delrevprop "$place/repository" -r "$revision" svn:author
    fi
    printf '2024-0%d-1%dT0%d:15:30.%d%d%d%d%d%dZ' "$revision" "$revision" "$revision" "$revision" \
        "$revision" "$revision" "$revision" "$revision" "$revision" > "$place/date"
    svnadmin setrevprop "$place/repository" -r "$revision" svn:date "$place/date"
    revision=$((revision + 1))
done

# The working copy remembers the dates of its own commits; a fresh one has the new ones.
rm -rf "$place/project"
cd "$place"
svn checkout -q "$url/trunk" project
cd project
printf 'edited\n' >> src/main.c
printf 'new\n' > src/added.c
svn add -q src/added.c
svn remove -q 'Ü folder/a & b.txt'
svn lock -q new.c

capture() {
    target=$1
    shift
    svn "$@" | sed \
        -e "s#$url#https://svn.example.org/repo#g" \
        -e "s#$place/#/home/anna/#g" \
        -e 's#opaquelocktoken:[0-9a-f-]*#opaquelocktoken:5b8f8a1e-0a5c-4f0e-9d0a-5d2f6f1c7e11#' \
        -e 's#<uuid>[^<]*#<uuid>1b6e2c9a-7d0f-4c53-8f5e-2a9c41d6b807#' \
        -e 's#<created>[^<]*#<created>2024-08-18T08:15:30.888888Z#' \
        -e 's#<text-updated>[^<]*#<text-updated>2024-08-18T08:15:30.888888Z#' \
        > "$here/$target"
}
capture info/items.xml info --xml . src/main.c src/added.c 'Ü folder' 'icon@2x.png@'
capture info/branch.xml info --xml "$url/branches/feature-x"
capture list/directory.xml list --xml "$url/trunk"
capture list/branches.xml list --xml "$url/branches"
capture list/two-locations.xml list --xml "$url/trunk" "$url/branches"
capture diff/summary.xml diff --summarize --xml "$url/trunk@2" "$url/trunk@7"
capture diff/working-copy.txt diff
capture diff/range.txt diff -r 2:7 src/main.c
capture log/with-files.xml log --xml -v "$url"
capture log/file.xml log --xml src/main.c
capture log/empty.xml log --xml -r 5:5 src/main.c
capture blame/file.xml blame --xml src/main.c
capture blame/two-files.xml blame --xml src/main.c new.c
