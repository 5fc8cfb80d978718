# SPDX-License-Identifier: GPL-3.0-or-later

# A headless KWin on Wayland, Plasma's compositor, for the Plasma end-to-end tests.
#
#   start_kwin_desktop [OUTPUTS]  starts it with OUTPUTS outputs side by side (default 1) and
#                                 exports what a client of that session has: WAYLAND_DISPLAY,
#                                 XDG_RUNTIME_DIR, DBUS_SESSION_BUS_ADDRESS, HOME,
#                                 XDG_SESSION_TYPE=wayland and XDG_CURRENT_DESKTOP=KDE
#   stop_kwin_desktop             takes it down again
#   run_as_kwin_user CMD          runs a command as the session's user (the caller, unless root)
#
# KWin runs with its virtual backend, each output KWIN_DESKTOP_WIDTH x KWIN_DESKTOP_HEIGHT,
# and two virtual desktops. Without a GPU it draws with QPainter, which offers no
# screenshots: tests read what KWin shows through its scripting, over the session bus.
# KWin lets any client use its privileged Wayland interfaces here (its fake input, which the
# tests' pointer is), as it does for Plasma's own programs.
#
# Nothing of the machine's own session is used: KWin gets a session bus of its own. A
# desktop session is a user's, never root's: when root asks, the session (and the command
# run_as_kwin_user runs) belongs to an unprivileged user made for it, whose home is a folder
# of the session's own.

KWIN_DESKTOP_USER=corkwheel-kwin
KWIN_DESKTOP_WIDTH=1280
KWIN_DESKTOP_HEIGHT=800
KWIN_DESKTOP_PID=
KWIN_DESKTOP_BUS_PID=
KWIN_DESKTOP_STATE=
KWIN_DESKTOP_AS_USER=()

run_as_kwin_user() {
    "${KWIN_DESKTOP_AS_USER[@]}" "$@"
}

# Whether KWin has taken its name on the session bus, which it does once it runs.
kwin_is_on_the_bus() {
    run_as_kwin_user gdbus call --session --dest org.freedesktop.DBus \
        --object-path /org/freedesktop/DBus --method org.freedesktop.DBus.NameHasOwner \
        org.kde.KWin 2>/dev/null | grep -q true
}

start_kwin_desktop() {
    local outputs=${1:-1}
    KWIN_DESKTOP_STATE=$(mktemp -d) || return 1
    local state=$KWIN_DESKTOP_STATE
    local home=$state/home runtime=$state/runtime
    mkdir -p "$home/.config" "$runtime" || return 1
    chmod 0700 "$runtime"
    chmod 0755 "$state"
    # As a user's settings have them before the session starts: two virtual desktops.
    printf '[Desktops]\nNumber=2\nRows=1\n' >"$home/.config/kwinrc"
    if [[ $(id -u) -eq 0 ]]; then
        id "$KWIN_DESKTOP_USER" >/dev/null 2>&1 ||
            useradd --system --no-create-home --user-group "$KWIN_DESKTOP_USER" || return 1
        chown -R "$KWIN_DESKTOP_USER:" "$home" "$runtime" || return 1
        # setpriv keeps the environment as it is given, unlike runuser, which sets its own.
        KWIN_DESKTOP_AS_USER=(setpriv --reuid="$KWIN_DESKTOP_USER"
            --regid="$KWIN_DESKTOP_USER" --init-groups --)
    fi

    export HOME=$home XDG_RUNTIME_DIR=$runtime
    export XDG_SESSION_TYPE=wayland XDG_CURRENT_DESKTOP=KDE
    unset DISPLAY WAYLAND_DISPLAY XAUTHORITY DBUS_SESSION_BUS_ADDRESS

    local output
    output=$(run_as_kwin_user dbus-daemon --session --fork --print-address=1 --print-pid=1) ||
        return 1
    KWIN_DESKTOP_BUS_PID=${output##*$'\n'}
    export DBUS_SESSION_BUS_ADDRESS=${output%%$'\n'*}

    # KWin would hand its own Qt platform setting down to the programs it starts; the tests
    # set theirs themselves. Started without a function in between, so that the process
    # whose id is kept becomes KWin, which stop_kwin_desktop ends.
    "${KWIN_DESKTOP_AS_USER[@]}" env -u QT_QPA_PLATFORM KWIN_WAYLAND_NO_PERMISSION_CHECKS=1 \
        kwin_wayland --virtual --width "$KWIN_DESKTOP_WIDTH" --height "$KWIN_DESKTOP_HEIGHT" \
        --output-count "$outputs" --no-lockscreen --no-global-shortcuts --socket wayland-kwin \
        >"$state/kwin.log" 2>&1 &
    KWIN_DESKTOP_PID=$!

    local tries=0
    until [[ -S $runtime/wayland-kwin ]] && kwin_is_on_the_bus; do
        tries=$((tries + 1))
        if [[ $tries -gt 150 ]] || ! kill -0 "$KWIN_DESKTOP_PID" 2>/dev/null; then
            echo "KWin did not start:" >&2
            cat "$state/kwin.log" >&2
            return 1
        fi
        sleep 0.1
    done
    export WAYLAND_DISPLAY=wayland-kwin
}

stop_kwin_desktop() {
    if [[ -n $KWIN_DESKTOP_PID ]] && kill -0 "$KWIN_DESKTOP_PID" 2>/dev/null; then
        kill "$KWIN_DESKTOP_PID" 2>/dev/null || true
        wait "$KWIN_DESKTOP_PID" 2>/dev/null || true
    fi
    KWIN_DESKTOP_PID=
    # A bus that forks leads a process group of its own, which the programs it started stay in.
    [[ -z $KWIN_DESKTOP_BUS_PID ]] || kill -- "-$KWIN_DESKTOP_BUS_PID" 2>/dev/null || true
    KWIN_DESKTOP_BUS_PID=
    [[ -z $KWIN_DESKTOP_STATE ]] || rm -rf "$KWIN_DESKTOP_STATE"
    KWIN_DESKTOP_STATE=
}
