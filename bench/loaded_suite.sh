#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later

# The whole suite on a busy machine: scripts/test.sh RUNS times in a row (default 5) with
# BUSY processes (default 2) spinning on the processor beside it the whole time, as a
# machine compiling something else would. Any failing run fails it; the tests must wait
# on what they check, not on time.
#
#   bench/loaded_suite.sh [RUNS] [BUSY] [-- TEST.SH OPTIONS]
#   bench/loaded_suite.sh 1 2 -- --sanitize
#
# Prints one line a run (passed or failed, with ctest's summary and the minutes it took)
# and the ctest log of a failing run is kept in /tmp.
set -uo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/.." && pwd)

runs=${1:-5}
busy=${2:-2}
shift $(($# > 2 ? 2 : $#))
[[ "${1:-}" == "--" ]] && shift

spinners=()
stop_spinners() {
    ((${#spinners[@]})) && kill "${spinners[@]}" 2>/dev/null
    wait 2>/dev/null
}
trap stop_spinners EXIT
for ((i = 0; i < busy; i++)); do
    bash -c 'while :; do :; done' &
    spinners+=($!)
done

failed=0
for ((run = 1; run <= runs; run++)); do
    log=$(mktemp /tmp/loaded-suite-run$run.XXXXXX)
    start=$(date +%s)
    if CI=true "$root/scripts/test.sh" "$@" >"$log" 2>&1; then
        verdict=passed
    else
        verdict=FAILED
        failed=$((failed + 1))
    fi
    minutes=$(awk -v s=$(($(date +%s) - start)) 'BEGIN { printf "%.1f", s / 60 }')
    summary=$(grep -h -m1 "tests passed" "$log")
    if [[ $verdict == passed ]]; then
        rm -f "$log"
        log=
    fi
    echo "run $run: $verdict in $minutes min${summary:+ ($summary)}${log:+, log: $log}"
done
echo "$((runs - failed)) of $runs runs passed with $busy busy processes beside"
[[ $failed -eq 0 ]]
