# shellcheck shell=bash
# What the project needs of the system, by purpose, and how it gets there. Sourced, not run.
#
# A need is written PACKAGE=PROOF: the package's name on Debian, and what shows that it is there
# where the package is not known, be it a system without dpkg or a tool that came another way:
# a command, a file by its whole path, a header in angle brackets, or an option that clang can link
# with.

# shellcheck disable=SC2034 # read by name
quen_needs_build=(
    "g++=${CXX:-g++}"
    cmake=cmake
    ninja-build=ninja
    pkg-config=pkg-config
    'libexpat1-dev=<expat.h>'
    'libmd-dev=<md5.h>'
    'libutf8proc-dev=<utf8proc.h>'
    'nlohmann-json3-dev=<nlohmann/json.hpp>'
    'libcli11-dev=<CLI/CLI.hpp>'
    subversion=svn
)
# shellcheck disable=SC2034
quen_needs_check=(
    'libgtest-dev=<gtest/gtest.h>'
    'libgmock-dev=<gmock/gmock.h>'
    'libxml2-dev=<libxml2/libxml/parser.h>'
    apache2-bin=/usr/sbin/apache2
    libapache2-mod-svn=/usr/lib/apache2/modules/mod_dav_svn.so
    openssh-server=/usr/sbin/sshd
    openssh-client=ssh
    locales=/usr/share/i18n/locales/de_DE
    openssl=openssl
    libsasl2-modules=/usr/lib/x86_64-linux-gnu/sasl2/libdigestmd5.so
    sasl2-bin=saslpasswd2
    python3=python3
    python3-jsonschema=/usr/lib/python3/dist-packages/jsonschema/__init__.py
    zsh=zsh
    fish=fish
)
# shellcheck disable=SC2034
quen_needs_ci=(
    clang=clang++
    clang-tidy=run-clang-tidy
    clang-format=clang-format
    'libclang-rt-dev=-fsanitize=fuzzer,address'
    'libbenchmark-dev=<benchmark/benchmark.h>'
    shellcheck=shellcheck
    git=git
    lintian=lintian
    dpkg-dev=dpkg-shlibdeps
    doxygen=doxygen
    graphviz=dot
    nodejs=node
    npm=npm
)

quen_status_unavailable=69

# Where the system's files lie; the tests play another.
quen_root=

# Prints a line of the calling script on standard error.
quen_say() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
}

# Whether the proof, a command, a file, a header or an option, is there.
quen_is_there() {
    case $1 in
        /*) [[ -e $quen_root$1 ]] ;;
        -*) clang++ "$1" -x c++ - -o /dev/null >/dev/null 2>&1 \
            <<<'extern "C" int LLVMFuzzerTestOneInput(const char*, unsigned long) { return 0; }' ;;
        '<'*) "${CXX:-g++}" -E -x c++ - >/dev/null 2>&1 <<<"#include $1" ;;
        *) command -v -- "$1" >/dev/null ;;
    esac
}

# Sets quen_missing to the packages that the purposes ($@: build, check, ci) still lack. dpkg is
# asked once, for all of them; the proofs are looked at only for what it does not know.
quen_find_missing() {
    local purpose need installed=
    local -a needs=()
    for purpose in "$@"; do
        local -n list=quen_needs_$purpose
        needs+=("${list[@]}")
    done
    if command -v dpkg-query >/dev/null; then
        installed=$(dpkg-query --show --showformat '${db:Status-Status} ${Package}\n' \
            "${needs[@]%%=*}" 2>/dev/null)
    fi
    quen_missing=()
    for need in "${needs[@]}"; do
        [[ $'\n'$installed$'\n' == *$'\n'"installed ${need%%=*}"$'\n'* ]] && continue
        quen_is_there "${need#*=}" || quen_missing+=("${need%%=*}")
    done
}

# Says what is missing, why it could not be installed, and what to do.
quen_say_missing() {
    quen_say "missing: ${quen_missing[*]} ($1)." \
        "Install with: apt-get install --no-install-recommends ${quen_missing[*]}"
    return "$quen_status_unavailable"
}

# Installs quen_missing, the package manager's words going to the file $1.
quen_install_missing() {
    local log=$1
    local -a as_root=() apt=(apt-get -y -q -o DPkg::Lock::Timeout=300)
    command -v apt-get >/dev/null || { quen_say_missing 'there is no apt-get here'; return; }
    if [[ $(id -u) -ne 0 ]]; then
        as_root=(sudo)
        if sudo -n true </dev/null 2>/dev/null; then
            as_root=(sudo -n)
        elif [[ ! -t 0 || ! -t 2 ]] || ! command -v sudo >/dev/null; then
            quen_say_missing 'installing needs root, or sudo without a password'
            return
        fi
    fi
    as_root+=(env DEBIAN_FRONTEND=noninteractive)
    quen_say "Installing ${quen_missing[*]} (once)..."
    # The lists may be old or absent; whether that matters, the installation tells.
    "${as_root[@]}" "${apt[@]}" update </dev/null >"$log" 2>&1
    if [[ " ${quen_missing[*]} " == *' openssh-server '* ]]; then
        # The tests start their own. By this file the package leaves the machine's own alone, now
        # and when the machine starts.
        "${as_root[@]}" install -D -m 644 /dev/null /etc/ssh/sshd_not_to_be_run \
            </dev/null >>"$log" 2>&1
    fi
    "${as_root[@]}" "${apt[@]}" install --no-install-recommends "${quen_missing[@]}" \
        </dev/null >>"$log" 2>&1 || {
        quen_say_missing "$(grep -m 1 '^E: ' "$log" || echo "apt-get failed, see $log")"
        return
    }
}

# Brings in what the purposes ($2...) need; silent, and without network, when it is all there. The
# directory $1 receives the log.
quen_require() {
    local directory=$1
    shift
    quen_find_missing "$@"
    [[ ${#quen_missing[@]} -eq 0 ]] && return
    mkdir -p "$directory"
    quen_install_missing "$directory/packages.log" || return
    quen_find_missing "$@"
    [[ ${#quen_missing[@]} -eq 0 ]] || quen_say_missing 'still absent after the installation'
}
