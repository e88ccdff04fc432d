# shellcheck shell=bash
# The extension's own packages, at the versions of the lock file. Sourced, not run; the caller stands
# in Editor.

editor_say() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
}

# Says in one line that fetching $1 failed, and why: the first reason in npm's own log $2.
editor_say_not_fetched() {
    local reason
    reason=$(grep -m 1 -E 'npm (error|ERR!) .*(network|request to|E[A-Z]{3,}|not found)' "$2" | cut -c -200)
    editor_say "$1 could not be fetched: ${reason:-npm failed}. It needs the network once; the whole log is $2"
}

# Installs what the lock file in the directory $1 names, when that is not yet there.
editor_install() {
    local directory=$1 log=$1/node_modules/.quen.log stamp=$1/node_modules/.quen.lock
    cmp -s "$directory/package-lock.json" "$stamp" && return
    editor_say "Installing the packages of $(basename -- "$(realpath -- "$directory")") (once)..."
    mkdir -p "$directory/node_modules"
    # npm empties the directory of the packages first, and a log in it.
    npm --prefix "$directory" ci --ignore-scripts --no-audit --no-fund </dev/null >"$directory/.npm.log" 2>&1 || {
        editor_say_not_fetched 'The packages' "$(realpath -- "$directory")/.npm.log"
        return 1
    }
    mv "$directory/.npm.log" "$log"
    cp "$directory/package-lock.json" "$stamp"
}
