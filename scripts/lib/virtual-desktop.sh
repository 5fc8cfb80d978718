# A private X display with a window manager and a compositor, for the desktop tests.

VIRTUAL_DESKTOP_PIDS=()

start_virtual_desktop() {
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

    # Tests look for the window manager and the compositor at once, so wait for both.
    start_until openbox "xprop -root _NET_SUPPORTING_WM_CHECK | grep -q 'window id'" \
        "$state/openbox.log" openbox --sm-disable
    start_until picom "xwininfo -root -children | grep -q '\"picom\"'" \
        "$state/picom.log" picom --backend xrender
    echo "Virtual desktop on $DISPLAY (openbox, picom)"
}

# start_until <what> <shell test> <log> <command...>: starts the command in the background
# and waits up to 10 s for the test to pass. A client that exits meanwhile is started again,
# up to three times in all: right after a display was stopped, a new one on the same number
# can refuse the first connection (picom then gives up with "Can't open display").
start_until() {
    local what=$1 test=$2 log=$3
    shift 3
    local tries pid
    for _ in 1 2 3; do
        "$@" >>"$log" 2>&1 &
        pid=$!
        VIRTUAL_DESKTOP_PIDS+=("$pid")
        for ((tries = 0; tries < 100; tries++)); do
            bash -c "$test" 2>/dev/null && return 0
            kill -0 "$pid" 2>/dev/null || break
            sleep 0.1
        done
    done
    echo "$what did not start on $DISPLAY" >&2
    cat "$log" >&2
    return 1
}

stop_virtual_desktop() {
    local pid
    for pid in "${VIRTUAL_DESKTOP_PIDS[@]}"; do
        kill "$pid" 2>/dev/null || true
    done
    wait 2>/dev/null || true
}
