#!/usr/bin/env bash
# Tries the package that scripts/package.sh made as its user does, in a bare system of its own: installs it, makes a cover
# with it, takes it off again, and looks at what is left.
#
#   debootstrap --variant=minbase bookworm ROOT [MIRROR]
#   scripts/test-package.sh ROOT [OPTION OF APT-GET…]    # for instance --no-install-recommends
#
# Needs the administrator's rights. Only the program runs in ROOT; the display, the accessibility bus, the image service
# and the test that works the window (EndToEndTest) run outside.
set -euo pipefail
export LC_ALL=C.UTF-8

if [ "${QUILMORA_OWN_MOUNTS:-}" != yes ]; then
    [ $# -gt 0 ] || {
        echo "Usage: scripts/test-package.sh ROOT [OPTION OF APT-GET…]" >&2
        exit 2
    }
    # What is mounted here is seen by nobody else, and gone in the end.
    QUILMORA_OWN_MOUNTS=yes exec unshare --mount "$0" "$@"
fi

root=$(realpath "$1")
shift
cd "$(dirname "$0")/.."
source scripts/packages.sh
install_packages build run display test
build_preset debug EndToEndTest

work=$(mktemp -d /tmp/quilmora-try.XXXXXX)
trap 'rm -rf "$work"' EXIT
chmod 755 "$work"

# Sockets, homes and the package lie in /tmp.
mount --bind /tmp "$root/tmp"
mount --bind /dev "$root/dev"
mount -t proc proc "$root/proc"

inside=(chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive)

# Everything but what a package manager keeps for itself, and logs.
files_of_system() {
    find "$root" -xdev \( -path "$root/tmp" -o -path "$root/dev" -o -path "$root/proc" -o -path "$root/run" \
        -o -path "$root/var/cache" -o -path "$root/var/lib/apt" -o -path "$root/var/lib/dpkg" -o -path "$root/var/log" \) \
        -prune -o -printf '/%P\n' | sort
}

step() {
    printf '\n== %s\n' "$1"
}

step "a system without development packages"
"${inside[@]}" apt-get update -qq
if "${inside[@]}" dpkg-query -W -f '${Package}\n' | grep -E -- '-dev$|^(gcc|g\+\+|clang|cmake)$'; then
    echo "These do not belong into a user's system." >&2
    exit 1
fi
"${inside[@]}" dpkg-query -W -f '.' | wc -c | sed 's/$/ packages/'
files_of_system >"$work/before"

step "apt install"
cp build/package/quilmora_*.deb "$work"
"${inside[@]}" apt-get install -y -qq "$@" "$work"/quilmora_*.deb >"$work/apt.log" 2>&1 || {
    cat "$work/apt.log" >&2
    exit 1
}
"${inside[@]}" dpkg-query -W quilmora
"${inside[@]}" dpkg-query -W -f '.' | wc -c | sed 's/$/ packages/'
"${inside[@]}" dpkg-query -L quilmora >"$work/files"

# Names of plugins differ between versions of Qt.
if [[ " $* " != *" --no-install-recommends "* ]]; then
    step "plugins that make it fit in with desktops"
    for plugin in platforms/libqwayland platformthemes/libqgtk3 platformthemes/libqxdgdesktopportal \
        platforminputcontexts/libfcitx5; do
        compgen -G "$root/usr/lib/*/qt6/plugins/$plugin*.so" || {
            echo "No package that is recommended brings $plugin." >&2
            exit 1
        }
    done
fi

step "a cover"
cat >"$work/quilmora" <<EOF
#!/bin/sh
exec chroot "$root" /usr/bin/quilmora "\$@"
EOF
chmod +x "$work/quilmora"
mkdir -m 700 "$work/runtime"
XDG_RUNTIME_DIR="$work/runtime" QUILMORA_TESTED_PROGRAM="$work/quilmora" \
    scripts/with-virtual-display.sh dbus-run-session -- build/debug/tests/end_to_end/EndToEndTest

step "a user's data"
home=/home/quilmora-user
database=$home/.local/share/Quilmora/quilmora.db
rm -rf "${root:?}$home"
mkdir "$root$home"
"${inside[@]}" HOME="$home" QT_QPA_PLATFORM=offscreen /usr/bin/quilmora &
program=$!
until [ -d "$root$home/Pictures/Quilmora/coverimg" ]; do
    kill -0 "$program" 2>/dev/null || {
        echo "The program does not start." >&2
        exit 1
    }
    sleep 0.1
done
kill "$program"
wait "$program" || true
ls -l "$root$database"

step "apt purge"
"${inside[@]}" apt-get purge -y -qq --autoremove quilmora >"$work/apt.log" 2>&1 || {
    cat "$work/apt.log" >&2
    exit 1
}
files_of_system >"$work/after"
cat "$root"/var/lib/dpkg/info/*.list | sed -E 's#^/(bin|sbin|lib|lib64)/#/usr/\1/#' | sort -u >"$work/owned"
comm -13 "$work/before" "$work/after" | grep -v "^$home" | comm -23 - "$work/owned" >"$work/left" || true
echo "Left by the packages that came with it, by folder:"
sed 's#/[^/]*$##' "$work/left" | sort | uniq -c
if grep -i quilmora "$work/left" || grep -Fxf "$work/files" "$work/left"; then
    echo "These are left of the package." >&2
    exit 1
fi
[ -s "$root$database" ] || {
    echo "The user's data are gone." >&2
    exit 1
}
find "$root$home" -type f -printf 'The user still has %P, %s bytes.\n'
rm -rf "${root:?}$home"
echo "Nothing is left of it but the user's data."
