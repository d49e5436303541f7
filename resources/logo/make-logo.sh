#!/bin/bash
# Makes the logo's PNG pictures from AppLogo.svg.
#
# Usage: make-logo.sh                   writes AppLogo.png (512 x 512) beside the drawing
#        make-logo.sh DIRECTORY SIZE... writes DIRECTORY/AppLogo-SIZE.png for every size
#
# Needs rsvg-convert (librsvg2-bin).
set -euo pipefail

logo_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

if ! command -v rsvg-convert >/dev/null; then
    echo "make-logo.sh: rsvg-convert (librsvg2-bin) is needed" >&2
    exit 1
fi

render() {
    local size=$1 output=$2
    rsvg-convert --width "$size" --height "$size" --output "$output" "$logo_dir/AppLogo.svg"
    echo "$output"
}

if (($# == 0)); then
    render 512 "$logo_dir/AppLogo.png"
    exit
fi

output_dir=$1
shift
if (($# == 0)); then
    echo "usage: make-logo.sh [DIRECTORY SIZE...]" >&2
    exit 2
fi
mkdir -p "$output_dir"
for size in "$@"; do
    if [[ ! $size =~ ^[1-9][0-9]*$ ]]; then
        echo "make-logo.sh: not a size in pixels: $size" >&2
        exit 2
    fi
    render "$size" "$output_dir/AppLogo-$size.png"
done
