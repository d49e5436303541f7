#!/bin/bash
# Renders every symbol at the sizes the program uses, at 1x and 2x, on a light
# and a dark ground, into one picture to look at while drawing.
#
# Usage: contact-sheet.sh [OUTPUT] [STROKE_WIDTH]
#   OUTPUT        PNG file to write; build/contact-sheet.png by default
#   STROKE_WIDTH  stroke in grid units, as the program sets it for a heavier
#                 text weight; 1.7 by default
#
# Needs rsvg-convert (librsvg2-bin) and ImageMagick (imagemagick).
set -euo pipefail

symbols_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root_dir=$(cd "$symbols_dir/../.." && pwd)
output=${1:-$root_dir/build/contact-sheet.png}
stroke=${2:-1.7}
sizes=(16 28 50 96)

convert_tool=
for candidate in convert-im6.q16 magick /usr/bin/convert; do
    if command -v "$candidate" >/dev/null; then
        convert_tool=$candidate
        break
    fi
done
if [[ -z $convert_tool ]] || ! command -v rsvg-convert >/dev/null; then
    echo "contact-sheet.sh: rsvg-convert and ImageMagick are needed" >&2
    exit 1
fi

work_dir=$(mktemp -d)
trap 'rm -rf "$work_dir"' EXIT

# One row: the symbol at every size and scale in one colour on one ground.
render_row() {
    local file=$1 ground=$2 colour=$3 row=$4
    local cells=() size scale pixels cell
    for size in "${sizes[@]}"; do
        for scale in 1 2; do
            pixels=$((size * scale))
            cell=$work_dir/cell-$size-$scale.png
            sed -e "s/currentColor/$colour/g" \
                -e "s/stroke-width=\"1.7\"/stroke-width=\"$stroke\"/" "$file" |
                rsvg-convert -w "$pixels" -h "$pixels" -o "$cell"
            cells+=("(" "$cell" -background "$ground" -gravity center
                -extent "$((pixels + 16))x208" ")")
        done
    done
    "$convert_tool" "${cells[@]}" +append -strip "$row"
}

# The name is set with rsvg-convert too: ImageMagick knows no fonts by family
# on a bare system.
render_label() {
    local name=$1 label=$2
    rsvg-convert -o "$label" <<SVG
<svg xmlns="http://www.w3.org/2000/svg" width="360" height="20">
  <text x="0" y="15" font-family="sans-serif" font-size="15" fill="#808080">$name</text>
</svg>
SVG
}

rows=()
for file in "$symbols_dir"/*.svg; do
    name=$(basename "$file" .svg)
    render_row "$file" "#ECECEC" "#262626" "$work_dir/light.png"
    render_row "$file" "#323232" "#E4E4E4" "$work_dir/dark.png"
    render_label "$name" "$work_dir/label.png"
    "$convert_tool" "$work_dir/light.png" "$work_dir/dark.png" +append \
        "$work_dir/label.png" -gravity northwest -geometry +8+6 -composite \
        "$work_dir/row-$name.png"
    rows+=("$work_dir/row-$name.png")
done

mkdir -p "$(dirname "$output")"
"$convert_tool" "${rows[@]}" -append -strip "$output"
echo "$output"
