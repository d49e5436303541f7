#!/usr/bin/env bash
# Takes the pictures of the documents again, in fewer colours than the screen has: docs/images/.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages pictures
./gallery

# Named in docs/images/ like the picture of the gallery, but for its size.
for picture in form-filled-light result-landscape-light history-many-dark preview-landscape-dark \
    settings-1000x700-light form-custom-1000x700-light error-service-1000x700-light; do
    pngquant --force --strip --output "docs/images/${picture/-1000x700/}.png" 256 "build/gallery/$picture.png"
done
