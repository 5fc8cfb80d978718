#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later

# Runs a command on a headless Wayland desktop of its own and takes it down afterwards:
#
#   scripts/in-wayland-desktop.sh COMMAND [ARGUMENT...]
#
# The desktop is sway with its headless backend and software rendering (see
# lib/wayland-desktop.sh); the command runs as the caller, with WAYLAND_DISPLAY, SWAYSOCK
# and XDG_RUNTIME_DIR pointing at that desktop. Exits with the command's status.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/wayland-desktop.sh"

# Set first, so that a desktop that fails to start halfway is taken down too.
trap stop_wayland_desktop EXIT
start_wayland_desktop
status=0
"$@" || status=$?
exit "$status"
