#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later

# Runs a command in a headless GNOME Shell session of its own on Wayland and takes it down
# afterwards:
#
#   scripts/in-gnome-desktop.sh COMMAND [ARGUMENT...]
#
# The session is GNOME Shell's headless backend with its Xwayland and the desktop icons and
# tray icon extensions (see lib/gnome-desktop.sh). The command runs as the session's user,
# which is the caller unless that is root, with WAYLAND_DISPLAY, DISPLAY, XAUTHORITY,
# XDG_RUNTIME_DIR and DBUS_SESSION_BUS_ADDRESS pointing at that session. Exits with the
# command's status.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/gnome-desktop.sh"

# Set first, so that a session that fails to start halfway is taken down too.
trap stop_gnome_desktop EXIT
start_gnome_desktop
status=0
run_as_gnome_user "$@" || status=$?
exit "$status"
