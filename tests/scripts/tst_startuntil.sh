#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later

# start_until, with which the virtual desktops start their window manager, compositor and
# icons program: one that hangs without showing is ended and started again, one that shows
# is left running, and one that never shows fails the start, leaving nothing behind.
set -euo pipefail
repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
VIRTUAL_DESKTOP_START_WAIT=1
source "$repo/scripts/lib/virtual-desktop.sh"
source "$repo/tests/scripts/lib/verdicts.sh"

work=$(mktemp -d)
trap 'stop_virtual_desktop; rm -rf "$work"' EXIT
DISPLAY=:test

# Hangs without showing the first time it is started; shows the second time. Either way it
# runs until start_until or the end of this script ends it: the sleep is its life, not a
# wait of the test's, which asserts only on what start_until returns and leaves behind.
cat >"$work/program" <<'PROGRAM'
#!/usr/bin/env bash
if [[ -e $1/started ]]; then
    touch "$1/shown"
else
    touch "$1/started"
fi
exec sleep 300
PROGRAM
chmod +x "$work/program"

ended() {
    ! running "$1"
}

# Whether none of the programs started from the FROMth on (counting from 0) runs.
none_run_since() {
    local pid
    for pid in "${VIRTUAL_DESKTOP_PIDS[@]:$1}"; do
        ! running "$pid" || return 1
    done
}

shown=false
start_until hanging "[[ -e $work/shown ]]" "$work/log" "$work/program" "$work" \
    2>"$work/stderr" && shown=true
verdict "a program that hangs once is started again and shows" "$shown"
verdict "the hung one is said, on standard error" \
    "$(holds grep -q "hanging did not show within 1 s on :test: starting it again" \
        "$work/stderr")"
verdict "it was started twice" "$(holds test "${#VIRTUAL_DESKTOP_PIDS[@]}" = 2)"
verdict "the hung one is ended" "$(holds ended "${VIRTUAL_DESKTOP_PIDS[0]}")"
verdict "the one that shows runs on" "$(holds running "${VIRTUAL_DESKTOP_PIDS[1]}")"

# A program that never shows (a long sleep, ended by start_until after each second's try).
started=false
start_until never false "$work/log" sleep 300 2>"$work/stderr" && started=true
verdict "a program that never shows fails the start" "$(holds test "$started" = false)"
verdict "and says so" "$(holds grep -q "never did not start on :test" "$work/stderr")"
verdict "it was started three times" "$(holds test "${#VIRTUAL_DESKTOP_PIDS[@]}" = 5)"
verdict "and none of them is left running" "$(holds none_run_since 2)"
totals
