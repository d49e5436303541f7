# The window manager of Xfce.
# Its accessibility would block libatspi in tests.
start xfwm4 env NO_AT_BRIDGE=1 xfwm4
wait_for_window_manager
