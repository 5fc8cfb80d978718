#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later

# make_desktop_state and run_desktop_as, with which the GNOME and Plasma session scripts set
# up a session: its folders, and, when root asks, the unprivileged user the session runs as.
set -euo pipefail
repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
source "$repo/scripts/lib/desktop-user.sh"
source "$repo/tests/scripts/lib/verdicts.sh"

user=corkwheel-desktop-test
states=()
trap 'rm -rf "${states[@]}"' EXIT

make_desktop_state state .config Desktop
states+=("$state")
verdict "the home holds the folders asked for" \
    "$(holds test -d "$state/home/.config" -a -d "$state/home/Desktop")"
verdict "the runtime folder is private" "$(holds test "$(stat -c %a "$state/runtime")" = 700)"

# Anyone but root runs the session as they are: as root, that is seen as nobody.
as_nobody=()
owner=$(id -un)
if [[ $(id -u) -eq 0 ]]; then
    as_nobody=(setpriv --reuid=nobody --regid=nogroup --clear-groups --)
    owner=nobody
fi
seen=$("${as_nobody[@]}" bash -c 'source "$0"; prefix=(unchanged); make_desktop_state own;
    run_desktop_as someone "$own" prefix; echo "${#prefix[@]} ${prefix[*]} $(stat -c %U "$own/home")";
    rm -rf "$own"' "$repo/scripts/lib/desktop-user.sh")
verdict "one not root is left as they are, keeping the folders" \
    "$(holds test "$seen" = "1 unchanged $owner")" "$seen"

if [[ $(id -u) -eq 0 ]]; then
    as_user=()
    run_desktop_as "$user" "$state" as_user
    verdict "root hands the home to the session's user" \
        "$(holds test "$(stat -c %U "$state/home" "$state/home/Desktop" "$state/runtime" |
            sort -u)" = "$user")"
    verdict "and runs its programs as that user" \
        "$(holds test "$("${as_user[@]}" id -un)" = "$user")"
    verdict "who may write in the runtime folder" \
        "$(holds "${as_user[@]}" touch "$state/runtime/socket")"
fi
totals
