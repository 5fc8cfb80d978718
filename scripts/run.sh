#!/usr/bin/env bash
# Installs what is missing, builds Corkwheel into build/ and starts it.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
root=$(repo_root)

install_missing_packages "${BUILD_PACKAGES[@]}"
configure_and_build "$root/build"
exec "$root/build/bin/corkwheel"
