#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later

# Runs a command as root in a Debian 13 ("trixie") root file system, with this repository at
# the same path inside, and exits with the command's status:
#
#   scripts/in-debian13.sh COMMAND [ARGUMENT...]
#   scripts/in-debian13.sh scripts/test.sh     the whole suite, built and run on Debian 13
#
# The first run makes the root with debootstrap (and installs debootstrap when missing);
# later runs reuse it, with what earlier commands installed there. It is kept in
# CORKWHEEL_DEBIAN13_ROOT (default: ${XDG_CACHE_HOME:-$HOME/.cache}/corkwheel/debian13-root).
# The command runs in the current folder when that is inside the repository, else in the
# repository, with a clean environment. Everything mounted for it is unmounted afterwards,
# also when it fails or is interrupted.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
source "$(dirname "${BASH_SOURCE[0]}")/lib/debian-root.sh"
DEBIAN_ROOT_SUITE=trixie
DEBIAN_ROOT=${CORKWHEEL_DEBIAN13_ROOT:-${XDG_CACHE_HOME:-$HOME/.cache}/corkwheel/debian13-root}

if [[ $# -eq 0 ]]; then
    echo "usage: $0 COMMAND [ARGUMENT...]" >&2
    exit 2
fi

# debootstrap, mount and chroot need root. The root stays where the caller's settings put
# it, not in root's home folder.
if [[ $(id -u) -ne 0 ]]; then
    exec sudo env CORKWHEEL_DEBIAN13_ROOT="$DEBIAN_ROOT" \
        CORKWHEEL_DEBIAN_MIRROR="$DEBIAN_MIRROR" "TERM=${TERM:-dumb}" ${CI:+"CI=$CI"} \
        "$0" "$@"
fi

repo=$(repo_root)
folder=$PWD
[[ $folder == "$repo" || $folder == "$repo"/* ]] || folder=$repo

install_missing_packages debootstrap
mkdir -p "$(dirname "$DEBIAN_ROOT")"
# Mount points are compared with the kernel's own paths, which have no symbolic links.
DEBIAN_ROOT=$(realpath -m "$DEBIAN_ROOT")

# One run at a time per root: a second would unmount the first one's file systems, or
# install packages while the first builds.
exec {lock}>"$DEBIAN_ROOT.lock"
if ! flock -n "$lock"; then
    echo "Waiting for the other run in $DEBIAN_ROOT to end"
    flock "$lock"
fi

make_debian_root
# Set before mounting, so that a mount that fails halfway is undone too. A run killed
# outright leaves its mounts (and maybe processes), which the next run clears here first.
trap unmount_debian_root EXIT
trap 'exit 130' INT
trap 'exit 143' TERM
unmount_debian_root
mount_debian_root "$repo"

echo "In Debian 13 ($DEBIAN_ROOT): $*"
status=0
# Without the lock: what the command leaves behind must not keep the next run waiting.
run_in_debian_root "$folder" "$@" {lock}>&- || status=$?
exit "$status"
