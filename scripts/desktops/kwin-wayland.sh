# The Wayland compositor KWin in the X server of part x11, by which it also gets its input.
IFS=x read -r width height <<<"$QUILMORA_SCREEN"
start kwin env KWIN_COMPOSE=Q "${ordinary_user[@]}" \
    kwin_wayland --x11-display "$DISPLAY" --width "$width" --height "$height" --no-lockscreen --no-global-shortcuts --socket wayland-quilmora
use_wayland_socket
