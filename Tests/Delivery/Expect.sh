# shellcheck shell=bash
# What the tests of the scripts have in common. Sourced, not run.

failures=0

# expect WHAT ACTUAL EXPECTED
expect() {
    [[ $2 == "$3" ]] && return
    printf '%s: got\n%s\ninstead of\n%s\n\n' "$1" "$2" "$3" >&2
    failures=$((failures + 1))
}

# expect_like WHAT ACTUAL PATTERN: as in [[ == ]], the whole text.
expect_like() {
    # shellcheck disable=SC2053 # a pattern is meant
    [[ $2 == $3 ]] && return
    printf '%s: got\n%s\ninstead of something like\n%s\n\n' "$1" "$2" "$3" >&2
    failures=$((failures + 1))
}

finish() {
    if [[ $failures -ne 0 ]]; then
        echo "$failures expectations failed" >&2
        exit 1
    fi
}
