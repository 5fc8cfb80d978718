#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later

# stop_and_reap, with which the session scripts end the desktop programs they started: one
# that ends when asked, and one that ignores the request, are both gone when it returns.
# -e as the session scripts have it, under which a helper that fails on a process that has
# just ended would end this script too.
set -euo pipefail
repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
source "$repo/scripts/lib/background-process.sh"
source "$repo/tests/scripts/lib/verdicts.sh"

sleep 300 &
obliging=$!
# Ready only once its trap is set: asked before, it would end at once.
ready=$(mktemp)
trap 'rm -f "$ready"' EXIT
bash -c 'trap "" TERM; echo >"$0"; while :; do sleep 1; done' "$ready" &
stubborn=$!
until [[ -s $ready ]]; do sleep 0.05; done

gone() {
    ! running "$1"
}

verdict "both are running before" "$(holds running "$obliging")"
verdict "the stubborn one too" "$(holds running "$stubborn")"
stop_and_reap "$obliging" "$stubborn"
verdict "one that ends when asked is gone" "$(holds gone "$obliging")"
verdict "one that ignores the request is gone" "$(holds gone "$stubborn")"
verdict "and is reaped, not left a zombie" "$(holds test ! -e "/proc/$stubborn")"

totals
