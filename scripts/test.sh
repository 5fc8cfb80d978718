#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later

# Installs what is missing, builds Corkwheel and its tests into build/ and runs the whole
# suite with ctest on a virtual display (Xvfb with openbox and picom) that it starts and
# stops itself.
#
#   scripts/test.sh              the normal build, in build/
#   scripts/test.sh --sanitize   AddressSanitizer + UndefinedBehaviorSanitizer, in build-asan/
#
# On Debian 13 the folders are build-debian13/ and build-debian13-asan/.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
source "$(dirname "${BASH_SOURCE[0]}")/lib/virtual-desktop.sh"

build_dir=$(build_folder)
# The suite is whole only with FUSE, and on Debian 13 with LayerShellQt, GNOME Shell and KWin
# on Wayland: without them the configure step fails instead of leaving their tests out.
options=(-DCORKWHEEL_WERROR=ON -DCORKWHEEL_REQUIRE_FUSE=ON)
if [[ $DEBIAN_CODENAME == trixie ]]; then
    options+=(-DCORKWHEEL_REQUIRE_LAYER_SHELL=ON -DCORKWHEEL_REQUIRE_GNOME_SHELL=ON
        -DCORKWHEEL_REQUIRE_KWIN_WAYLAND=ON)
fi
# Where the suite runs, for the expected skips (tests/expected-skips.txt).
conditions=("$DEBIAN_CODENAME")
if [[ "${1:-}" == "--sanitize" ]]; then
    build_dir=$(build_folder asan)
    # Every source file compiled on its own here, so that one that builds only in a batch
    # (an include it lacks, which a file before it brought) fails somewhere.
    options+=(-DCORKWHEEL_SANITIZE=ON -DCMAKE_BUILD_TYPE=Debug -DCORKWHEEL_BUILD_BENCH=OFF
        -DCORKWHEEL_UNITY_BUILD=OFF)
    conditions+=(sanitize)
fi

install_missing_packages "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}"
configure_and_build "$build_dir" "${options[@]}"

# Set first, so that a desktop that fails to start halfway is taken down too.
trap stop_virtual_desktop EXIT
start_virtual_desktop
status=0
ctest --test-dir "$build_dir" --output-on-failure -j "$(nproc)" | tee "$build_dir/ctest.log" ||
    status=$?
# A skipped test is counted and named by ctest; in CI one that is not expected fails the run.
"$(repo_root)/scripts/check-skips.sh" "$build_dir/ctest.log" "${conditions[@]}" || status=1
exit $status
