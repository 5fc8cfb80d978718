# SPDX-License-Identifier: GPL-3.0-or-later

# A Debian root file system, made with debootstrap and kept between runs, in which commands
# run with chroot: in-debian13.sh proves on Debian 13 (its Qt, compiler and window managers)
# what the suite proves on the Debian 12 machine that runs it, and bench/first_build.sh
# times a first build on a Debian 12 machine that has nothing installed yet.
#
# The caller sets DEBIAN_ROOT_SUITE (the release's code name) and DEBIAN_ROOT (where the
# root is kept);
#   CORKWHEEL_DEBIAN_MIRROR   the Debian archive to make it from (default: deb.debian.org)
#
# Everything here needs root: the callers run as root (through sudo when they must).

DEBIAN_MIRROR=${CORKWHEEL_DEBIAN_MIRROR:-http://deb.debian.org/debian}
# Written last, once the root is complete: a root without it is what an interrupted
# debootstrap left, and is made again.
DEBIAN_ROOT_COMPLETE_MARKER=.corkwheel-root-complete

# The mount points below a folder, deepest first, so they can be unmounted in order.
# A folder sorts before everything below it, so the reverse order puts children first.
mounts_below() {
    local dir=$1
    awk -v dir="$dir" 'index($5, dir "/") == 1 { print $5 }' /proc/self/mountinfo |
        sort -r
}

unmount_below() {
    local mount_point
    while read -r mount_point; do
        [[ -n $mount_point ]] || continue
        # A process that outlived its command can still hold a file open; a lazy unmount
        # detaches the mount now and lets it go once that process is gone.
        umount "$mount_point" 2>/dev/null || umount -l "$mount_point"
    done < <(mounts_below "$1")
}

# Makes the root unless a complete one is there already.
make_debian_root() {
    local dir=$DEBIAN_ROOT
    [[ -f "$dir/$DEBIAN_ROOT_COMPLETE_MARKER" ]] && return 0
    if [[ -e $dir ]]; then
        # rm -rf would delete the repository through a bind mount left there, so nothing
        # may be mounted below the root any more.
        unmount_below "$dir"
        if [[ -n $(mounts_below "$dir") ]]; then
            echo "Still mounted below $dir; not removing it" >&2
            return 1
        fi
        echo "Removing the incomplete Debian $DEBIAN_ROOT_SUITE root in $dir"
        rm -rf --one-file-system "$dir"
    fi
    mkdir -p "$dir"
    local started=$SECONDS
    echo "Making a Debian $DEBIAN_ROOT_SUITE root in $dir from $DEBIAN_MIRROR"
    debootstrap --variant=minbase "$DEBIAN_ROOT_SUITE" "$dir" "$DEBIAN_MIRROR"

    # The updates a Debian machine of that release gets, from the same archive (and its
    # security archive, next to it on Debian's mirrors).
    rm -f "$dir/etc/apt/sources.list"
    local sources="$dir/etc/apt/sources.list.d/debian.sources"
    cat >"$sources" <<EOF
Types: deb
URIs: $DEBIAN_MIRROR
Suites: $DEBIAN_ROOT_SUITE $DEBIAN_ROOT_SUITE-updates
Components: main
Signed-By: /usr/share/keyrings/debian-archive-keyring.gpg
EOF
    if [[ $DEBIAN_MIRROR == */debian ]]; then
        cat >>"$sources" <<EOF

Types: deb
URIs: $DEBIAN_MIRROR-security
Suites: $DEBIAN_ROOT_SUITE-security
Components: main
Signed-By: /usr/share/keyrings/debian-archive-keyring.gpg
EOF
    fi
    # debootstrap leaves no hosts file, without which "localhost" resolves to nothing.
    printf '127.0.0.1\tlocalhost\n::1\t\tlocalhost ip6-localhost ip6-loopback\n' \
        >"$dir/etc/hosts"
    # Packages with a system service (D-Bus and the like) would start it in the root, where
    # it would outlive the command and keep the root busy; nothing is booted there.
    printf '#!/bin/sh\nexit 101\n' >"$dir/usr/sbin/policy-rc.d"
    chmod 755 "$dir/usr/sbin/policy-rc.d"

    touch "$dir/$DEBIAN_ROOT_COMPLETE_MARKER"
    echo "Made the Debian $DEBIAN_ROOT_SUITE root in $((SECONDS - started)) s"
}

# mount_debian_root <repository>: the kernel's file systems, a fresh /tmp and the
# repository at its own path, so paths in a build made inside match those outside.
mount_debian_root() {
    local dir=$DEBIAN_ROOT repo=$1
    mount -t proc proc "$dir/proc"
    bind_privately /sys "$dir/sys"
    bind_privately /dev "$dir/dev"
    bind_privately /dev/pts "$dir/dev/pts"
    mount -t tmpfs -o mode=1777 tmpfs "$dir/dev/shm"
    # What one run leaves in /tmp (X displays' lock files and sockets, say) is not the next
    # run's business, as on a machine that was started again.
    mount -t tmpfs -o mode=1777 tmpfs "$dir/tmp"
    mkdir -p "$dir$repo"
    bind_privately "$repo" "$dir$repo"
    # The host's name servers, which may have changed since the root was made.
    cp --remove-destination -L /etc/resolv.conf "$dir/etc/resolv.conf"
}

# A private bind mount: on a machine whose mounts are shared, mounts made below the target
# (dev/pts below dev) would otherwise show up below the source as well.
bind_privately() {
    mount --bind "$1" "$2"
    mount --make-private "$2"
}

# Ends what the command left running in the root (a display server or a session bus a test
# did not stop), so that nothing keeps using the file systems about to be unmounted.
stop_processes_in_debian_root() {
    local dir proc pids=()
    dir=$(readlink -f "$DEBIAN_ROOT")
    for proc in /proc/[0-9]*; do
        [[ $(readlink "$proc/root" 2>/dev/null) == "$dir" ]] && pids+=("${proc#/proc/}")
    done
    [[ ${#pids[@]} -gt 0 ]] || return 0
    echo "Stopping what the command left running: ${pids[*]}"
    kill -TERM "${pids[@]}" 2>/dev/null || true
    local tries pid alive
    for ((tries = 0; tries < 50; tries++)); do
        alive=()
        for pid in "${pids[@]}"; do
            kill -0 "$pid" 2>/dev/null && alive+=("$pid")
        done
        [[ ${#alive[@]} -gt 0 ]] || return 0
        sleep 0.1
    done
    kill -KILL "${alive[@]}" 2>/dev/null || true
}

unmount_debian_root() {
    stop_processes_in_debian_root
    unmount_below "$DEBIAN_ROOT"
}

# run_in_debian_root <folder> <command...>: runs the command as root in the folder inside
# the root, with a clean environment: nothing of the caller's PATH (tools in /usr/local or a
# home folder) or build settings leaks in, as on a fresh Debian machine.
run_in_debian_root() {
    local folder=$1
    shift
    local environment=(PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LANG=C.UTF-8
        "TERM=${TERM:-dumb}")
    local variable
    for variable in CI http_proxy https_proxy no_proxy; do
        [[ -n ${!variable:-} ]] && environment+=("$variable=${!variable}")
    done
    # shellcheck disable=SC2016 # expanded by the shell inside the root
    env -i "${environment[@]}" chroot "$DEBIAN_ROOT" /bin/sh -c 'cd "$0" && exec "$@"' \
        "$folder" "$@"
}
