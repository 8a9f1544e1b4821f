# What ./speak, ./test and the maintainers' scripts share: sourced by them, with set -euo pipefail.
# Everything said here goes to standard error, so that standard output is the command's own.

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)"

say() {
    printf '%s\n' "$*" >&2
}

fail() {
    say "$@"
    exit 1
}

# quietly LOG COMMAND...: runs it without input; what it prints is shown only if it fails.
quietly() {
    local log="$1"
    shift
    if ! LC_ALL=C.UTF-8 "$@" </dev/null >"$log" 2>&1; then
        cat "$log" >&2
        return 1
    fi
}

# packages USE...: the lines "package reason" of scripts/packages for these uses.
packages() {
    local wanted=" $* " use line
    while read -r use line; do
        if [[ "$wanted" == *" $use "* ]]; then
            printf '%s\n' "$line"
        fi
    done <"$root/scripts/packages"
}

# missing_packages USE...: those of them that are not installed.
missing_packages() {
    local installed package reason
    installed=" $(dpkg-query -W -f='${db:Status-Status}:${Package} ' 2>/dev/null)"
    while read -r package reason; do
        if [[ "$installed" != *" installed:$package "* ]]; then
            printf '%s %s\n' "$package" "$reason"
        fi
    done <<<"$(packages "$@")"
}

# apt_get ARGUMENT...: as root, asking nothing, quiet unless it fails.
apt_get() {
    local command=(env DEBIAN_FRONTEND=noninteractive apt-get --option DPkg::Lock::Timeout=300 "$@") log result=0
    if [[ $EUID -ne 0 ]]; then
        command=(sudo "${command[@]}")
    fi
    log="$(mktemp)"
    quietly "$log" "${command[@]}" || result=$?
    rm -f "$log"
    [[ $result -eq 0 ]] || fail "\"apt-get $1\" failed; see above."
}

# install_packages USE...: installs what is missing, and touches apt only then.
install_packages() {
    local missing names=() package reason
    if ! command -v dpkg-query >/dev/null; then
        say "This is not a Debian system: the packages listed in README.md are taken to be there."
        return
    fi
    missing="$(missing_packages "$@")"
    if [[ -z "$missing" ]]; then
        return
    fi
    say "These Debian packages are missing:"
    while read -r package reason; do
        names+=("$package")
        say "  $package: $reason"
    done <<<"$missing"
    if [[ $EUID -ne 0 ]] && ! command -v sudo >/dev/null; then
        fail "Installing them needs root or sudo. As root, run: apt-get install --no-install-recommends ${names[*]}"
    fi
    say "Installing them with apt-get ..."
    apt_get update
    apt_get install --yes --no-install-recommends "${names[@]}"
}

# help_if_asked ARGUMENT...: shows what stands at the head of the script, and ends it, if that is all that is asked for.
help_if_asked() {
    if [[ $# -eq 1 && ("$1" == --help || "$1" == -h) ]]; then
        sed -n '2,/^set /{/^#/{s/^# \{0,1\}//;p}}' "$0"
        exit
    fi
}

# build PRESET TARGET [OPTION...]: configures with these options unless that has been done, and builds the
# target. One build at a time: a second one waits.
build() {
    local preset="$1" target="$2" folder="$root/build/$1"
    shift 2
    mkdir -p "$folder"
    (
        exec 9>"$folder/.lock"
        flock 9
        cd "$root"
        cache=()
        if command -v ccache >/dev/null; then
            export CMAKE_{C,CXX,OBJC,OBJCXX}_COMPILER_LAUNCHER=ccache
            # It remembers nothing that was compiled with one.
            cache=(-D CMAKE_DISABLE_PRECOMPILE_HEADERS=ON)
        fi
        if [[ $# -gt 0 || ! -e "$folder/build.ninja" ]]; then
            quietly "$folder/configure.log" cmake --preset "$preset" "${cache[@]}" "$@" || exit 1
        fi
        quietly "$folder/build.log" cmake --build "$folder" --target "$target"
    ) || fail "The $preset build failed; see above."
}
