# The Wayland compositor of GNOME in the X server of part x11, by which it also gets its input.
start mutter env LIBGL_ALWAYS_SOFTWARE=1 "MUTTER_DEBUG_DUMMY_MODE_SPECS=$QUILMORA_SCREEN" \
    mutter --wayland --nested --no-x11 --wayland-display wayland-quilmora
use_wayland_socket
