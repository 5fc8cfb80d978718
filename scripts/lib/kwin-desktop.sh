# SPDX-License-Identifier: GPL-3.0-or-later

# A headless KWin on Wayland, Plasma's compositor, for the Plasma end-to-end tests.
#
#   start_kwin_desktop [OUTPUTS [plasma]]
#                           starts it with OUTPUTS outputs side by side (default 1), and
#                           Plasma's shell when asked, and exports what a client of that
#                           session has: WAYLAND_DISPLAY, XDG_RUNTIME_DIR,
#                           DBUS_SESSION_BUS_ADDRESS, HOME, XDG_SESSION_TYPE=wayland and
#                           XDG_CURRENT_DESKTOP=KDE
#   stop_kwin_desktop       takes it down again
#   run_as_kwin_user CMD    runs a command as the session's user (the caller, unless root)
#
# KWin runs with its virtual backend, each output KWIN_DESKTOP_WIDTH x KWIN_DESKTOP_HEIGHT,
# and two virtual desktops. Without a GPU it draws with QPainter, which offers no
# screenshots: tests read what KWin shows through its scripting, over the session bus.
# KWin lets any client use its privileged Wayland interfaces here (its fake input, which the
# tests' pointer is), as it does for Plasma's own programs.
#
# Plasma's shell (plasmashell) draws the desktop, its panel and the tray there, with Qt
# Quick's software renderer, as there is no OpenGL without a GPU; with it run the services a
# Plasma session starts for it: the activity manager, and kded6, which keeps the tray's
# StatusNotifierWatcher.
#
# Nothing of the machine's own session is used: KWin gets a session bus of its own. A
# desktop session is a user's, never root's: when root asks, the session (and the command
# run_as_kwin_user runs) belongs to an unprivileged user made for it, whose home is a folder
# of the session's own.

source "$(dirname "${BASH_SOURCE[0]}")/background-process.sh"
source "$(dirname "${BASH_SOURCE[0]}")/desktop-user.sh"

KWIN_DESKTOP_USER=corkwheel-kwin
KWIN_DESKTOP_WIDTH=1280
KWIN_DESKTOP_HEIGHT=800
KWIN_DESKTOP_PID=
KWIN_DESKTOP_SHELL_PID=
KWIN_DESKTOP_BUS_PID=
KWIN_DESKTOP_STATE=
KWIN_DESKTOP_AS_USER=()

run_as_kwin_user() {
    "${KWIN_DESKTOP_AS_USER[@]}" "$@"
}

# kwin_bus METHOD ARGUMENT...: calls the session bus itself.
kwin_bus() {
    run_as_kwin_user gdbus call --session --dest org.freedesktop.DBus \
        --object-path /org/freedesktop/DBus --method "org.freedesktop.DBus.$1" "${@:2}" \
        2>/dev/null
}

# Whether NAME is taken on the session bus.
kwin_bus_has() {
    kwin_bus NameHasOwner "$1" | grep -q true
}

# Whether Plasma's shell is up: on the bus, its tray registered with the watcher as a host.
# Its socket made and its name on the session bus.
kwin_is_up() {
    [[ -S $KWIN_DESKTOP_STATE/runtime/wayland-kwin ]] && kwin_bus_has org.kde.KWin
}

plasma_is_up() {
    kwin_bus_has org.kde.plasmashell &&
        run_as_kwin_user gdbus call --session --dest org.kde.StatusNotifierWatcher \
            --object-path /StatusNotifierWatcher --method org.freedesktop.DBus.Properties.Get \
            org.kde.StatusNotifierWatcher IsStatusNotifierHostRegistered 2>/dev/null |
        grep -q true
}

start_kwin_desktop() {
    local outputs=${1:-1} plasma=${2:-}
    make_desktop_state KWIN_DESKTOP_STATE .config || return 1
    local state=$KWIN_DESKTOP_STATE
    local home=$state/home runtime=$state/runtime
    # As a user's settings have them before the session starts: two virtual desktops.
    printf '[Desktops]\nNumber=2\nRows=1\n' >"$home/.config/kwinrc"
    run_desktop_as "$KWIN_DESKTOP_USER" "$state" KWIN_DESKTOP_AS_USER || return 1

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

    wait_until_started KWin "$KWIN_DESKTOP_PID" "$state/kwin.log" 150 kwin_is_up || return 1
    export WAYLAND_DISPLAY=wayland-kwin
    [[ $plasma == plasma ]] || return 0

    # Started by the bus, as a session's bus starts them, they are in its process group. The
    # bus was started before KWin, so it is told where KWin is.
    kwin_bus UpdateActivationEnvironment \
        "{'WAYLAND_DISPLAY': 'wayland-kwin', 'QT_QPA_PLATFORM': 'wayland'}" >/dev/null &&
        kwin_bus StartServiceByName org.kde.ActivityManager 0 >/dev/null &&
        kwin_bus StartServiceByName org.kde.kded6 0 >/dev/null &&
        # As a Plasma session's start has kded6 load it.
        run_as_kwin_user gdbus call --session --dest org.kde.kded6 --object-path /kded \
            --method org.kde.kded6.loadModule statusnotifierwatcher >/dev/null || {
        echo "The activity manager, kded6 or its StatusNotifierWatcher did not start" >&2
        return 1
    }
    "${KWIN_DESKTOP_AS_USER[@]}" env QT_QPA_PLATFORM=wayland QT_QUICK_BACKEND=software \
        plasmashell --no-respawn >"$state/plasmashell.log" 2>&1 &
    KWIN_DESKTOP_SHELL_PID=$!
    wait_until_started "Plasma's shell" "$KWIN_DESKTOP_SHELL_PID" "$state/plasmashell.log" 300 \
        plasma_is_up
}

stop_kwin_desktop() {
    # The shell first: it is KWin's client.
    [[ -z $KWIN_DESKTOP_SHELL_PID ]] || stop_and_reap "$KWIN_DESKTOP_SHELL_PID"
    [[ -z $KWIN_DESKTOP_PID ]] || stop_and_reap "$KWIN_DESKTOP_PID"
    KWIN_DESKTOP_SHELL_PID=
    KWIN_DESKTOP_PID=
    # A bus that forks leads a process group of its own, which the programs it started stay in.
    [[ -z $KWIN_DESKTOP_BUS_PID ]] || kill -- "-$KWIN_DESKTOP_BUS_PID" 2>/dev/null || true
    KWIN_DESKTOP_BUS_PID=
    [[ -z $KWIN_DESKTOP_STATE ]] || rm -rf "$KWIN_DESKTOP_STATE"
    KWIN_DESKTOP_STATE=
}
