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

    openbox --sm-disable >"$state/openbox.log" 2>&1 &
    VIRTUAL_DESKTOP_PIDS+=($!)
    picom --backend xrender >"$state/picom.log" 2>&1 &
    VIRTUAL_DESKTOP_PIDS+=($!)
    # Tests look for the window manager and the compositor at once, so wait for both.
    wait_for openbox "xprop -root _NET_SUPPORTING_WM_CHECK | grep -q 'window id'"
    wait_for picom "xwininfo -root -children | grep -q '\"picom\"'"
    echo "Virtual desktop on $DISPLAY (openbox, picom)"
}

# wait_for <what> <shell test>: retries the test for up to 10 s.
wait_for() {
    local what=$1 test=$2
    local tries=0
    until bash -c "$test" 2>/dev/null; do
        tries=$((tries + 1))
        if [[ $tries -gt 100 ]]; then
            echo "$what did not start on $DISPLAY" >&2
            return 1
        fi
        sleep 0.1
    done
}

stop_virtual_desktop() {
    local pid
    for pid in "${VIRTUAL_DESKTOP_PIDS[@]}"; do
        kill "$pid" 2>/dev/null || true
    done
    wait 2>/dev/null || true
}
