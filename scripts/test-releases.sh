#!/usr/bin/env bash
# Tries Quilmora on releases of Debian as a new user does: in a bare root of each release that holds nothing but a clone
# of the last commit, runs both commands of the README and makes the package, which it installs in a second bare root
# (scripts/test-package.sh). Prints a table as Markdown; fails unless all in it passed.
#
#   scripts/test-releases.sh [--mirror ADDRESS] [--cache FOLDER] RELEASE...    # for instance bookworm trixie testing
#
# The mirror is the one that this machine installs its packages from, unless another one is given. With --cache,
# compiled objects are kept in FOLDER for the next run. Logs are in build/releases/RELEASE/. Needs administrator rights,
# and about 8 GB in QUILMORA_RELEASES_FOLDER (/var/tmp without one) for the release at hand.
set -euo pipefail
export LC_ALL=C.UTF-8
cd "$(dirname "$0")/.."
source scripts/packages.sh

mirror=
cache=
while [ $# -gt 0 ]; do
    case $1 in
    --mirror) mirror=$2 ;;
    --cache) cache=$(realpath -m "$2") ;;
    *) break ;;
    esac
    shift 2
done
[ $# -gt 0 ] || {
    echo "Usage: scripts/test-releases.sh [--mirror ADDRESS] [--cache FOLDER] RELEASE..." >&2
    exit 2
}

install_packages releases
if [ -z "$mirror" ]; then
    mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Origin: Debian' 'Label: Debian' | head -n 1)
fi
work=$(mktemp -d "${QUILMORA_RELEASES_FOLDER:-/var/tmp}/quilmora-releases.XXXXXX")
trap 'rm -rf "$work"' EXIT
root=$work/root
user_root=$work/user-root
release=

make_roots() {
    debootstrap --variant=minbase --include=ca-certificates "$release" "$root" "$mirror" &&
        # A mirror may keep the state of an earlier day.
        echo 'Acquire::Check-Valid-Until "false";' >"$root/etc/apt/apt.conf.d/check-valid-until" &&
        cp -a "$root" "$user_root" &&
        git clone --quiet --no-hardlinks . "$root/quilmora"
}

# Replaces this shell, which has namespaces of its own, by a command in the clone in the root.
enter_root() {
    # As a mount of its own, or nothing could be mounted in it.
    mount --bind "$root" "$root"
    mount --rbind /dev "$root/dev"
    mount -t proc proc "$root/proc"
    mount --bind "$user_root" "$root/mnt"
    if [ -n "$cache" ]; then
        mkdir -p "$cache/$release" "$root/root/.cache/ccache"
        mount --bind "$cache/$release" "$root/root/.cache/ccache"
    fi
    exec chroot "$root" env -i --chdir=/quilmora HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 "$@"
}
export -f enter_root
export root user_root cache release

# in_root COMMAND...: runs a command in the clone in the root, with the second root on /mnt. Whatever it starts or mounts
# ends with it.
in_root() {
    unshare --mount --pid --fork --kill-child bash -euc 'enter_root "$@"' bash "$@"
}

# step NAME COMMAND...: runs a command with its output in the log of that name.
step() {
    local name=$1 start=$SECONDS
    shift
    echo "$release: $name" >&2
    if "$@" >"$logs/$name.log" 2>&1 </dev/null; then
        echo "$release: $name passed after $((SECONDS - start)) s" >&2
    else
        echo "$release: $name failed after $((SECONDS - start)) s; its last lines:" >&2
        tail -n 20 "$logs/$name.log" >&2
        return 1
    fi
}

# add_field PASSED TEXT: a field of the table; PASSED is "yes" or "no".
add_field() {
    if [ "$1" = yes ]; then
        row+=" $2 |"
    else
        row+=" **$2** |"
        all_passed=no
    fi
}

try_release() {
    logs=build/releases/$release
    rm -rf "$logs" "$root" "$user_root"
    mkdir -p "$logs"
    local row="| $release |"
    if ! step root make_roots; then
        add_field no "no root"
        rows+=("$row | | | |")
        return
    fi

    local demo=no tests=no package=no counts
    step demo in_root ./run demo && demo=yes
    step tests in_root ./test && tests=yes
    step package in_root scripts/package.sh && step install in_root scripts/test-package.sh /mnt && package=yes
    counts=$(sed -n 's/.*tests passed, \([0-9]*\) tests failed out of \([0-9]*\).*/\1 of \2 failed/p' "$logs/tests.log")

    row="| $release ($(cat "$root/etc/debian_version")) | GCC $(in_root g++ -dumpfullversion || true) |"
    row+=" $(in_root qmake6 -query QT_VERSION || true) |"
    add_field $demo "$([ $demo = yes ] && echo passed || echo failed)"
    add_field $tests "${counts:-not run}"
    add_field $package "$([ $package = yes ] && echo installed || echo failed)"
    rows+=("$row")
}

rows=()
all_passed=yes
for release in "$@"; do
    try_release
done

printf '\nTried on %s, commit %s.\n\n' "$(date --utc +%F)" "$(git rev-parse --short HEAD)"
echo "| release | compiler | Qt | \`./run demo\` | \`./test\` | package |"
echo "|---|---|---|---|---|---|"
printf '%s\n' "${rows[@]}"
[ $all_passed = yes ]
