# shellcheck shell=bash
# How a script builds a preset: quietly, once at a time. Sourced, not run. Paths are those of the
# caller, who stands in the project's root.

quen_status_build_failed=70

# Runs a command while no other script of this tree builds; without flock, at once.
quen_alone() {
    mkdir -p build
    (
        if command -v flock >/dev/null; then flock 9; fi
        "$@" 9>&-
    ) 9>build/.lock
}

# Copies standard input to the file $1. Meanwhile a terminal sees how far the build is, in one line
# that goes away; anything else gets a line that says why nothing happens.
quen_show_progress() {
    local line
    if [[ ! -t 2 ]]; then
        quen_say 'Building (once, a few minutes)...'
        cat >>"$1"
        return
    fi
    printf '%s: Building...' "${0##*/}" >&2
    while IFS= read -r line; do
        printf '%s\n' "$line" >>"$1"
        if [[ $line =~ ^\[([0-9]+)/([0-9]+)\] ]]; then
            printf '\r\033[K%s: Building, step %s of %s' "${0##*/}" \
                "${BASH_REMATCH[1]}" "${BASH_REMATCH[2]}" >&2
        fi
    done
    printf '\r\033[K' >&2
}

# A tree that was moved or copied keeps a build directory that points to its old place.
quen_forget_moved_build() {
    local cache=build/$1/CMakeCache.txt
    [[ -e $cache ]] || return 0
    grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" "$cache" || rm -rf "build/${1:?}"
}

# The tests stay out of a build until somebody asks for them: they need more packages.
quen_configure() {
    local preset=$1 tests=()
    shift
    [[ -e build/$preset/CMakeCache.txt ]] || tests=(-DQUEN_BUILD_TESTS=OFF)
    cmake --preset "$preset" "${tests[@]}" "$@"
}

# Configures and builds the preset $1, with the options up to `--` for the configuration and the
# targets after it. The whole log is build/$1.log; of a failure its end is shown.
quen_build() {
    local preset=$1 log=build/$1.log
    local -a options=() targets=()
    shift
    while [[ $# -gt 0 && $1 != -- ]]; do
        options+=("$1")
        shift
    done
    [[ $# -gt 1 ]] && targets=(--target "${@:2}")
    quen_forget_moved_build "$preset"
    : >"$log"
    {
        quen_configure "$preset" "${options[@]}" &&
            cmake --build --preset "$preset" "${targets[@]}"
    } </dev/null 2>&1 | quen_show_progress "$log"
    [[ ${PIPESTATUS[0]} -eq 0 ]] && return
    tail -n 40 "$log" >&2
    quen_say "The build failed; the whole log is $PWD/$log"
    return "$quen_status_build_failed"
}
