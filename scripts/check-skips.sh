#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later

# Names the tests that ctest reported as skipped in CTEST_LOG and holds them against
# tests/expected-skips.txt. With CI set, a skip that the list does not expect for one of
# CONDITIONS (the Debian codename, "sanitize") fails; elsewhere it is only named, since a
# developer's machine may lack what CI has.
#
#   scripts/check-skips.sh CTEST_LOG [CONDITION...]
set -euo pipefail
log=$1
shift
here=${*:-nowhere named}
conditions=" always $* "
list=${CORKWHEEL_EXPECTED_SKIPS:-"$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)/tests/expected-skips.txt"}

# The summary ctest prints at the end: "	 42 - tst_name (Skipped)".
mapfile -t skipped < <(sed -nE 's/^[[:space:]]*[0-9]+ - ([^ ]+) \(Skipped\)$/\1/p' "$log")

expected() {
    local test=$1 name condition
    while IFS='|' read -r name condition _; do
        name=$(xargs <<<"$name")
        condition=$(xargs <<<"$condition")
        [[ -z $name || $name == \#* ]] && continue
        case $condition in
        debian12) condition=bookworm ;;
        debian13) condition=trixie ;;
        esac
        [[ $name == "$test" && $conditions == *" $condition "* ]] && return 0
    done <"$list"
    return 1
}

unexpected=0
for test in "${skipped[@]}"; do
    if expected "$test"; then
        echo "Skipped as expected: $test"
    else
        echo "Skipped, and not expected here ($here): $test" >&2
        unexpected=1
    fi
done
echo "${#skipped[@]} skipped"
if [[ $unexpected -ne 0 && -n ${CI:-} ]]; then
    echo "CI fails on a skip that is not expected; run the test to see its reason" >&2
    exit 1
fi
exit 0
