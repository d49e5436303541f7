# The Wayland compositor sway in the X server of part x11, by which it also gets its input. QUILMORA_SCALES has the scale
# of each output, "1" by default, "2+1" for two outputs; they lie side by side and share the screen in equal parts.
IFS=+ read -r -a scales <<<"${QUILMORA_SCALES:-1}"
IFS=x read -r width height <<<"$QUILMORA_SCREEN"
width=$((width / ${#scales[@]}))

write_sway_configuration() {
    local index left=0
    echo 'output * background #404040 solid_color'
    echo 'default_border none'
    echo 'focus_follows_mouse no'
    for index in "${!scales[@]}"; do
        echo "output X11-$((index + 1)) mode --custom ${width}x$height scale ${scales[index]} position $left 0"
        left=$((left + $(awk "BEGIN { print int($width / ${scales[index]} + 0.5) }")))
    done
}
write_sway_configuration >"$folder/sway.conf"

start sway env WLR_BACKENDS=x11 WLR_RENDERER=pixman "WLR_X11_OUTPUTS=${#scales[@]}" \
    "${ordinary_user[@]}" sway --config "$folder/sway.conf"

# Each output is a window of the X server, the first one at the left.
output_windows() {
    xwininfo -root -children | awk "/ ${width}x$height\+/ { print \$1 }" | sort
}
wait_until eval '[ "$(output_windows | wc -l)" -eq ${#scales[@]} ]'
left=0
for window in $(output_windows); do
    xdotool windowmove "$window" "$left" 0
    left=$((left + width))
done
use_wayland_socket
