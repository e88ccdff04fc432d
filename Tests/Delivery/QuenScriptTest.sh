#!/bin/bash
# ./quen in a small tree whose command line is a shell script: when it builds, what it says, and
# that nothing stands between the caller and the program.
#
#     QuenScriptTest.sh SOURCE-TREE SCRATCH-DIRECTORY

source_tree=$1 scratch=$2
# shellcheck source=Tests/Delivery/Expect.sh
. "$source_tree/Tests/Delivery/Expect.sh"

building='quen: Building (once, a few minutes)...'
tree=$scratch/tree

make_tree() {
    rm -rf "$scratch"
    mkdir -p "$tree"/{Foundation,Contract,Classes,Host,Tools,cmake} "$scratch/bin"
    cp -r "$source_tree"/{quen,Scripts,CMakePresets.json} "$tree"
    cp "$source_tree/Tests/Delivery/SmallTree.cmake" "$tree/CMakeLists.txt"
    cat >"$tree/Tools/program" <<'PROGRAM'
#!/bin/bash
case $1 in
    exit) exit "$2" ;;
    kill) kill -s "$2" $$ ;;
    echo) printf '<%s>' "${@:2}" ;;
    cat) cat ;;
esac
PROGRAM
    # Counts the builds.
    printf '#!/bin/bash\necho called >>%q\nexec %q "$@"\n' \
        "$scratch/calls" "$(command -v cmake)" >"$scratch/bin/cmake"
    chmod +x "$scratch/bin/cmake" "$tree/Tools/program"
}

# Runs ./quen; sets output, said (standard error) and status.
run() {
    rm -f "$scratch/calls"
    output=$(PATH=$scratch/bin:$PATH "${quen:-$tree/quen}" "$@" 2>"$scratch/said")
    status=$?
    said=$(<"$scratch/said")
}

# The number of times that cmake was called: a build is two, to configure and to build.
calls() {
    if [[ -e $scratch/calls ]]; then wc -l <"$scratch/calls"; else echo 0; fi
}

make_tree

run cat <<<'typed'
expect 'first call: standard input' "$output" typed
expect 'first call: one line' "$said" "$building"
expect 'first call: builds' "$(calls)" 2

run echo 'two words' '' '*'
expect 'arguments' "$output" '<two words><><*>'
expect 'second call: silent' "$said" ''
expect 'second call: no build' "$(calls)" 0

run exit 7
expect 'exit status' "$status" 7
run kill TERM
expect 'signal' "$status" 143

ln -s tree/quen "$scratch/link"
ln -s "$scratch/link" "$scratch/bin/second"
cd / || exit
quen=$scratch/bin/second run echo linked
expect 'through links, from elsewhere' "$output" '<linked>'
cd "$tree/Tools" || exit
quen=../quen run echo relative
expect 'by a relative path' "$output" '<relative>'

echo 'exit 9' >>"$tree/Tools/program"
run other
expect 'newer source: builds' "$said" "$building"
expect 'newer source: the new program' "$status" 9

rm "$tree/Tools/program"
run exit 0
expect 'failed build: status' "$status" 70
expect_like 'failed build: says so' "$said" \
    "$building*quen: The build failed; the whole log is $tree/build/release.log"
run exit 0
expect 'failed build: is not forgotten' "$status" 70

make_tree
# Two callers at once: one builds, the other waits for it.
for caller in first second; do
    PATH=$scratch/bin:$PATH "$tree/quen" echo "$caller" >"$scratch/$caller" 2>/dev/null &
done
wait
expect 'two at once: both run' "$(cat "$scratch/first" "$scratch/second")" '<first><second>'
expect 'two at once: one build' "$(calls)" 2

mv "$tree" "$scratch/moved"
quen=$scratch/moved/quen run echo moved
expect 'moved tree' "$output" '<moved>'
touch "$scratch/moved/Tools"
quen=$scratch/moved/quen run echo moved
expect 'moved tree: builds in its new place' "$output $status" '<moved> 0'

finish
