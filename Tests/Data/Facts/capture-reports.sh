#!/bin/sh
# Makes the reports in `status`, `info` and `list` again: what the client on PATH says of a working
# copy in which everything is that the provider's records leave out. Dates and lock tokens differ
# each time.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
export LC_ALL=C.UTF-8
svn() { command svn --config-dir "$place/config" --non-interactive --username jane "$@"; }
keep() {
    name=$1
    shift
    svn "$@" > "$here/$name" 2> /dev/null || echo "$name: the client failed"
    sed -i "s|$place|/place|g" "$here/$name"
}
mkdir -p "$here/status" "$here/info" "$here/list"

svnadmin create "$place/repository"
url="file://$place/repository"
svn checkout -q "$url" "$place/ours"
cd "$place/ours"
mkdir main branch moved-dir locked-dir
for name in clean modified text properties trees moved locked stolen old replaced missing listed \
    'listed & odd' moved-dir/a branch/b main/m; do
    printf '1\n2\n3\n' > "$name"
done
svn add -q --force .
svn propset -q colour blue properties old
svn commit -q -m 'The beginning' .
svn update -q
svn checkout -q "$url" "$place/theirs"
cd "$place/theirs"
sed -i 2s/.*/theirs/ text trees
svn propset -q colour red properties
svn commit -q -m 'Theirs' .

cd "$place/ours"
sed -i 2s/.*/ours/ text
svn propset -q colour green properties
svn remove -q trees
svn update -q --accept postpone
svn lock -q -m 'Mine, "for" <now>' locked stolen
svn move -q moved moved-away
svn move -q moved-dir moved-dir-away
echo more >> moved-dir-away/a
svn switch -q --ignore-ancestry "$url/main" branch
svn propset -q svn:externals "^/main external
^/main/m file-external" .
svn update -q
for name in modified listed 'listed & odd' external/m; do echo more >> "$name"; done
svn changelist -q 'Later & <never>' 'listed & odd'
svn changelist -q first listed clean
svn remove -q replaced
echo new > replaced
svn add -q replaced
rm missing
echo nobody > unversioned
(
    cd "$place/theirs"
    echo more >> old
    svn propset -q colour black old
    echo new > incoming
    svn add -q incoming
    svn remove -q clean
    svn commit -q -m 'Later' .
)

keep status/everything.xml status --no-ignore --xml
(cd "$place/theirs" && svn lock -q --force --username joe -m 'His' stolen)
keep status/everything-remote.xml status -u --no-ignore --xml
keep status/absolute.xml status --no-ignore --xml "$place/ours/listed" "$place/ours/moved-dir-away"
keep info/working-copy.xml info --xml . text properties trees moved moved-away locked listed branch
keep info/repository.xml info --xml "$url/main"
svn update -q --set-depth empty main
keep info/depth.xml info --xml main

# What a killed client leaves.
sqlite3 .svn/wc.db "insert into wc_lock values (1, 'locked-dir', -1)"
keep status/left-locked.xml status --no-ignore --xml

# Names and authors that XML cannot hold.
printf '#!/bin/sh\nexit 0\n' > "$place/repository/hooks/pre-revprop-change"
chmod +x "$place/repository/hooks/pre-revprop-change"
svn propset -q --revprop -r 1 svn:author "$(printf 'ev\002il')" "$url"
svn checkout -q "$url" "$place/odd"
cd "$place/odd"
printf x > "$(printf 'bell\007')"
printf x > "$(printf 'line\nfeed')"
printf x > "$(printf 'two\001\033[31m')"
echo more >> modified
keep status/control-characters.xml status --no-ignore --xml
keep list/control-characters.xml list --xml "$url"
keep info/control-characters.xml info --xml modified
touch "$(printf 'bad\377name')"
keep status/not-utf-8.xml status --no-ignore --xml
svn lock -q -m 'Busy' "$url/text"
keep list/locked.xml list --xml "$url" "$url/branch"
