# SPDX-License-Identifier: GPL-3.0-or-later

# A headless GNOME Shell on Wayland, for the GNOME end-to-end test.
#
#   start_gnome_desktop     starts it and exports what a client of that session has:
#                           WAYLAND_DISPLAY, DISPLAY and XAUTHORITY (its Xwayland),
#                           XDG_RUNTIME_DIR, DBUS_SESSION_BUS_ADDRESS, HOME,
#                           XDG_SESSION_TYPE=wayland and XDG_CURRENT_DESKTOP=GNOME
#   stop_gnome_desktop      takes it down again
#   run_as_gnome_user CMD   runs a command as the session's user (the caller, unless root)
#
# The shell runs with its headless backend and one virtual monitor of GNOME_DESKTOP_WIDTH x
# GNOME_DESKTOP_HEIGHT, in unsafe mode so that the test may read its state through
# org.gnome.Shell.Eval and take screenshots, with the desktop icons (Desktop Icons NG) and
# tray icon (AppIndicator) extensions on, as Ubuntu has them. It starts in the Overview, which
# a user leaves before anything else; so does this, and it also dismisses the notifications
# a session without a display manager shows. Animations are off, so that what the shell
# does is over when it says so.
#
# Nothing of the machine's own session is used: the shell gets a session bus of its own and,
# standing in for the system bus, another private bus on which no system service answers.
# A desktop session is a user's, never root's: when root asks, the session (and the command
# run_as_gnome_user runs) belongs to an unprivileged user made for it, whose home is a folder
# of the session's own, with the ~/Desktop folder that the desktop icons show.

source "$(dirname "${BASH_SOURCE[0]}")/background-process.sh"
source "$(dirname "${BASH_SOURCE[0]}")/desktop-user.sh"

GNOME_DESKTOP_USER=corkwheel-gnome
GNOME_DESKTOP_WIDTH=1280
GNOME_DESKTOP_HEIGHT=800
GNOME_DESKTOP_EXTENSIONS=(ding@rastersoft.com ubuntu-appindicators@ubuntu.com)
GNOME_DESKTOP_PID=
GNOME_DESKTOP_BUS_PIDS=()
GNOME_DESKTOP_STATE=
GNOME_DESKTOP_AS_USER=()

# gnome_eval JAVASCRIPT: evaluates JavaScript in the shell and prints what it returned, as
# gdbus prints it: (true, 'value'), or (false, '') when it threw.
gnome_eval() {
    "${GNOME_DESKTOP_AS_USER[@]}" gdbus call --session --dest org.gnome.Shell \
        --object-path /org/gnome/Shell --method org.gnome.Shell.Eval "$1" 2>/dev/null
}

# gnome_wait_for JAVASCRIPT SECONDS: waits until the expression is true in the shell.
gnome_wait_for() {
    local tries
    for ((tries = 0; tries < $2 * 10; tries++)); do
        [[ $(gnome_eval "$1") == "(true, 'true')" ]] && return 0
        kill -0 "$GNOME_DESKTOP_PID" 2>/dev/null || return 1
        sleep 0.1
    done
    return 1
}

run_as_gnome_user() {
    "${GNOME_DESKTOP_AS_USER[@]}" "$@"
}

start_gnome_desktop() {
    make_desktop_state GNOME_DESKTOP_STATE Desktop || return 1
    local state=$GNOME_DESKTOP_STATE
    local home=$state/home runtime=$state/runtime
    run_desktop_as "$GNOME_DESKTOP_USER" "$state" GNOME_DESKTOP_AS_USER || return 1
    # Xwayland's sockets go there. A booted machine has the folder; a fresh root file system
    # may not, and only root may make it.
    if [[ $(id -u) -eq 0 && ! -d /tmp/.X11-unix ]]; then
        install -d -m 1777 /tmp/.X11-unix || return 1
    fi

    export HOME=$home XDG_RUNTIME_DIR=$runtime
    export XDG_SESSION_TYPE=wayland XDG_CURRENT_DESKTOP=GNOME
    # No accessibility bus: nothing here starts one, and looking for it costs seconds.
    export NO_AT_BRIDGE=1 GTK_A11Y=none
    unset DISPLAY WAYLAND_DISPLAY XAUTHORITY DBUS_SESSION_BUS_ADDRESS

    # Without any system bus the shell fails as it sets up its session; system services are
    # not what these tests are about, so a bus with none of them stands in.
    cat >"$state/system-bus.conf" <<CONFIG
<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>system</type>
  <listen>unix:path=$runtime/system-bus</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
CONFIG
    start_gnome_bus system --config-file="$state/system-bus.conf" || return 1
    export DBUS_SYSTEM_BUS_ADDRESS=unix:path=$runtime/system-bus
    start_gnome_bus session --session || return 1

    # As a user's settings have them before the session starts.
    local extensions
    extensions=$(printf "'%s'," "${GNOME_DESKTOP_EXTENSIONS[@]}")
    run_as_gnome_user gsettings set org.gnome.shell enabled-extensions "[${extensions%,}]" &&
        run_as_gnome_user gsettings set org.gnome.shell disable-user-extensions false &&
        run_as_gnome_user gsettings set org.gnome.desktop.interface enable-animations false &&
        run_as_gnome_user gsettings set org.gnome.mutter dynamic-workspaces false &&
        run_as_gnome_user gsettings set org.gnome.desktop.wm.preferences num-workspaces 2 &&
        run_as_gnome_user gsettings set org.gnome.desktop.session idle-delay 0 &&
        run_as_gnome_user gsettings set org.gnome.desktop.screensaver lock-enabled false ||
        return 1

    # Started without a function in between, so that the process whose id is kept becomes the
    # shell, which stop_gnome_desktop ends.
    "${GNOME_DESKTOP_AS_USER[@]}" gnome-shell --headless --unsafe-mode \
        --virtual-monitor "${GNOME_DESKTOP_WIDTH}x$GNOME_DESKTOP_HEIGHT" \
        --wayland-display wayland-gnome >"$state/shell.log" 2>&1 &
    GNOME_DESKTOP_PID=$!

    if ! gnome_wait_for '!Main.layoutManager._startingUp' 60; then
        echo "GNOME Shell did not start:" >&2
        cat "$state/shell.log" >&2
        return 1
    fi
    gnome_eval 'Main.overview.hide(); Main.messageTray.getSources().forEach(s => s.destroy())' \
        >/dev/null
    local ready='!Main.overview.visible && Main.messageTray.getSources().length === 0'
    local uuid
    for uuid in "${GNOME_DESKTOP_EXTENSIONS[@]}"; do
        ready+=" && Main.extensionManager.lookup('$uuid')?.state === 1"
    done
    # The desktop icons are drawn by a program the extension starts, in a window of its own.
    ready+=' && global.display.list_all_windows().some(w => w.customJS_ding)'
    if ! gnome_wait_for "$ready" 30; then
        echo "GNOME Shell did not come to this: $ready" >&2
        cat "$state/shell.log" >&2
        return 1
    fi

    export WAYLAND_DISPLAY=wayland-gnome
    local display
    display=$(sed -n 's/.*Using public X11 display \(:[0-9]*\).*/\1/p' "$state/shell.log" | head -n1)
    if [[ -z $display ]]; then
        echo "GNOME Shell has no Xwayland display:" >&2
        cat "$state/shell.log" >&2
        return 1
    fi
    export DISPLAY=$display
    XAUTHORITY=$(compgen -G "$runtime/.mutter-Xwaylandauth.*" | head -n1)
    export XAUTHORITY
}

# start_gnome_bus NAME DBUS-DAEMON-OPTION...: a bus as the session's user, whose address
# goes to DBUS_SESSION_BUS_ADDRESS for the session bus.
start_gnome_bus() {
    local name=$1 output
    shift
    output=$(run_as_gnome_user dbus-daemon "$@" --fork --print-address=1 --print-pid=1) ||
        return 1
    GNOME_DESKTOP_BUS_PIDS+=("${output##*$'\n'}")
    [[ $name == session ]] && export DBUS_SESSION_BUS_ADDRESS=${output%%$'\n'*}
    return 0
}

stop_gnome_desktop() {
    [[ -z $GNOME_DESKTOP_PID ]] || stop_and_reap "$GNOME_DESKTOP_PID"
    GNOME_DESKTOP_PID=
    local pid
    # A bus that forks leads a process group of its own, which the programs it started (the
    # settings service, the file manager behind the desktop icons and the like) stay in.
    for pid in "${GNOME_DESKTOP_BUS_PIDS[@]}"; do
        kill -- "-$pid" 2>/dev/null || true
    done
    GNOME_DESKTOP_BUS_PIDS=()
    [[ -z $GNOME_DESKTOP_STATE ]] || rm -rf "$GNOME_DESKTOP_STATE"
    GNOME_DESKTOP_STATE=
}
