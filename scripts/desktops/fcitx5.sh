# The input method fcitx5, with pinyin as the only one, in a configuration of its own.
mkdir -p "$folder/fcitx5/fcitx5"
cat >"$folder/fcitx5/fcitx5/profile" <<'PROFILE'
[Groups/0]
Name=Default
Default Layout=us
DefaultIM=pinyin

[Groups/0/Items/0]
Name=pinyin
Layout=

[GroupOrder]
0=Default
PROFILE
start fcitx5 env XDG_CONFIG_HOME="$folder/fcitx5" XDG_DATA_HOME="$folder/fcitx5/data" fcitx5
# Not by a call to it, which would start a second one.
wait_until dbus-send --session --print-reply --dest=org.freedesktop.DBus / org.freedesktop.DBus.GetNameOwner \
    string:org.fcitx.Fcitx5
wait_until fcitx5-remote
export QT_IM_MODULE=fcitx
# Keeps services of GTK that the session bus starts off the accessibility bus: their events make libatspi wait for ever.
dbus-update-activation-environment NO_AT_BRIDGE=1
