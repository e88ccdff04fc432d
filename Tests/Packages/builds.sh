#!/bin/bash
# Builds the sources in the ways that other people build them: without a preset, as archives, with
# the prefix given when it is installed, and as a part of another project. A warning fails.
#
#     Tests/Packages/builds.sh SCRATCH WORKING-COPY
#
# WORKING-COPY has new.txt, which is not under version control.

set -eu
scratch=$1 copy=$2
here=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
tree=$(cd -- "$here/../.." && pwd)
rm -rf "$scratch"
mkdir -p "$scratch"

# Runs a command of a build quietly: its output is shown where it fails or warns.
quietly() {
    if ! "$@" >"$scratch/log" 2>&1 || grep -i 'warning:\|CMake Warning' "$scratch/log"; then
        tail -n 30 "$scratch/log"
        printf 'This failed, or warned: %s\n' "$*"
        exit 1
    fi
}

build() {
    quietly cmake --build "$1" --parallel 2 "${@:2}"
}

# Archives, in a directory for libraries that is not the usual one, and that CMake looks into.
libraries=lib/$("${CXX:-g++}" -dumpmachine)
quietly cmake -S "$tree" -B "$scratch/static" -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=OFF \
    -DQUEN_BUILD_TOOLS=OFF -DQUEN_BUILD_TESTS=OFF "-DCMAKE_INSTALL_LIBDIR=$libraries"
build "$scratch/static"
quietly cmake --install "$scratch/static" --prefix "$scratch/given later"
quietly cmake -S "$here/Static" -B "$scratch/host" "-DCMAKE_PREFIX_PATH=$scratch/given later" \
    "-DCMAKE_RUNTIME_OUTPUT_DIRECTORY=$scratch/given later/bin"
build "$scratch/host"
"$scratch/given later/bin/first-host" "$copy" | grep -q 'new\.txt'
if ldd "$scratch/given later/bin/first-host" | grep quen; then
    echo 'The host is not one file.'
    exit 1
fi
export PKG_CONFIG_PATH="$scratch/given later/$libraries/pkgconfig"
eval "quietly ${CXX:-g++} -std=c++20 $(pkg-config --cflags quen) '$tree/Examples/first_host.cpp' \
    -o '$scratch/given later/bin/other-host' $(pkg-config --libs quen)"
"$scratch/given later/bin/other-host" "$copy" | grep -q 'new\.txt'

# A part of another project.
for way in FetchContent add_subdirectory; do
    quietly cmake -S "$here/Embedded" -B "$scratch/$way" "-DWAY=$way" \
        "-DFETCHCONTENT_SOURCE_DIR_QUEN=$tree" -DCMAKE_CXX_FLAGS=-O0
    build "$scratch/$way"
    [[ $("$scratch/$way/embedded") == 'linked 2' ]]
done
build "$scratch/FetchContent" --target foreign-host
"$scratch/FetchContent/foreign-host" "$copy" | grep -q 'new\.txt'
echo 'The sources build in every way.'
