#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later

# Runs a command in a headless KWin session of its own on Wayland and takes it down
# afterwards:
#
#   scripts/in-kwin-desktop.sh [--outputs N] [--plasma] COMMAND [ARGUMENT...]
#
# The session is KWin, Plasma's compositor, with its virtual backend and N outputs side by
# side (default 1), and with --plasma Plasma's shell, which draws the desktop, its panel and
# the tray (see lib/kwin-desktop.sh). The command runs as the session's user, which is
# the caller unless that is root, with WAYLAND_DISPLAY, XDG_RUNTIME_DIR and
# DBUS_SESSION_BUS_ADDRESS pointing at that session. Exits with the command's status.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/kwin-desktop.sh"

outputs=1
plasma=
while [[ ${1:-} == --* ]]; do
    case $1 in
    --outputs)
        outputs=$2
        shift 2
        ;;
    --plasma)
        plasma=plasma
        shift
        ;;
    *)
        echo "usage: $0 [--outputs N] [--plasma] COMMAND [ARGUMENT...]" >&2
        exit 2
        ;;
    esac
done

# Set first, so that a session that fails to start halfway is taken down too.
trap stop_kwin_desktop EXIT
start_kwin_desktop "$outputs" "$plasma"
status=0
run_as_kwin_user "$@" || status=$?
exit "$status"
