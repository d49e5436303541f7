# An X server without a window manager. Its size can be given as QUILMORA_SCREEN, for instance 1024x600. Without -noreset
# it would reset when its only client disconnects, and refuse the next one meanwhile.
export QUILMORA_SCREEN=${QUILMORA_SCREEN:-1280x1024}
start xvfb sh -c "exec Xvfb -displayfd 3 -screen 0 ${QUILMORA_SCREEN}x24 -nolisten tcp -noreset 3>'$folder/display'"
wait_until test -s "$folder/display"
DISPLAY=":$(cat "$folder/display")"
export DISPLAY QUILMORA_INPUT_DISPLAY=$DISPLAY XDG_SESSION_TYPE=x11
# For services that the session bus starts.
dbus-update-activation-environment DISPLAY XDG_SESSION_TYPE
