# shellcheck shell=bash
# SPDX-FileCopyrightText: 2026 the Sallowmere authors
# SPDX-License-Identifier: MIT
#
# To be sourced, after packages.sh: pristine Debian roots, and commands that are run in them.
# Must be used as root. Everything is said on standard error.

scripts=$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")

# prepareProof USAGE [SUITE [WORKDIR]]: checks what the script was called with, and chooses `suite`
# and `work`.
prepareProof() {
    [[ ${2-} == bookworm || ${2-} == trixie ]] || fail "usage: $1"
    ((EUID == 0)) || fail "this must be run as root"
    # shellcheck disable=SC2154 # It is in packages.sh.
    requirePackages "${packagesToProve[@]}"
    suite=$2
    roots=()
    if [[ -n ${3-} ]]; then
        mkdir -p -- "$3"
        work=$(readlink -f -- "$3")
    else
        work=$(mktemp -d)
        roots=("$work")
    fi
    trap 'rm -rf --one-file-system -- "${roots[@]}"' EXIT
}

# newRoot NAME: from here on `root` is a pristine root of that name, which goes when the script ends.
newRoot() {
    local pristine=$work/$suite.tar
    root=$work/$1
    roots+=("$root")
    [[ -f $pristine ]] || bootstrap "$pristine"
    rm -rf --one-file-system -- "$root"
    mkdir -- "$root"
    tar -C "$root" -xpf "$pristine" --numeric-owner
    cp -L -- /etc/resolv.conf "$root/etc/resolv.conf"
    # As every installed system has it.
    printf '127.0.0.1 localhost\n' > "$root/etc/hosts"
    inRoot useradd --create-home visitor
}

bootstrap() {
    local script=$suite
    [[ -e /usr/share/debootstrap/scripts/$script ]] || script=sid
    say "making a root of $suite"
    rm -rf --one-file-system -- "$root"
    unshare --mount debootstrap --variant=minbase --include=ca-certificates,git \
        "$suite" "$root" "" "$script" >"$work/$suite-bootstrap.log" 2>&1 </dev/null \
        || fail "debootstrap failed; see $work/$suite-bootstrap.log"
    tar -C "$root" -cf "$1.part" --numeric-owner .
    mv -- "$1.part" "$1"
}

# cloneInto DIRECTORY: a clone of the current commit, there in the root.
cloneInto() {
    git -C "$scripts" bundle create --quiet "$root/sallowmere.bundle" HEAD
    inRoot git clone --quiet /sallowmere.bundle "$1" 2>/dev/null
    say "commit $(git -C "$scripts" rev-parse --short HEAD) is in $1"
}

# Nothing that a command mounts or starts outlives it: both are in namespaces of its own.
inRoot() {
    export -f enterRoot
    unshare --mount --pid --fork --kill-child bash -ec 'enterRoot "$@"' - "$root" "$@" </dev/null
}

enterRoot() {
    local root=$1 device
    shift
    # It becomes the root as a system's own is one: a file system, and the first of all. In one that
    # only looks like it, tests can make no file systems of their own.
    mount --bind "$root" "$root"
    mount -t proc proc "$root/proc"
    mount -t tmpfs -o mode=0755 tmpfs "$root/dev"
    for device in full fuse null random tty urandom zero; do
        cp -a -- "/dev/$device" "$root/dev/$device"
    done
    mkdir "$root/dev/pts" "$root/dev/shm"
    mount -t devpts -o newinstance,ptmxmode=0666,mode=0620 devpts "$root/dev/pts"
    mount -t tmpfs -o mode=1777 tmpfs "$root/dev/shm"
    ln -s pts/ptmx "$root/dev/ptmx"
    ln -s /proc/self/fd "$root/dev/fd"
    cd -- "$root" || return
    pivot_root . .
    umount --lazy .
    exec env -i HOME=/root TERM=dumb PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
        ${http_proxy:+"http_proxy=$http_proxy"} chroot . "$@"
}

# step NAME EXPECTED-STATUS COMMAND...: runs it in the root, keeps what it says in `log`, and shows
# its last lines.
step() {
    local name=$1 expected=$2 status=0 started=$SECONDS
    shift 2
    log=$work/$suite-$name.log
    say "$name: $*"
    inRoot "$@" >"$log" 2>&1 || status=$?
    tail -n 6 -- "$log"
    say "$name: status $status after $((SECONDS - started)) s"
    ((status == expected)) || fail "$name: expected status $expected; see $log"
}
