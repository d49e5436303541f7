#!/usr/bin/env bash
# Runs a command on a virtual display of its own, which ends with the command.
#
#   scripts/with-virtual-display.sh COMMAND [ARGUMENT…]
#
# The server chooses its number itself: looked for from outside, two starting at once may take the same one.
set -euo pipefail

folder=$(mktemp -d)
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp -noreset 3>"$folder/number" 2>/dev/null &
server=$!
trap 'kill "$server" 2>/dev/null || true; wait "$server" 2>/dev/null || true; rm -rf "$folder"' EXIT

until [ -s "$folder/number" ]; do
    kill -0 "$server" 2>/dev/null || {
        echo "The virtual display does not start." >&2
        exit 1
    }
    sleep 0.05
done

# Every desktop has one; Qt says so where there is none.
if [ -z "${XDG_RUNTIME_DIR:-}" ]; then
    export XDG_RUNTIME_DIR=$folder/run
    mkdir -m 700 "$XDG_RUNTIME_DIR"
fi
unset WAYLAND_DISPLAY XAUTHORITY
DISPLAY=":$(cat "$folder/number")" "$@"
