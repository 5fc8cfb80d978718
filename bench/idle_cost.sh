#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later

# Idle cost beside a classic desktop monitor, in one run under the same virtual desktop:
# Corkwheel with its three starter panels, then conky configured to show the same (a clock
# every second; CPU, memory, disks and a network graph; `uptime` every 5 s), each for the
# same time, taking turns for several rounds. Prints, for each run, the CPU time used (own
# and children's), the part of it after the first 10 s (start-up over: what running costs)
# and the resident memory at the end; then the median of each over the rounds. One run of
# either varies by about a sixth from the next, so a single pair decides nothing.
#
#   bench/idle_cost.sh [seconds]      (default 60, at least 20; needs build/bin/corkwheel and
#                                      conky; CORKWHEEL=<path> measures another build;
#                                      ROUNDS=<n> runs each n times, default 3)
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/.." && pwd)
source "$root/scripts/lib/common.sh"
source "$root/scripts/lib/virtual-desktop.sh"
seconds=${1:-60}
rounds=${ROUNDS:-3}
corkwheel=${CORKWHEEL:-$root/build/bin/corkwheel}

install_missing_packages conky-std xvfb openbox picom
work=$(mktemp -d)
# Set first, so that a desktop that fails to start halfway is taken down too.
trap 'stop_virtual_desktop; rm -rf "$work"' EXIT
start_virtual_desktop >/dev/null
ticks=$(getconf CLK_TCK)

# CPU ticks of a process: its own, then its reaped children's, from /proc/<pid>/stat.
cpu_ticks() {
    awk '{ print $14 + $15, $16 + $17 }' "/proc/$1/stat"
}

rss_mb() {
    awk '/^VmRSS/ { printf "%.1f", $2 / 1024 }' "/proc/$1/status"
}

# measure <label> <command...>: runs the command for $seconds and reports its cost; the
# figures also go to $work/runs for the medians.
measure() {
    local label=$1
    shift
    "$@" >/dev/null 2>&1 &
    local pid=$!
    sleep 10
    local started
    started=$(cpu_ticks "$pid")
    sleep $((seconds - 10))
    local ended
    ended=$(cpu_ticks "$pid")
    echo "$label $started $ended $seconds $(rss_mb "$pid")" | awk -v t="$ticks" '{
        printf "%-10s CPU %.2f s (own %.2f, children %.2f) in %d s, %.2f s after the first 10 s" \
            "   resident %6s MB\n", $1, ($4 + $5) / t, $4 / t, $5 / t, $6,
            ($4 + $5 - $2 - $3) / t, $7 }' | tee -a "$work/runs"
    kill "$pid"
    wait "$pid" 2>/dev/null || true
}

cat >"$work/conky.conf" <<'CONKY'
conky.config = {
    update_interval = 1,
    own_window = true,
    own_window_type = 'desktop',
    own_window_transparent = true,
    own_window_argb_visual = true,
    double_buffer = true,
    use_xft = true,
    font = 'DejaVu Sans Mono:size=10',
    minimum_width = 280,
    alignment = 'top_left',
};
conky.text = [[
${time %A, %B %d  %l:%M:%S %p}
CPU ${cpu}% ${cpubar}
Memory ${mem} / ${memmax} ${membar}
/ ${fs_free /} free ${fs_bar /}
${downspeed IFACE} down ${upspeed IFACE} up
${downspeedgraph IFACE 30,280}
${execi 5 uptime}
]];
CONKY
iface=$(awk '$2 == "00000000" { print $1; exit }' /proc/net/route)
sed -i "s/IFACE/${iface:-lo}/g" "$work/conky.conf"

mkdir -p "$work/runtime"
chmod 700 "$work/runtime"
for ((round = 1; round <= rounds; round++)); do
    # Every run of Corkwheel starts as on a new account: no settings, the starter panels.
    rm -rf "$work/data" "$work/config"
    mkdir -p "$work/data" "$work/config"
    measure corkwheel env XDG_DATA_HOME="$work/data" XDG_CONFIG_HOME="$work/config" \
        XDG_RUNTIME_DIR="$work/runtime" QT_QPA_PLATFORM=xcb "$corkwheel"
    measure conky conky -c "$work/conky.conf"
done

# Medians per program over the rounds: CPU time, its part after the first 10 s, memory.
echo "medians of $rounds rounds:"
for label in corkwheel conky; do
    grep "^$label " "$work/runs" | awk -v label="$label" '
        { cpu[NR] = $3; after[NR] = $(NF - 9); rss[NR] = $(NF - 1) }
        function median(a, n,    i, j, t) {
            for (i = 1; i <= n; i++)
                for (j = i + 1; j <= n; j++)
                    if (a[j] < a[i]) { t = a[i]; a[i] = a[j]; a[j] = t }
            return n % 2 ? a[(n + 1) / 2] : (a[n / 2] + a[n / 2 + 1]) / 2
        }
        END { printf "%-10s CPU %.2f s, %.2f s after the first 10 s, resident %.1f MB\n",
              label, median(cpu, NR), median(after, NR), median(rss, NR) }'
done
