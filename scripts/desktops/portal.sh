# The desktop portal with the file dialogs of GTK, in which Qt's platform theme xdgdesktopportal opens file dialogs. Their
# accessibility would block libatspi in tests.
dbus-update-activation-environment NO_AT_BRIDGE=1
start portal env XDG_CURRENT_DESKTOP=gnome /usr/libexec/xdg-desktop-portal --replace
wait_until dbus-send --print-reply --dest=org.freedesktop.portal.Desktop /org/freedesktop/portal/desktop \
    org.freedesktop.DBus.Properties.Get string:org.freedesktop.portal.FileChooser string:version
export QT_QPA_PLATFORMTHEME=xdgdesktopportal
