# SPDX-License-Identifier: GPL-3.0-or-later

# Programs the session scripts start in the background (display servers, window managers,
# compositors, shells): waiting for one to be ready, and ending them again.

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

# stop_and_reap PID...: asks each process to end, and ends for good any that is still there
# after five seconds; then reaps those that are this shell's children. A desktop program that
# ignores the request would otherwise keep the session script waiting until CTest's limit.
stop_and_reap() {
    local pid tries alive=()
    kill "$@" 2>/dev/null || true
    for ((tries = 0; tries < 50; tries++)); do
        alive=()
        for pid in "$@"; do
            running "$pid" && alive+=("$pid")
        done
        [[ ${#alive[@]} -gt 0 ]] || break
        sleep 0.1
    done
    [[ ${#alive[@]} -eq 0 ]] || kill -KILL "${alive[@]}" 2>/dev/null || true
    for pid in "$@"; do
        wait "$pid" 2>/dev/null || true
    done
}

# Whether the process is there and has not ended: one that ended but is not reaped yet is
# a zombie, which kill -0 still finds.
running() {
    local stat
    # read, not $(<file): under set -e, bash 5.2 ends the script when that cannot open the
    # file, even where a failure is handled.
    { read -r stat <"/proc/$1/stat"; } 2>/dev/null || return 1
    # The state follows the parenthesised command name, which may hold spaces.
    stat=${stat##*) }
    [[ ${stat:0:1} != Z ]]
}
