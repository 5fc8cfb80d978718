#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later

# Runs a command on a virtual desktop of its own and takes the desktop down afterwards:
#
#   scripts/in-virtual-desktop.sh SESSION COMMAND [ARGUMENT...]
#
# SESSION names the window manager, as start_virtual_desktop in lib/virtual-desktop.sh
# lists them (openbox, openbox-pcmanfm, xfwm4, xfwm4-xfdesktop, mutter, kwin). The end-to-end
# desktop tests run once under each. Exits with the command's status.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/virtual-desktop.sh"

session=$1
shift
trap stop_virtual_desktop EXIT
start_virtual_desktop "$session" >/dev/null
status=0
"$@" || status=$?
exit "$status"
