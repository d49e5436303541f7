#!/usr/bin/env bash
# Runs a command on a desktop without a screen, which ends with the command.
#
#   scripts/with-desktop.sh PART[+PART...] COMMAND [ARGUMENT...]
#
# Each PART is a script in scripts/desktops/ that starts one part of a desktop, in the given order: a display server or
# compositor first, then for instance a window manager, an input method or a screen reader. All parts share one session
# bus. The log of each program is printed when the desktop does not start, and kept in the folder QUILMORA_DESKTOP_LOGS.
set -euo pipefail
scripts=$(cd "$(dirname "$0")" && pwd)

if [ -z "${QUILMORA_DESKTOP_FOLDER:-}" ]; then
    QUILMORA_DESKTOP_FOLDER=$(mktemp -d /tmp/quilmora-desktop.XXXXXX)
    export QUILMORA_DESKTOP_FOLDER
    mkdir -m 700 "$QUILMORA_DESKTOP_FOLDER/run"
    export XDG_RUNTIME_DIR=$QUILMORA_DESKTOP_FOLDER/run
    # The portal's service for documents may still be taking its mount away.
    trap 'timeout 10 sh -c "until rm -rf \"$QUILMORA_DESKTOP_FOLDER\"; do sleep 0.1; done" 2>/dev/null' EXIT
    unset DISPLAY WAYLAND_DISPLAY XAUTHORITY DBUS_SESSION_BUS_ADDRESS
    dbus-run-session -- "$0" "$@" 3>&2 2>"$QUILMORA_DESKTOP_FOLDER/bus.log"
    exit
fi
exec 2>&3 3>&-

folder=$QUILMORA_DESKTOP_FOLDER
logs=${QUILMORA_DESKTOP_LOGS:-$folder/logs}
mkdir -p "$logs"
processes=()

end_processes() {
    local index
    for ((index = ${#processes[@]} - 1; index >= 0; index--)); do
        kill "${processes[index]}" 2>/dev/null || true
    done
    wait 2>/dev/null || true
}
trap end_processes EXIT

# start NAME COMMAND...: starts a program in the background, its output in a log of that name. It also ends when this
# script is killed.
start() {
    local name=$1
    shift
    setpriv --pdeathsig TERM "$@" >"$logs/$name.log" 2>&1 &
    processes+=($!)
    latest=$name
}

# wait_until COMMAND...: waits until the command succeeds; fails when the program started last has ended, or after 30 s.
wait_until() {
    local deadline=$((SECONDS + 30))
    until "$@" >/dev/null 2>&1; do
        if ! kill -0 "${processes[-1]}" 2>/dev/null || [ "$SECONDS" -ge "$deadline" ]; then
            echo "$latest does not start:" >&2
            cat "$logs/$latest.log" >&2
            exit 1
        fi
        sleep 0.05
    done
}

wait_for_window_manager() {
    wait_until sh -c 'xprop -root _NET_SUPPORTING_WM_CHECK | grep -q "window id"'
}

# use_wayland_socket: waits for the compositor started last; from then on programs use it, and no X server. The name is
# a path so that programs without XDG_RUNTIME_DIR find it, too.
use_wayland_socket() {
    wait_until sh -c 'ls "$XDG_RUNTIME_DIR"/wayland-*.lock'
    WAYLAND_DISPLAY=$(echo "$XDG_RUNTIME_DIR"/wayland-*.lock)
    export WAYLAND_DISPLAY=${WAYLAND_DISPLAY%.lock} XDG_SESSION_TYPE=wayland
    unset DISPLAY
    dbus-update-activation-environment WAYLAND_DISPLAY XDG_SESSION_TYPE DISPLAY=
}

# What compositors are started with when they are root: sway refuses to run as root, and kwin_wayland asks for a right
# that root in a container may lack. It changes no right to files.
ordinary_user=()
if [ "$(id -u)" -eq 0 ]; then
    ordinary_user=(unshare --user --map-user=1000 --map-group=1000)
fi

desktop=$1
shift
for part in ${desktop//+/ }; do
    source "$scripts/desktops/$part.sh"
done
"$@"
