#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later

# Takes the editor screenshots of docs/screenshots (one per panel type) on a virtual desktop.
# Needs a build in build/ (build-debian13/ on Debian 13; scripts/test.sh makes one).
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
source "$(dirname "${BASH_SOURCE[0]}")/lib/virtual-desktop.sh"
root=$(repo_root)

# Set first, so that a desktop that fails to start halfway is taken down too.
trap stop_virtual_desktop EXIT
start_virtual_desktop
build_dir=$(build_folder)
cmake --build "$build_dir" --target take_editor_screenshots
# The web engine refuses to start as root without this, and has no GPU here.
QTWEBENGINE_DISABLE_SANDBOX=1 QTWEBENGINE_CHROMIUM_FLAGS=--disable-gpu QT_QPA_PLATFORM=xcb \
    "$build_dir/bin/take_editor_screenshots" "$root/docs/screenshots" \
    "$root/docs/screenshots/sample-photo.svg" "$root/docs/screenshots/sample-page.html"
