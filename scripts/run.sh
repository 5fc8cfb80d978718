#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later

# Installs what is missing, builds Corkwheel into build/ (build-debian13/ on Debian 13) and
# starts it. Only the application and its web engine plugin are built: the tests and
# benchmarks, most of the build, are left to scripts/test.sh.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
build_dir=$(build_folder)

install_missing_packages "${BUILD_PACKAGES[@]}"
configure_and_build "$build_dir" --targets corkwheel corkwheel-webengine
exec "$build_dir/bin/corkwheel"
