#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later

# Long-running cost: twenty panels of every type (one of them a web page) refreshing every
# second, on the virtual desktop (Xvfb, openbox, picom). Every minute it samples the
# process's resident memory, open file descriptors, threads and child processes, and at the
# end it prints the samples, the memory slope per hour after the first five minutes (a
# least-squares line) and any process left behind once Corkwheel has quit.
#
#   bench/soak.sh [minutes]      (default 30; needs build/bin/corkwheel, CORKWHEEL=<path>
#                                 measures another build, which finds its web engine plugin
#                                 in ../lib/corkwheel as in the build folder; WEBPAGE=no
#                                 puts a twentieth clock in place of the web page, to tell
#                                 the web engine's share from the rest)
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/.." && pwd)
source "$root/scripts/lib/common.sh"
source "$root/scripts/lib/virtual-desktop.sh"
minutes=${1:-30}
corkwheel=${CORKWHEEL:-$root/build/bin/corkwheel}
webpage=${WEBPAGE:-yes}

install_missing_packages xvfb openbox picom python3
work=$(mktemp -d)
server_pid=
cleanup() {
    [[ -n $server_pid ]] && kill "$server_pid" 2>/dev/null
    stop_virtual_desktop
    rm -rf "$work"
}
# Set first, so that a desktop that fails to start halfway is taken down too.
trap cleanup EXIT
start_virtual_desktop >/dev/null

# What the panels read: a file that changes every second, a picture and a page served from
# this machine (loopback only).
mkdir -p "$work/data/Corkwheel" "$work/config" "$work/runtime" "$work/site"
chmod 700 "$work/runtime"
cp "$root/tests/data/images/blue-8x6.svg" "$work/site/blue.svg"
cat >"$work/site/index.html" <<'HTML'
<!doctype html><title>soak</title>
<body><p id="t"></p><script>setInterval(() => {
  document.getElementById('t').textContent = new Date().toISOString(); }, 1000);</script>
HTML
(while :; do date +%s.%N >"$work/ticking.txt"; sleep 1; done) &
ticker_pid=$!
python3 -m http.server 0 --bind 127.0.0.1 --directory "$work/site" >"$work/http.log" 2>&1 &
server_pid=$!
port=
for _ in $(seq 50); do
    port=$(sed -n 's/.*port \([0-9]*\).*/\1/p' "$work/http.log" | head -1)
    [[ -n $port ]] && break
    sleep 0.1
done
[[ -n $port ]] || { echo "the local web server did not start" >&2; exit 1; }

python3 - "$work" "$port" "$webpage" >"$work/data/Corkwheel/panels.json" <<'PY'
import json, sys, uuid
work, port, webpage = sys.argv[1], sys.argv[2], sys.argv[3] == "yes"
colour = lambda r, g, b, a: {"red": r, "green": g, "blue": b, "alpha": a}
def panel(index, kind, **content):
    fields = {"shellCommand": "", "filePath": "", "textTemplate": "", "clockFormat": "",
              "imageSource": "", "webpageURL": ""}
    fields.update(content)
    return dict(id=str(uuid.uuid4()).upper(), name=f"soak {index} {kind}", type=kind,
                isEnabled=True,
                frame={"x": 10 + (index % 5) * 250, "y": 10 + (index // 5) * 190,
                       "width": 240, "height": 180},
                style={"fontName": "", "fontSize": 12, "textColor": colour(1, 1, 1, 1),
                       "backgroundColor": colour(0, 0, 0, 0.5), "showShadow": True,
                       "showGlassBackground": index % 2 == 0, "cornerRadius": 10,
                       "opacity": 1, "textAlignment": "leading"},
                refreshInterval=1, **fields)
panels = []
kinds = [("shell", {"shellCommand": "date; uptime; ls /proc | wc -l"}),
         ("file", {"filePath": f"{work}/ticking.txt"}),
         ("text", {"textTemplate": "{date:EEEE} {date:HH:mm:ss}"}),
         ("clock", {"clockFormat": "HH:mm:ss"}),
         ("image", {"imageSource": f"{work}/site/blue.svg"}),
         ("image", {"imageSource": f"http://127.0.0.1:{port}/blue.svg"}),
         ("systemStats", {})]
for index in range(19):
    kind, content = kinds[index % len(kinds)]
    panels.append(panel(index, kind, **content))
if webpage:
    panels.append(panel(19, "webpage", webpageURL=f"http://127.0.0.1:{port}/index.html"))
else:
    panels.append(panel(19, "clock", clockFormat="HH:mm:ss"))
print(json.dumps(panels, separators=(",", ":")))
PY

XDG_DATA_HOME=$work/data XDG_CONFIG_HOME=$work/config XDG_RUNTIME_DIR=$work/runtime \
    QTWEBENGINE_DISABLE_SANDBOX=1 QTWEBENGINE_CHROMIUM_FLAGS=--disable-gpu \
    "$corkwheel" >/dev/null 2>&1 &
pid=$!
# Start-up (the web engine coming up) is not what this measures.
sleep 15

# Every process below Corkwheel, the web engine's included.
descendants() {
    local children
    children=$(cat /proc/"$1"/task/*/children 2>/dev/null || true)
    for child in $children; do
        echo "$child"
        descendants "$child"
    done
}

zombies_among() {
    for child in $1; do
        [[ $(awk '{ print $3 }' "/proc/$child/stat" 2>/dev/null) == Z ]] && echo "$child"
    done
    true
}

# A command's process is a zombie for the moment between its end and its collection; only
# one still uncollected two seconds later counts.
lasting_zombies() {
    local first
    first=$(zombies_among "$1")
    [[ -z $first ]] && { echo 0; return; }
    sleep 2
    zombies_among "$first" | wc -l
}

sample() {
    local minute=$1 rss fds threads children zombies
    rss=$(awk '/^VmRSS/ { printf "%.1f", $2 / 1024 }' "/proc/$pid/status")
    fds=$(ls "/proc/$pid/fd" | wc -l)
    threads=$(awk '/^Threads/ { print $2 }' "/proc/$pid/status")
    children=$(descendants "$pid" | wc -l)
    zombies=$(lasting_zombies "$(descendants "$pid")")
    echo "$minute $rss $fds $threads $children $zombies" | tee -a "$work/samples"
}

echo "minute  resident-MB  fds  threads  descendants  zombies"
for minute in $(seq 0 "$minutes"); do
    [[ $minute -gt 0 ]] && sleep 60
    kill -0 "$pid" 2>/dev/null || { echo "corkwheel ended early" >&2; exit 1; }
    sample "$minute"
done

descendants "$pid" >"$work/running"
kill -TERM "$pid"
wait "$pid" 2>/dev/null || true
kill "$ticker_pid" 2>/dev/null || true
sleep 2
left=$(while read -r child; do
    state=$(awk '{ print $3 }' "/proc/$child/stat" 2>/dev/null || true)
    [[ -n $state && $state != Z ]] && echo "$child"
done <"$work/running" || true)

awk -v from=5 '$1 >= from { n++; sx += $1; sy += $2; sxx += $1 * $1; sxy += $1 * $2 }
    END {
        slope = (n * sxy - sx * sy) / (n * sxx - sx * sx)
        printf "memory slope after minute %d: %.2f MB per hour (%d samples)\n", from, slope * 60, n
    }' "$work/samples"
# Commands in flight hold pipes and threads for a moment, so single samples differ; what
# matters is whether the range drifts.
awk -v from=5 '$1 >= from { if (!n++) { fl = fh = $3; tl = th = $4 }
        fl = $3 < fl ? $3 : fl; fh = $3 > fh ? $3 : fh; tl = $4 < tl ? $4 : tl; th = $4 > th ? $4 : th
        if ($6 > 0) zombies = 1 }
    END { printf "after minute %d: descriptors %d-%d, threads %d-%d, %s\n", from, fl, fh, tl, th,
              zombies ? "zombies seen" : "no zombies" }' "$work/samples"
if [[ -n $left ]]; then
    echo "left behind after quitting:"
    ps -o pid,stat,args -p "$(echo "$left" | paste -sd,)"
else
    echo "nothing left behind after quitting"
fi
