# SPDX-License-Identifier: GPL-3.0-or-later

# Waiting for a program started in the background to be ready, as the session scripts do for
# the compositors and shells they start.

# wait_until_started NAME PID LOG TENTHS COMMAND [ARGUMENT...]: waits until COMMAND succeeds,
# trying every tenth of a second, at most TENTHS times. Fails, printing LOG, when the process
# PID ends first or the tries run out.
wait_until_started() {
    local name=$1 pid=$2 log=$3 tenths=$4 tries=0
    shift 4
    until "$@"; do
        tries=$((tries + 1))
        if [[ $tries -gt $tenths ]] || ! kill -0 "$pid" 2>/dev/null; then
            echo "$name did not start:" >&2
            cat "$log" >&2
            return 1
        fi
        sleep 0.1
    done
}
