# shellcheck shell=bash
# The extension's own packages, at the versions of the lock file. Sourced, not run; the caller stands
# in Editor.

editor_say() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
}

# Installs what the lock file in the directory $1 names, when that is not yet there.
editor_install() {
    local directory=$1 log=$1/node_modules/.quen.log stamp=$1/node_modules/.quen.lock
    cmp -s "$directory/package-lock.json" "$stamp" && return
    editor_say "Installing the packages of $directory (once)..."
    mkdir -p "$directory/node_modules"
    npm --prefix "$directory" ci --ignore-scripts --no-audit --no-fund >"/tmp/quen-npm.$$" 2>&1 || {
        cat "/tmp/quen-npm.$$" >&2
        rm -f "/tmp/quen-npm.$$"
        return 1
    }
    mv "/tmp/quen-npm.$$" "$log"
    cp "$directory/package-lock.json" "$stamp"
}
