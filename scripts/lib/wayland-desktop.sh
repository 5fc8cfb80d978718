# SPDX-License-Identifier: GPL-3.0-or-later

# A headless Wayland desktop, for the Wayland tests and the installed package's check.
#
#   start_wayland_desktop    starts it and exports WAYLAND_DISPLAY, SWAYSOCK and
#                            XDG_RUNTIME_DIR pointing at it (DISPLAY is unset)
#   stop_wayland_desktop     takes it down again
#
# The desktop is sway with its headless backend and software rendering, one output of
# WAYLAND_DESKTOP_WIDTH x WAYLAND_DESKTOP_HEIGHT filled with WAYLAND_DESKTOP_COLOR, no
# XWayland. sway refuses to run as root, so when root asks it runs as an unprivileged user
# made for it.

source "$(dirname "${BASH_SOURCE[0]}")/background-process.sh"

WAYLAND_DESKTOP_USER=corkwheel-sway
WAYLAND_DESKTOP_WIDTH=1280
WAYLAND_DESKTOP_HEIGHT=800
WAYLAND_DESKTOP_COLOR=336699
WAYLAND_DESKTOP_PID=
WAYLAND_DESKTOP_STATE=

# Its Wayland and its IPC sockets made.
sway_is_up() {
    [[ -S $WAYLAND_DESKTOP_STATE/wayland-1 ]] &&
        compgen -G "$WAYLAND_DESKTOP_STATE/sway-ipc.*.sock" >/dev/null
}

start_wayland_desktop() {
    WAYLAND_DESKTOP_STATE=$(mktemp -d) || return 1
    local state=$WAYLAND_DESKTOP_STATE as_sway_user=()
    if [[ $(id -u) -eq 0 ]]; then
        id "$WAYLAND_DESKTOP_USER" >/dev/null 2>&1 ||
            useradd --system --no-create-home "$WAYLAND_DESKTOP_USER" || return 1
        chown "$WAYLAND_DESKTOP_USER" "$state"
        as_sway_user=(runuser -u "$WAYLAND_DESKTOP_USER" --)
    fi
    chmod 0700 "$state"
    cat >"$state/config" <<CONFIG
output HEADLESS-1 resolution ${WAYLAND_DESKTOP_WIDTH}x$WAYLAND_DESKTOP_HEIGHT position 0 0 bg #$WAYLAND_DESKTOP_COLOR solid_color
xwayland disable
default_border none
CONFIG

    "${as_sway_user[@]}" env -i PATH="$PATH" XDG_RUNTIME_DIR="$state" \
        WLR_BACKENDS=headless WLR_RENDERER=pixman WLR_LIBINPUT_NO_DEVICES=1 \
        sway --config "$state/config" >"$state/sway.log" 2>&1 &
    WAYLAND_DESKTOP_PID=$!

    wait_until_started sway "$WAYLAND_DESKTOP_PID" "$state/sway.log" 100 sway_is_up || return 1

    export XDG_RUNTIME_DIR=$state
    export WAYLAND_DISPLAY=wayland-1
    SWAYSOCK=$(compgen -G "$state/sway-ipc.*.sock" | head -n1)
    export SWAYSOCK
    export XDG_SESSION_TYPE=wayland
    unset DISPLAY
}

stop_wayland_desktop() {
    [[ -z $WAYLAND_DESKTOP_PID ]] || stop_and_reap "$WAYLAND_DESKTOP_PID"
    WAYLAND_DESKTOP_PID=
    [[ -z $WAYLAND_DESKTOP_STATE ]] || rm -rf "$WAYLAND_DESKTOP_STATE"
    WAYLAND_DESKTOP_STATE=
}
