# SPDX-License-Identifier: GPL-3.0-or-later

# A private X display with a window manager and a compositor, for the desktop tests.
#
#   start_virtual_desktop [SESSION]
#
# SESSION is the desktop to stand in for, openbox by default:
#   openbox            Openbox with picom (LXQt, LXDE)
#   openbox-pcmanfm    the same with pcmanfm-qt's desktop icons window (LXQt)
#   xfwm4              xfwm4 with its own compositor (Xfce)
#   xfwm4-xfdesktop    the same with xfdesktop's icons window (Xfce)
#   mutter             GNOME's window manager and compositor
#   kwin               KDE Plasma's window manager and compositor
# A session named is a desktop of its own and gets a session bus of its own, as a desktop
# has; the default one, which the suite shares and the benchmarks measure, has none.

source "$(dirname "${BASH_SOURCE[0]}")/background-process.sh"

VIRTUAL_DESKTOP_PIDS=()
VIRTUAL_DESKTOP_BUS_PID=
VIRTUAL_DESKTOP_START_WAIT=${VIRTUAL_DESKTOP_START_WAIT:-20}

start_virtual_desktop() {
    local session=${1:-openbox}
    local state
    state=$(mktemp -d)
    # Xvfb picks a free display number itself and writes it to fd 3.
    Xvfb -displayfd 3 -screen 0 1920x1080x24 -nolisten tcp 3>"$state/display" \
        >"$state/xvfb.log" 2>&1 &
    VIRTUAL_DESKTOP_PIDS+=($!)
    local tries=0
    until [[ -s "$state/display" ]]; do
        tries=$((tries + 1))
        if [[ $tries -gt 100 ]]; then
            echo "Xvfb did not start:" >&2
            cat "$state/xvfb.log" >&2
            return 1
        fi
        sleep 0.1
    done
    export DISPLAY=":$(head -n1 "$state/display")"
    unset WAYLAND_DISPLAY
    export XDG_SESSION_TYPE=x11
    [[ $# -eq 0 ]] || start_session_bus

    # Tests look for the window manager and the compositor at once, so wait for both.
    local has_wm="xprop -root _NET_SUPPORTING_WM_CHECK | grep -q 'window id'"
    case $session in
    openbox | openbox-pcmanfm)
        start_until openbox "$has_wm" "$state/openbox.log" openbox --sm-disable
        start_until picom "xwininfo -root -children | grep -q '\"picom\"'" \
            "$state/picom.log" picom --backend xrender
        ;;
    xfwm4 | xfwm4-xfdesktop)
        start_until xfwm4 "$has_wm" "$state/xfwm4.log" xfwm4 --compositor=on --sm-client-disable
        ;;
    mutter)
        start_until mutter "$has_wm" "$state/mutter.log" mutter --x11 --replace --sm-disable
        ;;
    kwin)
        start_until kwin_x11 "$has_wm" "$state/kwin.log" kwin_x11 --replace
        ;;
    *)
        echo "No such virtual desktop: $session" >&2
        return 1
        ;;
    esac
    local icons="xdotool search --onlyvisible --class"
    case $session in
    openbox-pcmanfm)
        start_until pcmanfm-qt "$icons '^pcmanfm-qt$'" "$state/icons.log" pcmanfm-qt --desktop
        ;;
    xfwm4-xfdesktop)
        start_until xfdesktop "$icons '^xfdesktop$'" "$state/icons.log" xfdesktop --disable-wm-check
        ;;
    esac
    echo "Virtual desktop on $DISPLAY ($session)"
}

# A D-Bus session bus for this display; mutter and KWin will not start without one, and
# Xfce's programs keep their settings behind it. Services it starts on demand end with it.
start_session_bus() {
    local address
    address=$(dbus-daemon --session --fork --print-address=1 --print-pid=1) || return 1
    export DBUS_SESSION_BUS_ADDRESS=${address%%$'\n'*}
    VIRTUAL_DESKTOP_BUS_PID=${address##*$'\n'}
}

# start_until <what> <shell test> <log> <command...>: starts the command in the background
# and waits up to VIRTUAL_DESKTOP_START_WAIT seconds (20) for the test to pass, up to three
# times in all. A client that exits meanwhile is started again: right after a display was
# stopped, a new one on the same number can refuse the first connection (picom then gives
# up with "Can't open display"). One still running then is ended before the next start,
# never started beside it: a second pcmanfm-qt finds the first on the session bus and
# exits, and on a busy machine pcmanfm-qt can hang as it starts, its main thread and its
# job threads all waiting on locks.
start_until() {
    local what=$1 test=$2 log=$3
    shift 3
    local tries pid
    for _ in 1 2 3; do
        "$@" >>"$log" 2>&1 &
        pid=$!
        VIRTUAL_DESKTOP_PIDS+=("$pid")
        for ((tries = 0; tries < VIRTUAL_DESKTOP_START_WAIT * 10; tries++)); do
            bash -c "$test" 2>/dev/null && return 0
            running "$pid" || break
            sleep 0.1
        done
        if running "$pid"; then
            echo "$what did not show within $VIRTUAL_DESKTOP_START_WAIT s on $DISPLAY:" \
                "starting it again" | tee -a "$log" >&2
            stop_and_reap "$pid"
        fi
    done
    echo "$what did not start on $DISPLAY" >&2
    cat "$log" >&2
    return 1
}

stop_virtual_desktop() {
    # A bus that forks leads a process group of its own, which the services it starts stay
    # in (settings daemons, the accessibility bus and its registry), also once they are no
    # longer its children: the whole group ends, else one holding the test's output open
    # keeps CTest waiting.
    if [[ -n $VIRTUAL_DESKTOP_BUS_PID ]]; then
        kill -- "-$VIRTUAL_DESKTOP_BUS_PID" 2>/dev/null || true
    fi
    VIRTUAL_DESKTOP_BUS_PID=
    [[ ${#VIRTUAL_DESKTOP_PIDS[@]} -eq 0 ]] || stop_and_reap "${VIRTUAL_DESKTOP_PIDS[@]}"
    VIRTUAL_DESKTOP_PIDS=()
}
