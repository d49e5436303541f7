# Sourced by ./run, ./test and .ci/run: installs the system packages that are missing.
#
#   install_packages GROUP...   with the groups build, run, display, test, desktops, bench, lint, package, pictures and
#                               releases

# Names separated by "|" are alternatives: the first one that the system offers is taken.
apt_packages() {
    case $1 in
    build) echo "cmake ninja-build g++ ccache pkg-config qt6-base-dev qt6-svg-dev|libqt6svg6-dev" \
        "qt6-translations-l10n libpng-dev libsqlite3-dev libdeflate-dev libsimdjson-dev libcpp-httplib-dev libssl-dev zlib1g-dev libzstd-dev libbrotli-dev libgl-dev libxcb1-dev" ;;
    run) echo "ca-certificates fonts-noto-cjk qt6-image-formats-plugins qt6-qpa-plugins" ;;
    display) echo "xvfb" ;;
    test) echo "openssl at-spi2-core dbus libatspi2.0-dev qt6-base-private-dev libspng-dev pngcheck mold" ;;
    desktops) echo "openbox picom xfwm4 kwin-x11 kwin-wayland mutter sway xdotool x11-utils" \
        "qt6-gtk-platformtheme qt6-xdgdesktopportal-platformtheme xdg-desktop-portal xdg-desktop-portal-gtk orca" \
        "fcitx5 fcitx5-pinyin fcitx5-frontend-qt6 ibus ibus-libpinyin" ;;
    lint) echo "clang clang-format clang-tidy clazy libclang-dev libclang-rt-dev llvm-dev" ;;
    package) echo "dpkg-dev desktop-file-utils appstream lintian" ;;
    pictures) echo "pngquant" ;;
    releases) echo "debootstrap git" ;;
    esac
}

# What the group does well to have but can do without: taken where the system offers it.
apt_extras() {
    case $1 in
    run) echo "qt6-wayland fcitx5-frontend-qt6" ;;
    esac
}

brew_packages() {
    case $1 in
    build) echo "cmake ninja ccache pkg-config qt libpng sqlite libdeflate simdjson cpp-httplib openssl" ;;
    test) echo "openssl libspng brotli zstd pngcheck" ;;
    lint) echo "llvm" ;;
    pictures) echo "pngquant" ;;
    esac
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    else
        sudo "$@"
    fi
}

# Prints the packages of the given names that are not installed, an alternative resolved to one of its names.
missing_apt_packages() {
    local wanted name found
    for wanted in "$@"; do
        found=
        for name in ${wanted//|/ }; do
            if [ "$(dpkg-query -W -f '${db:Status-Status}' "$name" 2>/dev/null)" = installed ]; then
                found=yes
                break
            fi
        done
        [ -n "$found" ] || echo "$wanted"
    done
}

offered_name() {
    local name
    for name in ${1//|/ }; do
        if apt-cache show "$name" >/dev/null 2>&1; then
            echo "$name"
            return
        fi
    done
    echo "${1%%|*}"
}

apt_install() {
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "$@" >/dev/null
}

install_with_apt() {
    local missing wanted
    mapfile -t missing < <(missing_apt_packages "$@")
    [ ${#missing[@]} -gt 0 ] || return 0
    echo "Installing: ${missing[*]}"
    as_root apt-get update -qq
    local names=()
    for wanted in "${missing[@]}"; do
        names+=("$(offered_name "$wanted")")
    done
    apt_install "${names[@]}"
}

install_extras_with_apt() {
    local name
    for name in $(missing_apt_packages "$@"); do
        apt-cache show "$name" >/dev/null 2>&1 || continue
        echo "Installing: $name"
        apt_install "$name" || echo "Going on without $name." >&2
    done
}

install_with_brew() {
    local missing=() name
    for name in "$@"; do
        brew list --versions "$name" >/dev/null 2>&1 || missing+=("$name")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    echo "Installing: ${missing[*]}"
    brew install "${missing[@]}"
}

install_packages() {
    local group more names=() extras=()
    if command -v apt-get >/dev/null; then
        for group in "$@"; do
            read -r -a more <<<"$(apt_packages "$group")"
            names+=("${more[@]}")
            read -r -a more <<<"$(apt_extras "$group")"
            extras+=("${more[@]}")
        done
        install_with_apt "${names[@]}"
        install_extras_with_apt "${extras[@]}"
    elif command -v brew >/dev/null; then
        for group in "$@"; do
            names+=($(brew_packages "$group"))
        done
        install_with_brew ${names[@]+"${names[@]}"}
    else
        echo "Neither apt-get nor brew is here; please install the packages listed in scripts/packages.sh." >&2
    fi
}

# Configures a preset the first time and builds the given targets (all without any).
build_preset() {
    local preset=$1
    shift
    if [ ! -f "build/$preset/build.ninja" ]; then
        cmake --preset "$preset" >/dev/null
    fi
    cmake --build --preset "$preset" ${1:+--target "$@"}
}
