#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later

# Start-up: from exec of corkwheel to all three starter panels shown, on a virtual desktop
# (Xvfb, openbox, picom) with empty XDG folders, five times.
#
#   bench/startup_time.sh          (needs build/bin/corkwheel)
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/.." && pwd)
source "$root/scripts/lib/common.sh"
source "$root/scripts/lib/virtual-desktop.sh"

start_virtual_desktop >/dev/null
work=$(mktemp -d)
trap 'stop_virtual_desktop; rm -rf "$work"' EXIT

shown_panels() {
    local count=0 name
    for name in Clock "System Stats" Uptime; do
        if xdotool search --onlyvisible --name "^$name\$" >/dev/null 2>&1; then
            count=$((count + 1))
        fi
    done
    echo "$count"
}

for run in 1 2 3 4 5; do
    rm -rf "$work"/*
    mkdir -p "$work"/{data,config,runtime}
    chmod 700 "$work/runtime"
    start=$(date +%s%N)
    XDG_DATA_HOME="$work/data" XDG_CONFIG_HOME="$work/config" XDG_RUNTIME_DIR="$work/runtime" \
        QT_QPA_PLATFORM=xcb "$root/build/bin/corkwheel" >/dev/null 2>&1 &
    pid=$!
    until [[ $(shown_panels) -eq 3 ]]; do
        sleep 0.005
    done
    end=$(date +%s%N)
    echo "run $run: all starter panels shown after $(((end - start) / 1000000)) ms"
    kill "$pid"
    wait "$pid" 2>/dev/null || true
done
