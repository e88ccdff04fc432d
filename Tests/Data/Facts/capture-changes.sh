#!/bin/sh
# Makes the texts in `change` again: what the client on PATH prints while it updates, merges,
# switches, checks out, adds, commits, reverts and resolves, in every situation that a reader of
# these texts has to know. The runs carry what the provider's carry.
set -eu
here=$(cd "$(dirname "$0")" && pwd)/change
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
export LC_ALL=C.UTF-8
svn() { command svn --config-dir "$place/config" --non-interactive --username jane "$@"; }
# What fails counts too: the client ends with 1 where it leaves a tree conflict.
keep() {
    name=$1
    shift
    svn "$@" > "$here/$name.txt" 2> "$place/errors" || cp "$place/errors" "$here/$name.stderr"
    sed -i "s|$place|/place|g" "$here/$name."*
}
lines() { printf '1\n2\n3\n4\n5\n6\n7\n8\n9\n'; }
rm -f "$here"/*.txt "$here"/*.stderr

svnadmin create "$place/repository"
url="file://$place/repository"
svn checkout -q "$url" "$place/ours"
cd "$place/ours"
mkdir main lib gone gone-edited gone-twice colours moved-dir
for name in changed deleted deleted-edited deleted-twice merged conflicted properties \
    properties-merged both binary edited-gone missing missing-gone replaced replaced-edited \
    moved-away moved-twice locked 'icon@2x.png' "it's" 'a & b <ü>' gone/x gone-edited/x \
    gone-edited/y gone-twice/x moved-dir/a main/m lib/l; do
    lines > "$name"
done
printf '\000\001' > binary
svn add -q --force --no-auto-props .
svn propset -q svn:mime-type application/octet-stream binary
svn propset -q colour blue properties properties-merged both colours
svn commit -q -m 'The beginning' .
svn update -q
svn checkout -q "$url" "$place/theirs"

# Theirs
cd "$place/theirs"
sed -i 1s/.*/theirs/ changed merged
sed -i 5s/.*/theirs/ conflicted both edited-gone replaced-edited moved-away moved-dir/a \
    'icon@2x.png' "it's" 'a & b <ü>'
svn remove -q deleted deleted-edited deleted-twice missing-gone gone gone-edited gone-twice
svn move -q moved-twice moved-by-them
printf '\000\002' > binary
svn propset -q colour red properties both colours
svn propset -q size 3 properties-merged
svn remove -q replaced
echo new > replaced
mkdir in-the-way-of-a-directory new
for name in added existed in-the-way-of-a-file new/n; do echo theirs > "$name"; done
echo same > the-same
svn add -q replaced in-the-way-of-a-directory new added existed in-the-way-of-a-file the-same
svn commit -q -m 'Theirs' .
svn update -q

# Ours
cd "$place/ours"
svn lock -q -m 'Mine' locked
cd "$place/theirs"
svn lock -q --force locked
echo theirs > locked
svn commit -q -m 'Somebody else took the lock' locked
cd "$place/ours"
sed -i 9s/.*/ours/ merged
sed -i 5s/.*/ours/ conflicted both deleted-edited 'icon@2x.png' "it's" 'a & b <ü>'
printf '\000\003' > binary
svn propset -q colour green properties both colours
svn propset -q weight 3 properties-merged
svn remove -q edited-gone deleted-twice gone-twice
echo ours >> gone-edited/x
svn move -q moved-away moved-to
svn move -q moved-twice moved-by-us
svn move -q moved-dir moved-dir-to
svn remove -q replaced-edited
echo ours > replaced-edited
echo ours > existed
svn add -q replaced-edited existed
echo same > the-same
mkdir in-the-way-of-a-file
echo ours > in-the-way-of-a-directory
rm missing missing-gone
svn propset -q svn:externals "^/lib lib-external
^/main/m file-external" .
cp -r . "$place/second"
cp -r . "$place/third"

keep update-with-tree-conflicts update --accept mine-full
keep update-again update --accept mine-full
keep status-after-update status
keep resolve resolve -R --accept working .
keep revert revert -R .

# The same without trees in conflict: the client ends with 0.
cd "$place/second"
svn revert -q -R edited-gone replaced-edited existed moved-away moved-to moved-dir moved-dir-to \
    moved-twice moved-by-us gone-edited gone-twice deleted-edited deleted-twice
rm -rf existed the-same in-the-way-of-a-file in-the-way-of-a-directory moved-to moved-by-us moved-dir-to
keep update-settled update --accept mine-full
svn revert -q -R .
keep update-several update --accept mine-full conflicted main nowhere "$place/theirs"
keep update-to-old update --accept mine-full -r 1
svn update -q

# What is left in conflict is skipped the next time.
cd "$place/third"
svn revert -q -R existed edited-gone
rm -rf existed the-same in-the-way-of-a-file in-the-way-of-a-directory
keep update-postponed update --accept postpone conflicted both colours
keep update-after-postponed update --accept mine-full

# Nested externals, and one that is gone.
cd "$place/theirs"
svn propset -q svn:externals "^/main inner" lib
svn commit -q -m 'An external in an external' .
svn update -q
cd "$place/second"
svn propset -q svn:externals "^/lib outer
^/nowhere broken
^/main after" .
keep update-nested-externals update --accept mine-full
svn propdel -q svn:externals .
keep update-removed-external update --accept mine-full
svn revert -q -R .

# Branches
svn copy -q -m 'A branch' "$url/main" "$url/branch"
cd "$place/theirs"
svn update -q --ignore-externals
cd main
for name in conflicted changed deleted moved properties both; do lines > "$name"; done
mkdir deep
lines > deep/d
svn add -q --force .
svn propset -q colour blue properties both
svn commit -q -m 'More in main' .
svn copy -q -m 'A second branch' "$url/main" "$url/second-branch"
svn update -q
sed -i 1s/.*/main/ conflicted changed both
svn propset -q colour red properties both
svn commit -q -m 'Main goes on' .
svn remove -q deleted
svn move -q moved moved-in-main
echo more >> deep/d
echo new > new
svn add -q new
svn commit -q -m 'And on' .
sed -i 9s/.*/main/ conflicted
echo more >> new
svn commit -q -m 'And on again' .
svn update -q

svn checkout -q "$url/second-branch" "$place/branch"
cd "$place/branch"
sed -i 1s/.*/branch/ conflicted both
svn propset -q colour green properties both
cp -r . "$place/branch-with-trees"
cp -r . "$place/branch-switched"
keep merge-settled merge --accept mine-full "$url/main" .
svn revert -q -R .
keep merge-one merge --accept mine-full -c 7 "$url/main" .
svn commit -q -m 'Merged' .
svn update -q
keep merge-reverse merge --accept mine-full -r 8:4 "$url/second-branch" .
svn revert -q -R .
keep merge-two-urls merge --accept mine-full "$url/main@4" "$url/main@7" .
cd "$place/branch-with-trees"
sed -i 5s/.*/branch/ deleted moved
echo unversioned > new
keep merge-with-tree-conflicts merge --accept mine-full "$url/main" .
cd "$place/branch-switched"
echo unversioned > new
keep switch switch "$url/main" .
keep switch-skipping switch "$url/main" .
keep switch-elsewhere switch "$url/second-branch" .

# Checkouts
cd "$place"
keep checkout checkout "$url" checked-out
mkdir over
echo different > over/added
echo same > over/the-same
echo file > over/new
mkdir over/changed
keep checkout-over checkout "$url" over
mkdir forced
echo different > forced/added
echo same > forced/the-same
keep checkout-forced checkout --force "$url" forced
keep export export "$url/lib" exported

# Scheduling and committing
cd "$place/checked-out"
svn update -q --ignore-externals
sed -i 5s/.*/ours/ changed moved-by-them
echo one > one
printf '\000\001' > image
svn propset -q svn:mime-type image/png changed
keep add add one image "new/n"
svn propset -q svn:mime-type image/png image
keep copy copy main copied
keep move move merged moved
keep remove remove --force colours the-same
keep make-directory mkdir made
svn remove -q replaced
echo again > replaced
svn add -q replaced
keep commit commit -m 'Of every kind' .
