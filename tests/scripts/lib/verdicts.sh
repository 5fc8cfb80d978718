# SPDX-License-Identifier: GPL-3.0-or-later

# What the shell tests of tests/scripts share: a line per check in Qt Test's words, and the
# closing count that ctest and a reader look for.
passed=0
failed=0

# verdict WHAT true|false [DETAIL]
verdict() {
    if [[ $2 == true ]]; then
        echo "PASS   : $1"
        passed=$((passed + 1))
    else
        echo "FAIL!  : $1${3:+ ($3)}"
        failed=$((failed + 1))
    fi
}

# holds COMMAND...: "true" when the command succeeds, else "false", for verdict.
holds() {
    "$@" && echo true || echo false
}

# Prints the count and succeeds only when every check passed.
totals() {
    echo "Totals: $passed passed, $failed failed"
    [[ $failed -eq 0 ]]
}
