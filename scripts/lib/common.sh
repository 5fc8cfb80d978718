# SPDX-License-Identifier: GPL-3.0-or-later

# Shared by run.sh and test.sh: what Corkwheel needs from Debian 12 or 13, and how it is built.

# The Debian release this runs on: bookworm (12) or trixie (13).
# shellcheck source=/dev/null
DEBIAN_CODENAME=$(. /etc/os-release && echo "${VERSION_CODENAME:-}")

BUILD_PACKAGES=(
    cmake ninja-build g++ pkg-config
    qt6-base-dev qt6-base-dev-tools qt6-svg-dev qt6-webengine-dev
    qt6-image-formats-plugins
    # lupdate and lrelease, and Qt's CMake support for them, for the translations.
    qt6-l10n-tools qt6-tools-dev
    libgl-dev libxkbcommon-dev libicu-dev nlohmann-json3-dev libfontconfig-dev
    libxcb1-dev libxcb-shape0-dev libxcb-xfixes0-dev
    zsh
)

TEST_PACKAGES=(
    xvfb openbox picom xdotool wmctrl x11-utils x11-xserver-utils trayer desktop-file-utils
    fonts-dejavu-core clang-format
    # Qt's own catalogues, for the standard texts of its widgets in the user's language.
    qt6-translations-l10n
    # fc-list, which the font picker's test holds the installed faces against.
    fontconfig
    # The window managers the desktop tests run under, their desktop icons programs and the
    # session bus they want.
    xfwm4 xfdesktop4 mutter kwin-x11 pcmanfm-qt dbus-daemon
    # A network share that stops answering, made with FUSE.
    libfuse3-dev fuse3
    # The screen reader's view of the editor: the accessibility bus and its registry, and an
    # AT-SPI client in Debian's Python.
    at-spi2-core python3-pyatspi
    # The store's tests mount a full and a read-only folder in a mount namespace of their own
    # (unshare, findmnt, mount); the single-instance test connects as a user it makes
    # (useradd, userdel), and the termination signals test runs the binary as one (setpriv).
    util-linux mount passwd
)

# What scripts/check-package.sh needs besides the build and test packages: the freedesktop
# validators, CPack's Debian tools and a man page renderer.
PACKAGE_CHECK_PACKAGES=(
    desktop-file-utils appstream dpkg-dev file groff-base
)

# What scripts/fuzz.sh needs besides the build packages: clang and its runtime libraries, of
# which libFuzzer is one. Both names stand for Debian's default clang, 14 on Debian 12 and 19
# on Debian 13.
FUZZ_PACKAGES=(
    clang libclang-rt-dev
)

# Debian 13 has these packages under the same names, and more besides. Its libqt6svg6 no
# longer holds Qt's SVG image format and icon engine plugins, without which SVG images and
# every symbol of the user interface come out empty: they are in qt6-svg-plugins. And
# Wayland: the Qt Wayland platform and LayerShellQt, with which Corkwheel puts its panels
# below the windows of a wlroots compositor, and sway (with grim for screenshots) to test that
# under. The Wayland tests run sway as a user of its own. And GNOME Shell, headless with its
# Xwayland, with the desktop icons and tray icon extensions that Ubuntu has on, for the GNOME
# on Wayland test (gdbus, in libglib2.0-bin, speaks to it from scripts/lib/gnome-desktop.sh).
# And Plasma on Wayland, headless, for the Plasma on Wayland tests: KWin, Plasma's shell with
# its desktop (plasma-desktop), and kscreen-doctor (in libkscreen-bin) to move and switch
# KWin's outputs as Plasma's settings do.
if [[ $DEBIAN_CODENAME == trixie ]]; then
    BUILD_PACKAGES+=(qt6-svg-plugins qt6-wayland qt6-wayland-dev liblayershellqtinterface-dev)
    TEST_PACKAGES+=(sway grim
        gnome-shell gnome-shell-extension-desktop-icons-ng gnome-shell-extension-appindicator
        xwayland libglib2.0-bin kwin-wayland plasma-desktop libkscreen-bin)
fi

repo_root() {
    cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd
}

# build_folder [SUFFIX]: the build folder, build/ (or build-SUFFIX/). Debian 13 builds in
# folders of their own, build-debian13/ (build-debian13-SUFFIX/), so that one source tree can
# hold a Debian 12 build and a Debian 13 one: scripts/in-debian13.sh builds this same tree
# on Debian 13.
build_folder() {
    local name=build
    [[ $DEBIAN_CODENAME == trixie ]] && name+=-debian13
    echo "$(repo_root)/$name${1:+-$1}"
}

as_root() {
    if [[ $(id -u) -eq 0 ]]; then
        "$@"
    else
        sudo "$@"
    fi
}

# Installs only the packages that are not installed yet, so a second run costs nothing.
install_missing_packages() {
    local missing=()
    local package
    for package in "$@"; do
        if ! dpkg-query -W -f='${db:Status-Abbrev}' "$package" 2>/dev/null | grep -q '^ii'; then
            missing+=("$package")
        fi
    done
    if [[ ${#missing[@]} -eq 0 ]]; then
        return 0
    fi
    echo "Installing: ${missing[*]}"
    as_root env DEBIAN_FRONTEND=noninteractive apt-get update -q
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends \
        "${missing[@]}"
}

# configure_and_build <build dir> [cmake options...] [--targets target...]
# Builds everything unless targets are named.
configure_and_build() {
    local build_dir=$1
    shift
    local options=() targets=()
    while (($#)); do
        if [[ $1 == --targets ]]; then
            shift
            targets=("$@")
            break
        fi
        options+=("$1")
        shift
    done
    cmake -S "$(repo_root)" -B "$build_dir" -G Ninja "${options[@]}"
    cmake --build "$build_dir" ${targets[@]:+--target "${targets[@]}"}
}
