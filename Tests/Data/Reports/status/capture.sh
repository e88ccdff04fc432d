#!/bin/sh
# Makes the reports of this directory again: one repository, one working copy with an item in every
# state that can be brought about, asked by the client on PATH. Dates differ each time.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
export LC_ALL=C.UTF-8
svn() { command svn --config-dir "$place/config" --non-interactive --username jane "$@"; }

svnadmin create "$place/repository"
url="file://$place/repository"
svn checkout -q "$url" "$place/ours"
cd "$place/ours"
mkdir plain conflict directory
for name in clean modified deleted missing replaced copied moved both obstructed old 'icon@2x.png' 'a & b <ü>'; do
    echo "$name" > "plain/$name"
done
for name in text props incoming gone; do echo "$name" > "conflict/$name"; done
echo inside > directory/inside
svn add -q plain conflict directory
svn propset -q svn:ignore '*.o' plain
svn propset -q colour blue conflict/props
svn propset -q svn:externals "^/directory elsewhere" .
svn commit -q -m 'The beginning' .
svn update -q

svn checkout -q --ignore-externals "$url" "$place/theirs"
(
    cd "$place/theirs"
    echo theirs > conflict/text
    svn propset -q colour red conflict/props
    echo more >> conflict/incoming
    svn remove -q conflict/gone
    svn commit -q -m 'Theirs' .
)
echo ours > conflict/text
svn propset -q colour green conflict/props
echo ours >> conflict/gone
svn update -q --accept postpone conflict

cd plain
echo more >> modified
echo more >> 'icon@2x.png'
echo more >> 'a & b <ü>'
svn propset -q size large clean
echo more >> both
svn propset -q size large both
svn remove -q deleted
rm missing
svn remove -q replaced && echo new > replaced && svn add -q replaced
svn copy -q copied copy
svn move -q moved moved-away
rm obstructed && mkdir obstructed
echo new > added && svn add -q added
echo nobody > unversioned
echo object > ignored.o
cd ..

svn status --no-ignore --xml > "$here/working-copy.xml"
svn status --no-ignore --xml plain/clean plain/modified conflict > "$here/several-targets.xml"
svn status --no-ignore --xml directory > "$here/nothing-to-report.xml"
svn status --no-ignore --xml nowhere > "$here/not-a-working-copy.xml" 2> /dev/null || true
svn changelist -q later plain/modified
svn status --no-ignore --xml plain/modified plain/both > "$here/changelist.xml"
svn changelist -q --remove plain/modified

(
    cd "$place/theirs"
    svn update -q --ignore-externals
    echo later >> plain/modified
    echo later >> plain/old
    svn propset -q size small plain/both
    svn remove -q plain/deleted
    svn remove -q directory/inside
    echo new > directory/new && svn add -q directory/new
    svn remove -q plain/copied && echo new > plain/copied && svn add -q plain/copied
    svn lock -q plain/clean
    svn commit -q --no-unlock -m 'Later' .
)
svn status -u --no-ignore --xml plain directory > "$here/remote.xml"
mv "$place/repository" "$place/away"
svn status -u --no-ignore --xml plain > "$here/repository-gone.xml" 2> /dev/null || true
