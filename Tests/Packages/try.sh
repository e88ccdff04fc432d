#!/bin/bash
# Makes the Debian packages of a build, has them checked, unpacks them into a root of their own, and
# uses what is there as a person and as a host developer would.
#
#     Tests/Packages/try.sh BUILD SCRATCH

set -eu
build=$1 scratch=$2
here=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)

rm -rf "$scratch"
mkdir -p "$scratch/packages" "$scratch/root"
(cd "$build" && cpack -B "$scratch/packages" >"$scratch/cpack.log") || {
    tail -n 20 "$scratch/cpack.log"
    exit 1
}

as_user=()
[[ $(id -u) -ne 0 ]] || as_user=(--allow-root)
lintian "${as_user[@]}" --fail-on error "$scratch"/packages/*.deb

"$here/transcript.py" "$here/../../Documentation/first-host.md" \
    "$scratch/root" "$scratch/packages" "$scratch/me"
prefix=$scratch/root/usr

svnadmin create "$scratch/repository"
svn checkout -q "file://$scratch/repository" "$scratch/copy"
echo new >"$scratch/copy/new.txt"
"$prefix/bin/quen" status "$scratch/copy" | grep -q 'new\.txt'

export PKG_CONFIG_PATH=$prefix/lib/pkgconfig
module=$(pkg-config --variable=module quen)
# shellcheck disable=SC2046 # several words are wanted
"${CXX:-g++}" -std=c++20 "-DPROVIDER=\"$module\"" $(pkg-config --cflags quen) \
    "$here/../Package/main.cpp" -o "$scratch/foreign-host" $(pkg-config --libs quen) \
    "-Wl,-rpath,$prefix/lib"
"$scratch/foreign-host" "$scratch/copy" | grep -q 'new\.txt'

# The reference documentation, in which a warning is an error.
cmake --build "$build" --target QuenReference >"$scratch/reference.log" 2>&1 || {
    tail -n 20 "$scratch/reference.log"
    exit 1
}
[[ -s $build/reference/html/index.html ]]
"$here/builds.sh" "$scratch/builds" "$scratch/copy"
echo 'The packages serve a person and a host developer.'
