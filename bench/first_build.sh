#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later

# From a fresh clone to the first panels, and to a finished suite, on a fresh Debian 12
# machine: a root made with debootstrap that has only what a new machine has (the compiler,
# CMake and git). Each case clones this repository's current commit into the root and runs
# the README's command there as root:
#   scripts/run.sh            until Corkwheel's three starter panels are on the display
#   CI=true scripts/test.sh   until it ends
# first without the packages, each in a copy of the fresh root, then again in the root
# where the test command installed everything.
#
#   bench/first_build.sh [FOLDER]   FOLDER keeps the roots and the logs
#                                   (default: ${XDG_CACHE_HOME:-$HOME/.cache}/corkwheel/first-build)
#
# Needs root (debootstrap, mount and chroot; through sudo when not root). Prints one line a
# case: the seconds it took, and how many packages apt installed.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
source "$here/../scripts/lib/common.sh"
source "$here/../scripts/lib/debian-root.sh"
source "$here/../scripts/lib/virtual-desktop.sh"

folder=${1:-${XDG_CACHE_HOME:-$HOME/.cache}/corkwheel/first-build}
if [[ $(id -u) -ne 0 ]]; then
    exec sudo env CORKWHEEL_DEBIAN_MIRROR="$DEBIAN_MIRROR" "$0" "$folder"
fi
repo=$(repo_root)
DEBIAN_ROOT_SUITE=bookworm
mkdir -p "$folder"
folder=$(realpath "$folder")

# What a new Debian 12 machine of the kind the README means comes with.
make_fresh_root() {
    DEBIAN_ROOT=$folder/fresh
    make_debian_root
    [[ -f $DEBIAN_ROOT/.corkwheel-new-machine ]] && return 0
    mount_debian_root "$repo"
    run_in_debian_root / env DEBIAN_FRONTEND=noninteractive apt-get update -q
    run_in_debian_root / env DEBIAN_FRONTEND=noninteractive apt-get install -y -q \
        --no-install-recommends build-essential cmake git ca-certificates
    run_in_debian_root / apt-get clean
    unmount_debian_root
    touch "$DEBIAN_ROOT/.corkwheel-new-machine"
}

# copy_fresh_root <name>: a new copy of the fresh root, for a case of its own.
copy_fresh_root() {
    rm -rf --one-file-system "${folder:?}/$1"
    cp -a "$folder/fresh" "$folder/$1"
}

# timed_case <root name> <run|test> <label>: clones the repository into the root and times
# the command there; the log is <label>.log in the folder.
timed_case() {
    local kind=$2 label=$3 log="$folder/$3.log"
    DEBIAN_ROOT=$folder/$1
    mount_debian_root "$repo"
    rm -rf "$DEBIAN_ROOT/root/corkwheel"
    run_in_debian_root / git clone -q "$repo" /root/corkwheel
    local started=$EPOCHREALTIME outcome
    if [[ $kind == run ]]; then
        outcome=$(time_until_panels "$log")
    else
        outcome=passed
        run_in_debian_root /root/corkwheel env CI=true scripts/test.sh >"$log" 2>&1 ||
            outcome=failed
    fi
    local seconds
    seconds=$(awk -v a="$started" -v b="$EPOCHREALTIME" 'BEGIN { printf "%.0f", b - a }')
    local installed
    installed=$(sed -n 's/.*, \([0-9]*\) newly installed.*/\1/p' "$log" |
        awk '{ n += $1 } END { print n + 0 }')
    printf '%-32s %s after %s s, %s packages installed\n' "$label" "$outcome" "$seconds" \
        "$installed"
    unmount_debian_root
}

# Runs scripts/run.sh in the root until its three starter panels are visible on the
# display, and prints what came of it.
time_until_panels() {
    local log=$1
    # The virtual display's socket, for the application in the root. Only here: the test
    # command starts displays of its own, whose sockets must not land beside this one's.
    mkdir -p "$DEBIAN_ROOT/tmp/.X11-unix"
    bind_privately /tmp/.X11-unix "$DEBIAN_ROOT/tmp/.X11-unix"
    run_in_debian_root /root/corkwheel env "DISPLAY=$DISPLAY" scripts/run.sh >"$log" 2>&1 &
    local pid=$!
    until (($(xdotool search --onlyvisible --class corkwheel 2>/dev/null | wc -l) >= 3)); do
        if ! kill -0 "$pid" 2>/dev/null; then
            echo "ended without panels"
            return 0
        fi
        sleep 0.2
    done
    echo "panels"
}

# Whatever root is mounted when this ends (DEBIAN_ROOT names it; unmounting one that is not
# mounted does nothing), and the display.
finish() {
    [[ -z ${DEBIAN_ROOT:-} ]] || unmount_debian_root
    stop_virtual_desktop
}

install_missing_packages debootstrap xvfb openbox picom xdotool x11-utils
trap finish EXIT
make_fresh_root
start_virtual_desktop >/dev/null
copy_fresh_root without-packages-run
timed_case without-packages-run run "run.sh, no packages"
copy_fresh_root without-packages-test
timed_case without-packages-test test "test.sh, no packages"
timed_case without-packages-test run "run.sh, packages installed"
timed_case without-packages-test test "test.sh, packages installed"
