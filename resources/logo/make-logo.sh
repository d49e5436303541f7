#!/bin/bash
# Makes everything that is drawn from AppLogo.svg, beside it:
#
#   AppLogo.png     the logo inside the window, which rounds its corners itself
#   AppLogo-N.png   the same N pixels wide, quicker to read where it is shown small
#   hicolor/        the application's icon for Linux desktops, by size
#   Quilmora.icns   the application's icon for macOS
#
# An icon is the logo on a tile with round corners, with the margin that each of the two systems leaves around it.
#
# Needs rsvg-convert (librsvg2-bin) and png2icns (icnsutils).
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

readonly icon_name=app.quilmora.Quilmora
readonly desktop_sizes=(16 22 24 32 48 64 128 256 512)
readonly bundle_sizes=(16 32 128 256 512 1024)

for tool in rsvg-convert png2icns; do
    if ! command -v "$tool" >/dev/null; then
        echo "make-logo.sh: $tool is needed" >&2
        exit 1
    fi
done

work_dir=$(mktemp -d)
trap 'rm -rf "$work_dir"' EXIT

# icon MARGIN: the logo, 1024 units wide, on its tile.
icon() {
    local side=$((1024 - 2 * $1))
    awk -v margin="$1" -v side="$side" '
        NR == 1 {
            print "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 1024 1024\" width=\"1024\" height=\"1024\">"
            printf "  <clipPath id=\"tile\"><rect x=\"%d\" y=\"%d\" width=\"%d\" height=\"%d\" rx=\"%.1f\"/></clipPath>\n",
                margin, margin, side, side, side * 0.2237
            printf "  <g clip-path=\"url(#tile)\"><g transform=\"translate(%d %d) scale(%.5f)\">\n",
                margin, margin, side / 1024
            next
        }
        /^<\/svg>$/ { print "  </g></g>" }
        { print }' AppLogo.svg
}

# render DRAWING SIZE OUTPUT
render() {
    mkdir -p "$(dirname "$3")"
    rsvg-convert --width "$2" --height "$2" --output "$3" "$1"
}

render AppLogo.svg 512 AppLogo.png
for size in 64 128; do
    render AppLogo.svg "$size" "AppLogo-$size.png"
done

mkdir -p hicolor/scalable/apps
icon 32 >"hicolor/scalable/apps/$icon_name.svg"
for size in "${desktop_sizes[@]}"; do
    render "hicolor/scalable/apps/$icon_name.svg" "$size" "hicolor/${size}x$size/apps/$icon_name.png"
done

icon 100 >"$work_dir/bundle.svg"
pictures=()
for size in "${bundle_sizes[@]}"; do
    render "$work_dir/bundle.svg" "$size" "$work_dir/$size.png"
    pictures+=("$work_dir/$size.png")
done
png2icns Quilmora.icns "${pictures[@]}" >/dev/null
