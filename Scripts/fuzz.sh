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
engine_options=(-timeout=10 -rss_limit_mb=2048 -print_final_stats=1)

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

# Writes a seed of the target $1; $2 is a format of printf, its arguments follow.
write_seed() {
    seeds=$((seeds + 1))
    # shellcheck disable=SC2059 # escapes make bytes that choose
    printf "$2" "${@:3}" >"$out/seeds/$1/$seeds"
}

# Seeds of the target $1: each of the files ($3...) behind the text $2 and the bytes that choose
# options and cuts; a report of XML also with declarations of its own, which the client never makes.
seed_reports() {
    local target=$1 head=$2 file text choices
    local inside='<!DOCTYPE r [<!ENTITY e "v"><!ENTITY f SYSTEM "f">]>'
    local outside='<!DOCTYPE r SYSTEM "r" [<!ENTITY e "v"><!ATTLIST entry kind CDATA "&e;">]>'
    shift 2
    for file in "$@"; do
        text=$(<"$file")
        for choices in '\0\0\200' '\1\5\0' '\2\0\100' '\3\200\1' '\4\37\0' '\7\0\300'; do
            write_seed "$target" "$head$choices%s\n" "$text"
        done
        [[ $file == *.xml ]] || continue
        write_seed "$target" "$head\2\40\0%s\n" "${text/'?>'/"?>$inside"}"
        text=${text//'</'/'&f;</'}
        write_seed "$target" "$head\2\40\0%s\n" "${text/'?>'/"?>$inside"}"
        write_seed "$target" "$head\2\40\0%s\n" "${text/'?>'/"?>$outside"}"
    done
}

# Sets `json`, a string of JSON, to the text $1.
to_json() {
    json=${1//\\/\\\\}
    json=${json//'"'/'\"'}
    json=${json//$'\t'/'\t'}
    json=\"${json//$'\n'/'\n'}\"
}

# The console replays every report, for a request of the type that its directory tells, and makes a
# request of every type from all that a request can hold.
seed_console() {
    local file type json
    local tree='{"kind": "repository", "location": "file:///r", "user": "jane",
        "trunkLocation": "file:///r/trunk", "branchesLocation": "file:///r/branches"}'
    local replayed='{"request": {"type": "RequestType%s", "sourceTree": %s, "files": ["a.c"]},
        "replay": [{"stdout": %s}, {"stdoutBase64": "YQ==", "exitStatus": 1}]}'
    local full='{"request": {"type": %d, "files": ["/w/a", "/w/b@2"], "destination": "/w/c",
        "sourceTree": {"kind": "workingTree", "location": "/w", "repository": %s},
        "startingRevision": {"constant": "QuenSourceControlBASERevisionName"},
        "endingRevision": "7", "repositoryToAuthenticate": %s,
        "options": {"QuenSourceControlRequestOptionMessage": "why",
            "QuenSourceControlRequestOptionLogOutputLimit": 3,
            "QuenSourceControlRequestOptionSupplyDirectRevision": true}},
        "logLevel": 3, "replay": [{"stderr": "svn: E155007: is not a working copy\\n"}]}'
    for file in "$reports"/*/*.{xml,txt}; do
        type=${file%/*}
        type=${type##*/}
        [[ $type == propget ]] && type=ignore
        to_json "$(<"$file")"
        write_seed RequestConsole "$replayed" "${type^}" "$tree" "$json"
    done
    for type in {0..39}; do
        write_seed RequestConsole "$full" "$type" "$tree" "$tree"
    done
}

# Conversations of the server, whole and with lengths that are wrong.
seed_wire() {
    local first='{"jsonrpc":"2.0","id":1,"method":"initialize","params":{}}' body
    for body in '{"jsonrpc":"2.0","id":2,"method":"shutdown"}' '{"jsonrpc":"2.0","method":"exit"}' \
        '{"jsonrpc":"2.0","method":"$/cancelRequest","params":{"id":1}}' '[]' '{' \
        '{"jsonrpc":"2.0","id":"a","method":"none","params":{"a":1,"a":2}}' \
        '{"jsonrpc":"2.0","id":1,"result":null}'; do
        write_seed ServerWire '\7Content-Length: %d\r\n\r\n%sContent-Type: x; charset=utf-8\r\ncontent-length:%d\r\n\r\n%s' \
            ${#first} "$first" ${#body} "$body"
        write_seed ServerWire '\1Content-Length: %d\r\n\r\n%sContent-Length: %d\r\n\r\n%s' \
            $((${#body} + 5)) "$body" ${#first} "$first"
        write_seed ServerWire '\1%s' "$body"
    done
}

seed_one() {
    local target=$1 seeds=0 file date
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
                write_seed "$target" '\1\1%s\n' "$(<"$file")"
            done ;;
        Date)
            while read -r date; do
                write_seed "$target" '%s' "$date"
                write_seed "$target" '%%yyyyy-MM-dd HHHmm ss.SSSSSSS\n0%s' "${date:0:10} 012233 44.1234567"
            done < <(grep -hro '[0-9-]*T[0-9:.]*Z' "$reports" | sort -u) ;;
        RequestConsole) seed_console ;;
        XMLReport)
            for file in "$reports"/*/*.xml; do
                write_seed "$target" '\0\40\100\0%s\n' "$(<"$file")"
                write_seed "$target" '\5\0\0\0%s\n' "$(<"$file")"
                write_seed "$target" '\4\3\200\2%s\n' "$(<"$file")"
                write_seed "$target" '\7\5\100\1%s\n' "$(<"$file")"
            done ;;
        ServerWire) seed_wire ;;
    esac
}

dictionary_of() {
    case $1 in
        ClientMessage | ErrorTranslation) echo message ;;
        RequestConsole) echo console ;;
        ServerWire) echo wire ;;
        *) echo report ;;
    esac
}

# Prints the number behind `stat::$2:` in the log $1.
statistic() {
    sed -n "s/^stat::$2: *//p" "$1" | tail -n 1
}

# Prints how long inputs of the target $1 may be, in bytes: no seed is cut, for a report that is cut
# is malformed and reaches nothing.
longest_input() {
    local bytes
    bytes=$(find "$out/seeds/$1" -type f -printf '%s\n' | sort -n | tail -n 1)
    echo $((bytes > 2048 ? bytes : 2048))
}

# Runs a target, says how it went in one line, and adds to `executions`.
run_one() {
    local target=$1 log=$out/log/$1.log started=$SECONDS result=passed seconds count finding
    "$out/bin/${target}Fuzzer" "${engine_options[@]}" "-max_len=$(longest_input "$target")" "$limit" \
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
