# The window manager openbox, with its own default configuration.
start openbox openbox --config-file /etc/xdg/openbox/rc.xml
wait_for_window_manager
