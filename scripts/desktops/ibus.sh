# The input method ibus with pinyin as the only engine, in a configuration of its own.
mkdir -p "$folder/ibus/data" "$folder/ibus/cache" "$folder/ibus/glib-2.0/settings"
cat >"$folder/ibus/glib-2.0/settings/keyfile" <<'SETTINGS'
[desktop/ibus/general]
preload-engines=['libpinyin']
use-system-keyboard-layout=true
SETTINGS
ibus=(env XDG_CONFIG_HOME="$folder/ibus" XDG_DATA_HOME="$folder/ibus/data" XDG_CACHE_HOME="$folder/ibus/cache"
    GSETTINGS_BACKEND=keyfile)
# Keeps ibus, and services of GTK that the session bus starts, off the accessibility bus: their events make libatspi
# wait for ever.
dbus-update-activation-environment NO_AT_BRIDGE=1
export NO_AT_BRIDGE=1
start ibus "${ibus[@]}" ibus-daemon --replace --xim
wait_until sh -c '[ "$("$@" ibus engine)" = libpinyin ]' sh "${ibus[@]}"
IBUS_ADDRESS_FILE=$(echo "$folder"/ibus/ibus/bus/*)
export IBUS_ADDRESS_FILE QT_IM_MODULE=ibus
