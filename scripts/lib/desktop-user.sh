# SPDX-License-Identifier: GPL-3.0-or-later

# The folders and the user of a headless desktop session that a test starts. A desktop
# session is a user's, never root's: when root asks, it belongs to an unprivileged user made
# for it, whose home is a folder of the session's own.

# make_desktop_state STATE_VAR [FOLDER...]: sets the variable named STATE_VAR to a new folder
# for a session's state, holding "home" (with each FOLDER inside it) and "runtime", private
# as XDG_RUNTIME_DIR must be.
make_desktop_state() {
    local -n desktop_state_out=$1
    shift
    local made
    made=$(mktemp -d) || return 1
    mkdir -p "$made/home" "${@/#/$made/home/}" "$made/runtime" || return 1
    chmod 0700 "$made/runtime"
    chmod 0755 "$made"
    desktop_state_out=$made
}

# run_desktop_as USER STATE AS_USER_VAR: run as root, gives the home and runtime folders of
# STATE to USER (made if missing) and sets the array named AS_USER_VAR to the command prefix
# that runs a program as USER; run as anyone else, leaves the array as it is.
run_desktop_as() {
    local user=$1 state=$2
    local -n desktop_as_user_out=$3
    [[ $(id -u) -eq 0 ]] || return 0
    id "$user" >/dev/null 2>&1 || useradd --system --no-create-home --user-group "$user" ||
        return 1
    chown -R "$user:" "$state/home" "$state/runtime" || return 1
    # setpriv keeps the environment as it is given, unlike runuser, which sets its own.
    desktop_as_user_out=(setpriv --reuid="$user" --regid="$user" --init-groups --)
}
