#!/usr/bin/env bash
# Makes the package for this system and checks it: build/package/quilmora_VERSION_ARCHITECTURE.deb, or on macOS
# build/package/Quilmora-VERSION.dmg.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages build package
build_preset package
rm -f build/package/quilmora_*.deb build/package/Quilmora-*.dmg
cpack --config build/package/CPackConfig.cmake -B build/package >build/package/cpack.log || {
    cat build/package/cpack.log >&2
    exit 1
}

if [ "$(uname)" = Darwin ]; then
    ls "$PWD"/build/package/Quilmora-*.dmg
    exit
fi

package=$(ls "$PWD"/build/package/quilmora_*.deb)
tree=build/package/tree
rm -rf "$tree"
dpkg-deb --extract "$package" "$tree"

echo "libraries that are linked for nothing"
ldd -u -r "$tree/usr/bin/quilmora"
echo "desktop-file-validate"
desktop-file-validate "$tree"/usr/share/applications/*.desktop
echo "appstreamcli validate"
appstreamcli validate --no-net "$tree"/usr/share/metainfo/*.metainfo.xml
echo "lintian"
lintian --allow-root --fail-on error,warning "$package"
echo "$package"
