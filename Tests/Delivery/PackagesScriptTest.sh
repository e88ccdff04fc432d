#!/bin/bash
# Scripts/packages.sh on systems of several kinds, played by small programs: what is asked of them,
# and what is said when it does not help.
#
#     PackagesScriptTest.sh SOURCE-TREE SCRATCH-DIRECTORY

source_tree=$1 scratch=$2
# shellcheck source=Tests/Delivery/Expect.sh
. "$source_tree/Tests/Delivery/Expect.sh"

all_build='g++ cmake ninja-build pkg-config libexpat1-dev libmd-dev libutf8proc-dev nlohmann-json3-dev'
all_build+=' libcli11-dev subversion'

# A command of the played system: NAME and its text. Every call is recorded.
play() {
    printf '#!/bin/bash\necho "%s $*" >>%q\n%s\n' "$1" "$scratch/calls" "$2" >"$scratch/bin/$1"
    chmod +x "$scratch/bin/$1"
}

# A system with the given user id that knows the installed packages by dpkg. Its apt-get installs
# what it is asked to, its compiler finds no header.
make_system() {
    rm -rf "$scratch"
    mkdir -p "$scratch/bin"
    local tool
    for tool in bash cat env grep mkdir true; do
        ln -s "$(type -P "$tool")" "$scratch/bin/$tool"
    done
    printf '%s\n' ${2:+$2} >"$scratch/installed"
    play id "echo $1"
    play dpkg-query "while read -r p; do echo \"installed \$p\"; done <$scratch/installed"
    play install 'exit 0'
    play apt-get "[[ \$* == *\ install\ * ]] && printf '%s\n' \"\$@\" >>$scratch/installed; exit 0"
}

# Calls quen_require for the purposes; sets said, status and calls (without those of id).
require() {
    : >"$scratch/calls"
    # shellcheck disable=SC2016 # for the inner shell
    said=$(PATH=$scratch/bin "$BASH" -c \
        '. "$1"; quen_root=$2; shift 2; quen_require "$@"' check \
        "$source_tree/Scripts/packages.sh" "$scratch/root" "$scratch/log" "$@" 2>&1 </dev/null)
    status=$?
    calls=$(grep -v '^id ' "$scratch/calls")
}

how='Install with: apt-get install --no-install-recommends'
options='-y -q -o DPkg::Lock::Timeout=300'

make_system 1000 "$all_build"
require build
expect 'all there: silent' "$said $status" ' 0'
expect_like 'all there: dpkg alone is asked, once' "$calls" 'dpkg-query --show * subversion'
[[ $calls != *$'\n'* ]] || expect 'all there: one call' "$calls" 'one line'

make_system 0 "${all_build/libexpat1-dev /}"
require build
expect 'root: one line' "$said $status" 'check: Installing libexpat1-dev (once)... 0'
expect_like 'root: the lists, then the package' "$calls" "dpkg-query *
apt-get $options update
apt-get $options install --no-install-recommends libexpat1-dev
dpkg-query *"
require build
expect 'root: the second call installs nothing' "$said $status" ' 0'

make_system 0 "$all_build"
require build check
expect 'purposes add up' "$said" \
    "check: Installing libgtest-dev libgmock-dev libxml2-dev apache2-bin libapache2-mod-svn\
 openssh-server openssh-client locales openssl libsasl2-modules sasl2-bin python3 python3-jsonschema zsh fish (once)..."
expect_like 'a server is told not to run before it comes' "$calls" \
    "*install -D -m 644 /dev/null /etc/ssh/sshd_not_to_be_run
apt-get *install*openssh-server*"

make_system 1000 "${all_build/subversion/}"
require build
expect 'neither root nor sudo' "$said $status" "check: missing: subversion (installing needs root,\
 or sudo without a password). $how subversion 69"

make_system 1000 "${all_build/subversion/}"
play sudo "[[ \$1 == -n ]] && shift; exec \"\$@\""
require build
expect 'sudo: one line' "$said $status" 'check: Installing subversion (once)... 0'
expect_like 'sudo: never asks' "$calls" "*sudo -n env DEBIAN_FRONTEND=noninteractive apt-get*"

make_system 1000 "${all_build/subversion/}"
play sudo 'exit 1'
require build
expect_like 'sudo that wants a password' "$said $status" '*sudo without a password)* 69'

make_system 0 "${all_build/subversion/}"
play apt-get 'echo "E: Unable to locate package subversion"; exit 100'
require build
expect 'unknown package' "$said $status" "check: Installing subversion (once)...
check: missing: subversion (E: Unable to locate package subversion). $how subversion 69"

make_system 0 "${all_build/subversion/}"
play apt-get 'exit 0'
require build
expect 'installed, and not there' "$said $status" "check: Installing subversion (once)...
check: missing: subversion (still absent after the installation). $how subversion 69"

make_system 1000 ''
rm "$scratch/bin/dpkg-query" "$scratch/bin/apt-get"
require build
expect 'another system, with nothing' "$said $status" \
    "check: missing: $all_build (there is no apt-get here). $how $all_build 69"

for tool in cmake ninja pkg-config svn; do
    play "$tool" 'exit 1'
done
# The compiler has every header but one.
# shellcheck disable=SC2016
play g++ 'while read -r line; do [[ $line == *utf8proc.h* ]] && exit 1; done; exit 0'
require build
expect 'another system, one header short' "$said $status" \
    "check: missing: libutf8proc-dev (there is no apt-get here). $how libutf8proc-dev 69"
play g++ 'exit 0'
require build
expect 'another system, with all of it' "$said $status" ' 0'

finish
