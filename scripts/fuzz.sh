#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later

# Installs what is missing, builds the libFuzzer targets of the parsers (tests/fuzz) with
# clang, AddressSanitizer, LeakSanitizer and UndefinedBehaviorSanitizer into build-fuzz/,
# and runs each target for SECONDS (default 60) on a copy of its seeds, as many at a time
# as there are cores:
#
#   scripts/fuzz.sh [SECONDS]
#
# Fails when a target crashes, leaks, hangs, breaks one of its checks or prints any
# sanitizer report; the work folder of such a target, with the input that did it, is kept
# and named. On Debian 13 the folder is build-debian13-fuzz/.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"

seconds=${1:-60}
if ! [[ $seconds =~ ^[1-9][0-9]*$ ]]; then
    echo "usage: $0 [SECONDS]" >&2
    exit 2
fi

repo=$(repo_root)
build_dir=$(build_folder fuzz)

# The fixtures of the unit tests that are also good seeds, by target.
declare -A fixture_seeds=(
    [cputicks]="proc/stat-*.txt"
    [memoryreading]="proc/meminfo-*.txt"
    [mountinfo]="proc/mountinfo-*.txt"
    [routetable]="proc/net-route-*.txt"
    [interfacedisplayinfo]="sys/uevent-*.txt"
)

install_missing_packages "${BUILD_PACKAGES[@]}" "${FUZZ_PACKAGES[@]}"
cmake -S "$repo" -B "$build_dir" -G Ninja -DCMAKE_CXX_COMPILER=clang++ \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCORKWHEEL_WERROR=ON -DCORKWHEEL_BUILD_FUZZERS=ON \
    -DCORKWHEEL_BUILD_TESTS=OFF -DCORKWHEEL_BUILD_BENCH=OFF
nice cmake --build "$build_dir" --target corkwheel-fuzzers

work=$(mktemp -d "${TMPDIR:-/tmp}/corkwheel-fuzz.XXXXXX")
keep_work=false
trap '$keep_work || rm -rf "$work"' EXIT

export ASAN_OPTIONS=detect_leaks=1:abort_on_error=0
export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
export LC_ALL=C.UTF-8 TZ=UTC

# fuzz <target>: runs build-fuzz/fuzz/fuzz_<target> in a folder of its own under $work,
# whose corpus/ starts as a copy of the seeds and whose log is log.txt.
fuzz() {
    local target=$1
    local dir=$work/$target
    mkdir -p "$dir/corpus" "$dir/findings"
    cp "$repo/tests/data/fuzz/$target"/* "$dir/corpus/"
    local pattern=${fixture_seeds[$target]:-}
    if [[ -n $pattern ]]; then
        # shellcheck disable=SC2086 # the pattern is a glob
        cp "$repo"/tests/data/$pattern "$dir/corpus/"
    fi
    cd "$dir"
    nice "$build_dir/fuzz/fuzz_$target" -max_total_time="$seconds" -timeout=30 \
        -rss_limit_mb=2048 -detect_leaks=1 -print_final_stats=1 \
        -artifact_prefix="$dir/findings/" corpus >log.txt 2>&1
}

# One line per target: executions, corpus size, and whether anything was found.
report() {
    local target=$1 status=$2
    local dir=$work/$target
    local runs inputs bytes
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$dir/log.txt" | tail -n 1)
    inputs=$(find "$dir/corpus" -type f | wc -l)
    bytes=$(find "$dir/corpus" -type f -printf '%s\n' | awk '{ sum += $1 } END { print sum + 0 }')
    if [[ $status -eq 0 ]] &&
        ! grep -qE 'ERROR: (AddressSanitizer|LeakSanitizer|libFuzzer)|runtime error:|SUMMARY: ' \
            "$dir/log.txt"; then
        echo "fuzz_$target: ${runs:-?} runs, corpus $inputs inputs ($bytes bytes):" \
            "0 crashes, 0 leaks, 0 sanitizer reports"
        return 0
    fi
    echo "fuzz_$target: FAILED after ${runs:-?} runs; log and findings in $dir"
    tail -n 60 "$dir/log.txt"
    return 1
}

targets=()
for seeds in "$repo"/tests/data/fuzz/*/; do
    targets+=("$(basename "$seeds")")
done

echo "Fuzzing ${#targets[@]} targets for $seconds s each, $(nproc) at a time"
declare -A running=() # target by process id
failed=0
next=0
while [[ $next -lt ${#targets[@]} || ${#running[@]} -gt 0 ]]; do
    while [[ $next -lt ${#targets[@]} && ${#running[@]} -lt $(nproc) ]]; do
        fuzz "${targets[$next]}" &
        running[$!]=${targets[$next]}
        next=$((next + 1))
    done
    status=0
    wait -n -p finished "${!running[@]}" || status=$?
    target=${running[$finished]}
    unset "running[$finished]"
    report "$target" "$status" || failed=$((failed + 1))
done

echo "fuzz: $((${#targets[@]} - failed)) passed, $failed failed"
if [[ $failed -gt 0 ]]; then
    keep_work=true
    exit 1
fi
