#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later

# Runs a command on a headless Wayland desktop of its own and takes it down afterwards:
#
#   scripts/in-wayland-desktop.sh COMMAND [ARGUMENT...]
#
# The desktop is sway with its headless backend and software rendering, one 1280x800 output
# filled with one colour, no XWayland. sway refuses to run as root, so when root asks it
# runs as an unprivileged user made for it; the command itself runs as the caller, with
# WAYLAND_DISPLAY, SWAYSOCK and XDG_RUNTIME_DIR pointing at that desktop. Exits with the
# command's status.
set -euo pipefail

SWAY_USER=corkwheel-sway
state=$(mktemp -d)
sway_pid=

stop_wayland_desktop() {
    if [[ -n $sway_pid ]] && kill -0 "$sway_pid" 2>/dev/null; then
        kill "$sway_pid" 2>/dev/null || true
        wait "$sway_pid" 2>/dev/null || true
    fi
    rm -rf "$state"
}
trap stop_wayland_desktop EXIT

as_sway_user=()
if [[ $(id -u) -eq 0 ]]; then
    id "$SWAY_USER" >/dev/null 2>&1 || useradd --system --no-create-home "$SWAY_USER"
    chown "$SWAY_USER" "$state"
    as_sway_user=(runuser -u "$SWAY_USER" --)
fi
chmod 0700 "$state"
cat >"$state/config" <<'CONFIG'
output HEADLESS-1 resolution 1280x800 position 0 0 bg #336699 solid_color
xwayland disable
default_border none
CONFIG

"${as_sway_user[@]}" env -i PATH="$PATH" XDG_RUNTIME_DIR="$state" \
    WLR_BACKENDS=headless WLR_RENDERER=pixman WLR_LIBINPUT_NO_DEVICES=1 \
    sway --config "$state/config" >"$state/sway.log" 2>&1 &
sway_pid=$!

tries=0
until [[ -S $state/wayland-1 ]] && compgen -G "$state/sway-ipc.*.sock" >/dev/null; do
    tries=$((tries + 1))
    if [[ $tries -gt 100 ]] || ! kill -0 "$sway_pid" 2>/dev/null; then
        echo "sway did not start:" >&2
        cat "$state/sway.log" >&2
        exit 1
    fi
    sleep 0.1
done

export XDG_RUNTIME_DIR=$state
export WAYLAND_DISPLAY=wayland-1
SWAYSOCK=$(compgen -G "$state/sway-ipc.*.sock" | head -n1)
export SWAYSOCK
export XDG_SESSION_TYPE=wayland
unset DISPLAY
status=0
"$@" || status=$?
exit "$status"
