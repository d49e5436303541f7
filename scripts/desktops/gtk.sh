# The file dialogs of GTK, which Qt opens by itself on GNOME. Their accessibility would block libatspi in tests.
export QT_QPA_PLATFORMTHEME=gtk3 NO_AT_BRIDGE=1
