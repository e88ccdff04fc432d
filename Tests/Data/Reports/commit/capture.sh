#!/bin/sh
# Makes the outputs of this directory again: what the client on PATH prints when it commits.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
export LC_ALL=C.UTF-8
svn() { command svn --config-dir "$place/config" --non-interactive --username jane "$@"; }

svnadmin create "$place/repository"
svn checkout -q "file://$place/repository" "$place/ours"
cd "$place/ours"
mkdir directory
for name in changed gone props; do echo "$name" > "$name"; done
echo inside > directory/inside
svn add -q changed gone props directory
svn commit -m 'The beginning' . > "$here/additions.txt"

echo more >> changed
svn remove -q gone
svn propset -q colour blue props
printf '\000\001' > image && svn add -q image
svn commit -m 'Of every kind' changed gone props image > "$here/changes.txt"

echo misleading > 'Committed revision 7.txt'
svn add -q 'Committed revision 7.txt'
svn commit -m 'A file that looks like the end' . > "$here/misleading-name.txt"

hook="$place/repository/hooks/post-commit"
printf '#!/bin/sh\necho "Committed revision 1000" >&2\nexit 1\n' > "$hook"
chmod +x "$hook"
echo more >> changed
svn commit -m 'Then the hook fails' changed > "$here/hook-failed.txt"

hook="$place/repository/hooks/pre-commit"
printf '#!/bin/sh\necho "Not today." >&2\nexit 1\n' > "$hook"
chmod +x "$hook"
echo more >> changed
svn commit -m 'Refused' changed > "$here/refused.txt" 2> /dev/null || true
