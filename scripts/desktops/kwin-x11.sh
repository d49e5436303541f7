# The window manager KWin on X11.
start kwin kwin_x11 --no-kactivities
wait_for_window_manager
