#!/bin/bash
# Runs the fuzzers one after another, each for some seconds or a number of executions, and fails
# when one of them finds something. What they stand on is built, what that needs is installed.
#
#     Scripts/fuzz.sh [--seconds N | --runs N] [TARGET...]
#
# Without targets it is all of Fuzz/, and 10 seconds each. What a run learned is kept in
# build/fuzz/corpus and used by the next; the logs lie beside it in build/fuzz/log.

cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." || exit
. Scripts/packages.sh
. Scripts/build.sh

reports=Tests/Data/Reports
out=build/fuzz
engine_options=(-max_len=2048 -timeout=10 -rss_limit_mb=2048 -print_final_stats=1)

usage() {
    sed -n '5s/^# *//p' "Scripts/${0##*/}" >&2
    exit 2
}

# Sets `limit`, an option of the engine, and `targets`.
read_arguments() {
    limit=-max_total_time=10
    while [[ ${1-} == -* ]]; do
        [[ ${2-} =~ ^[1-9][0-9]*$ ]] || usage
        case $1 in
            --seconds) limit=-max_total_time=$2 ;;
            --runs) limit=-runs=$2 ;;
            *) usage ;;
        esac
        shift 2
    done
    targets=("$@")
    local target
    if [[ $# -eq 0 ]]; then
        targets=(Fuzz/*Fuzzer.cpp)
        targets=("${targets[@]#Fuzz/}")
        targets=("${targets[@]%Fuzzer.cpp}")
    fi
    for target in "${targets[@]}"; do
        [[ -e Fuzz/${target}Fuzzer.cpp ]] && continue
        quen_say "There is no target $target in Fuzz/"
        exit 2
    done
}

# Writes a seed of the target $1: standard input.
write_seed() {
    cat >"$(mktemp "$out/seeds/$1/XXXXXX")"
}

# Seeds of the target $1: each of the files ($3...) behind the text $2 and the bytes that choose
# options and cuts. Escapes of printf are understood.
seed_reports() {
    local target=$1 head=$2 file choices
    shift 2
    for file in "$@"; do
        for choices in '\0\0\200' '\1\5\0' '\2\0\100' '\3\200\1' '\4\37\0' '\7\0\300'; do
            # shellcheck disable=SC2059 # it is the format that is wanted
            { printf "$head$choices" && cat "$file"; } | write_seed "$target"
        done
    done
}

json_text() {
    sed -e 's/\\/\\\\/g; s/"/\\"/g; s/\t/\\t/g' "$1" | awk '{ printf "%s\\n", $0 }'
}

# The console replays every report, for a request of the type $1.
seed_console() {
    local type=$1 file tree
    shift
    tree='{"kind": "repository", "location": "file:///r", "trunkLocation": "file:///r/trunk"'
    tree+=', "branchesLocation": "file:///r/branches", "user": "jane"}'
    for file in "$@"; do
        printf '{"request": {"type": "%s", "sourceTree": %s, "files": ["a.c"]}, "replay": [{' \
            "$type" "$tree"
        printf '"stdout": "%s", "stderr": "", "exitStatus": 0}, {"stdoutBase64": "YQ=="}]}' \
            "$(json_text "$file")"
    done | write_seed RequestConsole
}

seed_one() {
    local target=$1 file date
    rm -rf "${out:?}/seeds/$target"
    mkdir -p "$out/seeds/$target" "$out/corpus/$target"
    case $target in
        Blame | Info | List | Log | Status)
            seed_reports "$target" '' "$reports/${target,,}"/*.xml ;;
        Commit) seed_reports "$target" '' "$reports"/commit/*.txt ;;
        CurrentBranch) seed_reports "$target" '' "$reports"/info/*.xml ;;
        DiffSummary) seed_reports "$target" '' "$reports"/diff/* ;;
        DiffText) seed_reports "$target" '' "$reports"/diff/*.txt ;;
        Ignore) seed_reports "$target" 'a.txt\n' "$reports"/propget/*.xml ;;
        ClientMessage | ErrorTranslation)
            for file in "$reports"/*/*.stderr; do
                { printf '\1\1' && cat "$file"; } | write_seed "$target"
            done ;;
        Date)
            grep -hro '[0-9-]*T[0-9:.]*Z' "$reports" | sort -u | while read -r date; do
                printf '%s' "$date" | write_seed "$target"
            done ;;
        RequestConsole)
            for file in "$reports"/*/*.{xml,txt}; do
                seed_console "$(type_of "$file")" "$file"
            done ;;
    esac
}

# The request type that a report belongs to, by its directory.
type_of() {
    local directory=${1%/*}
    case ${directory##*/} in
        propget) echo RequestTypeIgnore ;;
        *) directory=${directory##*/} && echo "RequestType${directory^}" ;;
    esac
}

dictionary_of() {
    case $1 in
        ClientMessage | ErrorTranslation) echo message ;;
        RequestConsole) echo console ;;
        *) echo report ;;
    esac
}

# Prints the number behind `stat::$2:` in the log $1.
statistic() {
    sed -n "s/^stat::$2: *//p" "$1" | tail -n 1
}

# Runs a target, says how it went in one line, and adds to `executions`.
run_one() {
    local target=$1 log=$out/log/$1.log started=$SECONDS result=passed seconds count finding
    "$out/bin/${target}Fuzzer" "${engine_options[@]}" "$limit" \
        "-dict=Fuzz/$(dictionary_of "$target").dict" "-artifact_prefix=$out/findings/$target-" \
        "$out/corpus/$target" "$out/seeds/$target" >"$log" 2>&1 || result=FAILED
    seconds=$((SECONDS - started))
    count=$(statistic "$log" number_of_executed_units)
    executions=$((executions + ${count:-0}))
    printf '%-17s %11d executions %5d s %7d /s  %s\n' "$target" "${count:-0}" "$seconds" \
        $((${count:-0} / (seconds > 0 ? seconds : 1))) "$result"
    [[ $result == passed ]] && return
    tail -n 40 "$log"
    finding=$(sed -n 's/.*Test unit written to //p' "$log" | tail -n 1)
    printf 'The whole log is %s. Replay with:\n    %s %s\n' "$log" "$out/bin/${target}Fuzzer" \
        "${finding:-no finding was written}"
    return 1
}

read_arguments "$@"
quen_require build build ci || exit
quen_alone quen_build fuzz -- "${targets[@]/%/Fuzzer}" || exit

export ASAN_OPTIONS=detect_leaks=1:malloc_context_size=4:quarantine_size_mb=8
export UBSAN_OPTIONS=print_stacktrace=1
mkdir -p "$out/log" "$out/findings"
executions=0 failed=()
for target in "${targets[@]}"; do
    seed_one "$target"
    run_one "$target" || failed+=("$target")
done
printf '%d targets, %d executions, %d s: %s\n' "${#targets[@]}" "$executions" "$SECONDS" \
    "${failed[*]:+FAILED: }${failed[*]:-no finding}"
[[ ${#failed[@]} -eq 0 ]]
