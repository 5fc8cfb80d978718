#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later

# Checks Corkwheel as a user installs it, from the build/ that scripts/test.sh made
# (build-debian13/ on Debian 13):
# the files `cmake --install` puts in place pass the freedesktop validators, and the Debian
# package CPack builds installs, starts the three starter panels on a virtual desktop,
# hands a second start to the running Corkwheel, loads the web engine plugin for a webpage
# panel, and is removed again. Where the build has native Wayland panels (Debian 13), the
# package also depends on LayerShellQt, and the installed Corkwheel draws the starter panels
# on a headless sway as well. Prints "N passed, N failed" last; fails if anything failed.
set -uo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
source "$(dirname "${BASH_SOURCE[0]}")/lib/virtual-desktop.sh"
source "$(dirname "${BASH_SOURCE[0]}")/lib/wayland-desktop.sh"
root=$(repo_root)
build_dir=$(build_folder)
app_id=io.github.corkwheel.Corkwheel
mapfile -t icon_sizes <"$root/src/app/icons/sizes"
starter_panels=("Clock" "System Stats" "Uptime")

passed=0
failed=0
# check <description> <command...>: runs the command and counts it; its output is shown
# only when it fails.
check() {
    local description=$1
    shift
    local output
    if output=$("$@" 2>&1); then
        echo "PASS: $description"
        passed=$((passed + 1))
    else
        echo "FAIL: $description"
        [[ -n "$output" ]] && sed 's/^/    /' <<<"$output"
        failed=$((failed + 1))
    fi
}

finish() {
    echo "$passed passed, $failed failed"
    [[ $failed -eq 0 ]] && exit 0
    exit 1
}

work=$(mktemp -d)
corkwheel_pid=
package_installed=false
cleanup() {
    stop_corkwheel
    stop_virtual_desktop
    stop_wayland_desktop
    if $package_installed; then
        as_root env DEBIAN_FRONTEND=noninteractive apt-get purge -y -q corkwheel >/dev/null 2>&1
    fi
    rm -rf "$work"
}
trap cleanup EXIT
trap 'exit 130' INT TERM

# ---- Installed files ----------------------------------------------------------------

install_missing_packages "${TEST_PACKAGES[@]}" "${PACKAGE_CHECK_PACKAGES[@]}"
if [[ ! -f "$build_dir/CMakeCache.txt" ]]; then
    echo "FAIL: no build in $build_dir; run scripts/test.sh first"
    failed=1
    finish
fi
# Nothing to do after scripts/test.sh; it only matters when sources changed since.
check "the build is up to date" cmake --build "$build_dir"

# Whether the build has native Wayland panels: CMake found LayerShellQt for it.
build_has_layer_shell() {
    local dir
    dir=$(sed -n 's/^LayerShellQt_DIR:PATH=//p' "$build_dir/CMakeCache.txt")
    [[ -n $dir && $dir != *-NOTFOUND ]]
}
# Debian 13 has LayerShellQt and scripts/test.sh requires it there: a build without it is not
# the package Debian 13 users get, and would leave the Wayland checks out unseen.
if [[ $DEBIAN_CODENAME == trixie ]]; then
    check "the build has native Wayland panels (LayerShellQt)" build_has_layer_shell
fi

stage="$work/stage"
check "cmake --install into a staging folder" \
    env DESTDIR="$stage" cmake --install "$build_dir" --prefix /usr

expected_files() {
    echo usr/bin/corkwheel
    echo usr/lib/corkwheel/corkwheel-webengine.so
    echo "usr/share/applications/$app_id.desktop"
    echo "usr/share/metainfo/$app_id.metainfo.xml"
    echo "usr/share/icons/hicolor/scalable/apps/$app_id.svg"
    local size
    for size in "${icon_sizes[@]}"; do
        echo "usr/share/icons/hicolor/${size}x${size}/apps/$app_id.png"
    done
    echo usr/share/man/man1/corkwheel.1.gz
    # The English plural forms; the catalogue of each language is beside it.
    echo usr/share/corkwheel/translations/corkwheel_en.qm
    echo usr/share/doc/corkwheel/copyright
}

installs_every_file() {
    local missing=0 file
    while read -r file; do
        if [[ ! -f "$stage/$file" ]]; then
            echo "missing: /$file"
            missing=1
        fi
    done < <(expected_files)
    return $missing
}

icons_have_their_sizes() {
    local wrong=0 size
    for size in "${icon_sizes[@]}"; do
        local png="$stage/usr/share/icons/hicolor/${size}x${size}/apps/$app_id.png"
        if ! file "$png" | grep ", $size x $size," >/dev/null; then
            file "$png"
            wrong=1
        fi
    done
    return $wrong
}

# Hints (such as two main categories, which Utility;System;Monitor; has on purpose) are
# advice; warnings and errors fail.
desktop_entry_is_valid() {
    local output
    output=$(desktop-file-validate "$stage/usr/share/applications/$app_id.desktop") || {
        echo "$output"
        return 1
    }
    ! grep -E ': (error|warning):' <<<"$output"
}

# Each of the launcher's actions runs an option that the installed corkwheel lists in its
# help, which it prints without a display.
desktop_actions_run_known_options() {
    local entry=$stage/usr/share/applications/$app_id.desktop help option found=0
    help=$("$stage/usr/bin/corkwheel" --help) || return 1
    while read -r option; do
        found=$((found + 1))
        grep -qe "^ *$option " <<<"$help" || {
            echo "an action runs $option, which corkwheel --help does not list"
            return 1
        }
    done < <(sed -n 's/^Exec=corkwheel \(--[a-z-]*\)$/\1/p' "$entry")
    [[ $found -eq $(grep '^Actions=' "$entry" | tr -cd ';' | wc -c) ]]
}

man_page_renders_cleanly() {
    local warnings
    warnings=$(zcat "$stage/usr/share/man/man1/corkwheel.1.gz" | groff -man -ww -z 2>&1)
    [[ -z "$warnings" ]] || {
        echo "$warnings"
        return 1
    }
}

# The machine-readable copyright file: Corkwheel under the GPL, version 3 or later, and the
# bundled symbols under their own ISC licence.
copyright_is_machine_readable() {
    local copyright=$1
    head -n1 "$copyright" |
        grep -qx 'Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/' &&
        grep -qx 'License: GPL-3+' "$copyright" && grep -qx 'License: ISC' "$copyright"
}
metainfo_is_free_software() {
    grep -q '<project_license>GPL-3.0-or-later</project_license>' \
        "$stage/usr/share/metainfo/$app_id.metainfo.xml"
}

check "installs the executable, plugin, desktop entry, metainfo, icons, man page and copyright" \
    installs_every_file
check "each PNG icon has its size" icons_have_their_sizes
check "desktop-file-validate passes" desktop_entry_is_valid
check "the desktop entry's actions run options corkwheel knows" desktop_actions_run_known_options
check "appstreamcli validate --no-net passes" \
    appstreamcli validate --no-net "$stage/usr/share/metainfo/$app_id.metainfo.xml"
check "appstreamcli validate-tree --no-net passes (metainfo, desktop entry and icon agree)" \
    appstreamcli validate-tree --no-net "$stage"
check "the man page renders without warnings" man_page_renders_cleanly
check "the copyright file is machine-readable and names the GPL and ISC licences" \
    copyright_is_machine_readable "$stage/usr/share/doc/corkwheel/copyright"
check "the metainfo names the project's licence, GPL-3.0-or-later" metainfo_is_free_software

# ---- The Debian package -------------------------------------------------------------

packages="$work/packages"
mkdir -p "$packages"
# apt-get reads a local package as its unprivileged download user.
chmod 755 "$work" "$packages"
check "cpack builds the .deb" \
    cpack -G DEB --config "$build_dir/CPackConfig.cmake" -B "$packages"
rm -rf "$packages/_CPack_Packages"
deb=$(find "$packages" -maxdepth 1 -name 'corkwheel_*.deb' | head -n1)
if [[ -z "$deb" ]]; then
    echo "FAIL: no corkwheel_*.deb in $packages"
    failed=$((failed + 1))
    finish
fi
echo "Depends: $(dpkg-deb --field "$deb" Depends)"

depends_on() {
    local depends
    depends=$(dpkg-deb --field "$deb" Depends) || return 1
    tr ',' '\n' <<<"$depends" | sed 's/^ *//' | grep "^$1\b" >/dev/null
}
installs_to_usr() {
    local contents
    contents=$(dpkg-deb --contents "$deb") || return 1
    grep -q ' \./usr/bin/corkwheel$' <<<"$contents" && ! grep -q ' \./usr/local/' <<<"$contents"
}
check "the .deb installs to /usr" installs_to_usr
check "dpkg-shlibdeps found the Qt libraries" depends_on libqt6widgets6
check "the .deb depends on the web engine (plugin's libraries)" depends_on libqt6webenginewidgets6
for dependency in zsh libqt6svg6 qt6-image-formats-plugins; do
    check "the .deb depends on $dependency" depends_on "$dependency"
done
recommends_qt_catalogues() {
    dpkg-deb --field "$deb" Recommends | grep -q 'qt6-translations-l10n'
}
check "the .deb recommends Qt's catalogues (qt6-translations-l10n)" recommends_qt_catalogues
# Native Wayland panels link LayerShellQt's library and load Qt's Wayland platform.
if build_has_layer_shell; then
    check "dpkg-shlibdeps found the layer-shell library (liblayershellqtinterface6)" \
        depends_on liblayershellqtinterface6
    check "the .deb depends on qt6-wayland" depends_on qt6-wayland
fi

package_installed=true
check "apt-get installs the .deb" as_root env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -q --reinstall --no-install-recommends "$deb"
check "the installed copyright file is machine-readable and names the GPL and ISC licences" \
    copyright_is_machine_readable /usr/share/doc/corkwheel/copyright

# ---- The installed Corkwheel on a virtual desktop -----------------------------------

start_virtual_desktop

# start_corkwheel <home> [VARIABLE=value...]: starts /usr/bin/corkwheel in the background
# with a home and XDG folders of its own, so neither the user's panels nor a running
# Corkwheel get in the way.
start_corkwheel() {
    local home=$1
    shift
    mkdir -p "$home/data" "$home/config" "$home/runtime"
    chmod 700 "$home/runtime"
    env HOME="$home" XDG_DATA_HOME="$home/data" XDG_CONFIG_HOME="$home/config" \
        XDG_RUNTIME_DIR="$home/runtime" "$@" /usr/bin/corkwheel >"$home/corkwheel.log" 2>&1 &
    corkwheel_pid=$!
}

stop_corkwheel() {
    if [[ -n "$corkwheel_pid" ]]; then
        kill "$corkwheel_pid" 2>/dev/null
        wait "$corkwheel_pid" 2>/dev/null
        corkwheel_pid=
    fi
}

# within <seconds> <command...>: retries the command every 0.2 s until it succeeds.
within() {
    local seconds=$1
    shift
    local deadline=$((SECONDS + seconds))
    until "$@" >/dev/null 2>&1; do
        if [[ $SECONDS -ge $deadline ]]; then
            echo "not within ${seconds} s: $*"
            return 1
        fi
        sleep 0.2
    done
}

window_is_mapped() {
    xdotool search --onlyvisible --name "^$1\$"
}

owner_only_file() {
    [[ -f "$1" && $(stat -c %a "$1") == 600 ]]
}

second_start_opens_the_editor() {
    if window_is_mapped Corkwheel; then
        echo "the editor was open before the second start"
        return 1
    fi
    HOME="$home" XDG_DATA_HOME="$home/data" XDG_CONFIG_HOME="$home/config" \
        XDG_RUNTIME_DIR="$home/runtime" timeout 15 /usr/bin/corkwheel || return 1
    kill -0 "$corkwheel_pid" && within 10 window_is_mapped Corkwheel
}

# Runs the Exec line of each action of the installed desktop entry, as a launcher would, and
# sees it reach the running Corkwheel (a command that finds none exits 1). Edit mode and
# hiding are toggles: each runs twice, to leave the panels as they were.
desktop_actions_reach_the_running_corkwheel() {
    local command
    while read -r command; do
        for _ in 1 2; do
            HOME="$home" XDG_DATA_HOME="$home/data" XDG_CONFIG_HOME="$home/config" \
                XDG_RUNTIME_DIR="$home/runtime" timeout 15 $command || {
                echo "$command did not reach the running Corkwheel"
                return 1
            }
        done
    done < <(sed -n 's/^Exec=\(corkwheel --[a-z-]*\)$/\/usr\/bin\/\1/p' \
        "/usr/share/applications/$app_id.desktop")
    kill -0 "$corkwheel_pid"
}

home="$work/first-start"
start_corkwheel "$home"
for panel in "${starter_panels[@]}"; do
    check "the starter panel \"$panel\" is mapped" within 20 window_is_mapped "$panel"
done
check "panels.json is written, readable by its owner only" \
    within 5 owner_only_file "$home/data/Corkwheel/panels.json"
check "a second start opens the editor of the running Corkwheel and exits" \
    second_start_opens_the_editor
check "each action of the desktop entry reaches the running Corkwheel" \
    desktop_actions_reach_the_running_corkwheel
stop_corkwheel

# A webpage panel of its own, on a page from the repository, to see the installed
# executable find its plugin in /usr/lib/corkwheel.
webengine_is_loaded() {
    grep -q '/usr/lib/corkwheel/corkwheel-webengine.so' "/proc/$corkwheel_pid/maps"
}
home="$work/webpage"
mkdir -p "$home/data/Corkwheel"
cat >"$home/data/Corkwheel/panels.json" <<EOF
[{"id":"6F1C2A36-0B8E-4C43-9E43-7A4D1C7E2B10","name":"Webpage","type":"webpage",\
"isEnabled":true,"frame":{"x":40,"y":40,"width":480,"height":320},\
"style":{"fontName":"SFMono-Regular","fontSize":13,\
"textColor":{"red":1,"green":1,"blue":1,"alpha":1},\
"backgroundColor":{"red":0,"green":0,"blue":0,"alpha":0},\
"showShadow":true,"showGlassBackground":false,"cornerRadius":16,"opacity":1,\
"textAlignment":"leading"},"refreshInterval":300,"shellCommand":"","filePath":"",\
"textTemplate":"","clockFormat":"","imageSource":"",\
"webpageURL":"file://$root/docs/screenshots/sample-page.html"}]
EOF
# The web engine's sandbox refuses to run as root, and the virtual display has no GPU.
web_engine_env=(QTWEBENGINE_CHROMIUM_FLAGS=--disable-gpu)
[[ $(id -u) -eq 0 ]] && web_engine_env+=(QTWEBENGINE_DISABLE_SANDBOX=1)
start_corkwheel "$home" "${web_engine_env[@]}"
check "the webpage panel is mapped" within 20 window_is_mapped Webpage
check "a webpage panel loads /usr/lib/corkwheel/corkwheel-webengine.so" \
    within 20 webengine_is_loaded
stop_corkwheel
stop_virtual_desktop
# Stopped already; the clean-up on exit must not signal those process ids again.
# shellcheck disable=SC2034
VIRTUAL_DESKTOP_PIDS=()

# ---- The installed Corkwheel on a Wayland desktop ----------------------------------

# Where PanelStore puts the starter panels, as x y width height in the output's pixels.
declare -A starter_frames=(
    ["Clock"]="40 40 360 80"
    ["System Stats"]="40 140 280 210"
    ["Uptime"]="40 370 420 60"
)
# Right of every starter panel and of its shadow, to the output's right edge.
beside_the_panels="520 0 $((WAYLAND_DESKTOP_WIDTH - 520)) $WAYLAND_DESKTOP_HEIGHT"

# pixels_not_desktop <x> <y> <width> <height>: how many pixels of that part of the Wayland
# output, as grim takes it, are not the desktop's colour. Fails unless it read every pixel,
# so that a short screenshot never passes for an empty desktop.
pixels_not_desktop() {
    local shot=$work/shot.ppm header
    grim -t ppm -g "$1,$2 ${3}x$4" "$shot" || return 1
    # A binary PPM: three lines of header (format, size, largest value), then RGB bytes.
    header=$(head -n3 "$shot" | wc -c)
    tail -c +$((header + 1)) "$shot" | od -An -v -tx1 -w3 |
        awk -v desktop="$WAYLAND_DESKTOP_COLOR" -v pixels=$(($3 * $4)) '
            NF == 3 { read++ }
            $1 $2 $3 != desktop { other++ }
            END {
                if (read != pixels) { print "read " read + 0 " of " pixels " pixels"; exit 1 }
                print other + 0
            }'
}
shows_the_desktop_only() {
    local count
    count=$(pixels_not_desktop "$@") && [[ $count -eq 0 ]]
}
# Its text with its shadow, or its background: a starter panel covers a good part of its
# frame (a fifth and more), not a few stray pixels.
shows_a_panel() {
    local count
    count=$(pixels_not_desktop "$@") && [[ $count -ge $(($3 * $4 / 20)) ]]
}

tools_are_installed() {
    local tool missing=0
    for tool in "$@"; do
        command -v "$tool" >/dev/null || {
            echo "$tool is not installed"
            missing=1
        }
    done
    return $missing
}

# starter_panel_is_drawn <name>: within 20 s; when not, says what was there instead.
starter_panel_is_drawn() {
    # shellcheck disable=SC2086 # the frame's four numbers
    within 20 shows_a_panel ${starter_frames[$1]} && return
    # shellcheck disable=SC2086
    echo "$(pixels_not_desktop ${starter_frames[$1]}) pixels of its frame are not the desktop's"
    echo "corkwheel's output:"
    tail -n 20 "$home/corkwheel.log"
    return 1
}

sway_lists_window() {
    swaymsg -t get_tree | grep -E "\"name\": \"$1\"" >/dev/null
}

second_start_opens_the_editor_on_sway() {
    if sway_lists_window Corkwheel; then
        echo "the editor was open before the second start"
        return 1
    fi
    HOME="$home" XDG_DATA_HOME="$home/data" XDG_CONFIG_HOME="$home/config" \
        XDG_RUNTIME_DIR="$home/runtime" WAYLAND_DISPLAY="$wayland_socket" \
        timeout 15 /usr/bin/corkwheel || return 1
    kill -0 "$corkwheel_pid" && within 10 sway_lists_window Corkwheel
}

# The installed Corkwheel on sway, which offers layer shell and has no X server to fall back
# on: it must choose Qt's Wayland platform itself and put each starter panel at its place,
# below windows as layer surfaces, not as ordinary windows that sway would tile over the
# output. Checked as a user sees it, in the output's pixels.
check_on_wayland_desktop() {
    # Missing, they would leave the Wayland half of the package unchecked: that fails.
    check "sway, swaymsg and grim are installed" tools_are_installed sway swaymsg grim
    # Not through check, whose subshell would lose the variables pointing at the desktop.
    if ! start_wayland_desktop; then
        echo "FAIL: sway starts a headless Wayland desktop"
        failed=$((failed + 1))
        return
    fi
    # As a user's session has it: Corkwheel picks the platform, not the environment.
    unset QT_QPA_PLATFORM
    # Absolute, as Corkwheel's runtime folder is its own and not sway's.
    wayland_socket=$XDG_RUNTIME_DIR/$WAYLAND_DISPLAY
    check "sway shows its desktop, with nothing on it" \
        within 20 shows_the_desktop_only 0 0 "$WAYLAND_DESKTOP_WIDTH" "$WAYLAND_DESKTOP_HEIGHT"

    home="$work/wayland-start"
    start_corkwheel "$home" WAYLAND_DISPLAY="$wayland_socket"
    local panel
    for panel in "${starter_panels[@]}"; do
        check "the starter panel \"$panel\" is drawn at its place on sway" \
            starter_panel_is_drawn "$panel"
    done
    # shellcheck disable=SC2086 # the frame's four numbers
    check "beside the panels sway still shows the desktop: no panel is an ordinary window" \
        shows_the_desktop_only $beside_the_panels
    check "a second start opens the editor of the running Corkwheel as a window on sway" \
        second_start_opens_the_editor_on_sway
    stop_corkwheel
    stop_wayland_desktop
}
if build_has_layer_shell; then
    check_on_wayland_desktop
fi

# ---- Removal ------------------------------------------------------------------------

removes_cleanly() {
    as_root env DEBIAN_FRONTEND=noninteractive apt-get purge -y -q corkwheel >/dev/null &&
        ! dpkg-query -W corkwheel >/dev/null 2>&1 &&
        [[ ! -e /usr/bin/corkwheel && ! -e /usr/lib/corkwheel ]]
}
check "apt-get purges the package and its files" removes_cleanly
package_installed=false

finish
