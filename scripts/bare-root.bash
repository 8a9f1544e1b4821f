# A bare Debian, for the scripts that show what works in one: sourced by them after setup.bash, as root. They call
# themselves again inside, in namespaces of their own, so that no mount and no process outlives them.

release=bookworm

# with_bare_root FOLDER SCRIPT ARGUMENT...: makes a bare system in the folder (a temporary one if empty), runs
# `SCRIPT --inside BARE ARGUMENT...` in namespaces, and removes the system. Packages come from where this machine's
# apt takes them, proxies included.
with_bare_root() {
    local folder="$1" script="$2" sources mirror
    shift 2
    [[ $EUID -eq 0 ]] || fail "Making a bare system needs root."
    command -v debootstrap >/dev/null || fail "debootstrap is missing: apt-get install debootstrap"

    # Where this machine's apt gets that release from, and how.
    # shellcheck disable=SC2016
    sources="$(apt-get indextargets --format 'deb $(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' 'Origin: Debian' |
        grep " $release" | sort -u)"
    mirror="$(awk -v release="$release" '$3 == release { print $2; exit }' <<<"$sources")"
    [[ -n "$mirror" ]] || fail "apt knows no source of Debian $release; see /etc/apt/sources.list and run apt-get update."
    eval "$(apt-config shell apt_http Acquire::http::Proxy apt_https Acquire::https::Proxy)"
    export http_proxy="${http_proxy:-${apt_http:-}}" https_proxy="${https_proxy:-${apt_https:-}}"

    temporary=""
    if [[ -z "$folder" ]]; then
        folder="$(mktemp -d)"
        temporary="$folder"
    fi
    mkdir -p "$folder"
    bare="$(mktemp -d "$folder/bare-root.XXXXXX")"
    chmod 755 "$bare" # its users' root folder
    remove_bare_root() {
        rm -rf --one-file-system "$bare" "$bare.log"
        [[ -z "$temporary" ]] || rmdir "$temporary" 2>/dev/null || true
    }
    trap remove_bare_root EXIT
    trap 'exit 130' INT TERM

    say "Making a bare Debian $release from $mirror in $bare ..."
    quietly "$bare.log" debootstrap --variant=minbase "$release" "$bare" "$mirror" || fail "debootstrap failed; see above."
    printf '%s\n' "$sources" >"$bare/etc/apt/sources.list"
    apt-config dump 'Acquire::http' >"$bare/etc/apt/apt.conf.d/90local"
    apt-config dump 'Acquire::https' >>"$bare/etc/apt/apt.conf.d/90local"
    apt-config dump | grep '^Acquire::Check-' >>"$bare/etc/apt/apt.conf.d/90local" || true
    cp /etc/resolv.conf /etc/hosts "$bare/etc/"

    unshare --mount --pid --fork --kill-child --propagation private "$script" --inside "$bare" "$@"
}

# furnish BARE: mounts what programs expect of a system. To be called inside.
furnish() {
    mount -t proc proc "$1/proc"
    mount -t sysfs -o ro sysfs "$1/sys"
    mount -t devpts -o newinstance,ptmxmode=0666 devpts "$1/dev/pts"
    ln -sf pts/ptmx "$1/dev/ptmx"
    mkdir -p "$1/dev/shm"
    mount -t tmpfs -o mode=1777 tmpfs "$1/dev/shm"
}

# run_in BARE COMMAND...: with nothing of this machine's environment but its proxies.
run_in() {
    local bare="$1"
    shift
    env -i PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin HOME=/root DEBIAN_FRONTEND=noninteractive \
        ${http_proxy:+http_proxy="$http_proxy"} ${https_proxy:+https_proxy="$https_proxy"} \
        chroot "$bare" "$@" </dev/null
}
