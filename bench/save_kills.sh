#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later

# Crash safety of the panel document: stores killed with SIGKILL at random moments of their
# save, eight at a time, each document then read back as the old panels, the new ones or
# anything else (the test tst_savesafety, with more kills).
#
#   bench/save_kills.sh [KILLS]     1,000 kills by default (needs build/tests/model/tst_savesafety)
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../scripts/lib/common.sh"

kills=${1:-1000}
start=$(date +%s%N)
CORKWHEEL_SAVE_KILLS=$kills QT_QPA_PLATFORM=offscreen \
    "$(build_folder)/tests/model/tst_savesafety" killsDuringSaveLeaveTheOldOrTheNewPanels |
    grep -E "kills within|^(PASS|FAIL)"
end=$(date +%s%N)
echo "$kills kills in $(((end - start) / 1000000)) ms"
