#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later

# scripts/check-skips.sh, on ctest summaries written here: in CI a skip fails unless the
# expected-skips list names the test for a condition that holds; elsewhere it is only named.
set -uo pipefail
repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
check="$repo/scripts/check-skips.sh"
source "$repo/tests/scripts/lib/verdicts.sh"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cat >"$work/expected.txt" <<'LIST'
# test | condition | why
tst_inroot | debian13 | an example: / is no mount point in a chroot
LIST
export CORKWHEEL_EXPECTED_SKIPS="$work/expected.txt"

# A ctest summary in which `$@` were skipped.
summary() {
    echo "100% tests passed, 0 tests failed out of 9"
    if [[ $# -gt 0 ]]; then
        echo
        echo "The following tests did not run:"
        local number=1 test
        for test in "$@"; do
            printf '\t%3d - %s (Skipped)\n' "$number" "$test"
            number=$((number + 1))
        done
    fi
}

# expect WHAT pass|fail CI CONDITION SKIPPED...
expect() {
    local what=$1 wanted=$2 ci=$3 condition=$4
    shift 4
    summary "$@" >"$work/ctest.log"
    local status=0
    CI=$ci "$check" "$work/ctest.log" "$condition" >/dev/null 2>&1 || status=$?
    if [[ ($wanted == pass && $status -eq 0) || ($wanted == fail && $status -ne 0) ]]; then
        verdict "$what" true
    else
        verdict "$what" false "exit $status, wanted $wanted"
    fi
}

expect "no skip passes in CI" pass true bookworm
expect "a skip not on the list fails in CI" fail true bookworm tst_other
expect "a skip listed for this condition passes in CI" pass true trixie tst_inroot
expect "a skip listed for another condition fails in CI" fail true bookworm tst_inroot
expect "one unexpected skip among expected ones fails in CI" fail true trixie tst_inroot tst_other
expect "outside CI a skip is only named" pass "" bookworm tst_other

totals
