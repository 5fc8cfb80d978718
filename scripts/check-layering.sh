#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later

# Fails when a source file under src/ includes a header of a library that its own library
# does not reach by the arrows of docs/ARCHITECTURE.md's diagram (directly or through
# others): an include that points up or sideways. The diagram is the one statement of the
# layering; this holds the code to it.
#
#   scripts/check-layering.sh [SOURCE_ROOT]    SOURCE_ROOT defaults to this checkout
set -euo pipefail
root=${1:-"$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"}
diagram="$root/docs/ARCHITECTURE.md"

declare -A links=()
# A diagram line: "desktop   ──► render, platform    the panel windows…". Names in
# parentheses are outside libraries; a dotted arrow is a plugin loaded at run time.
while IFS= read -r line; do
    library=${line%% *}
    targets=$(sed -E 's/^[a-z]+ +──► +//; s/ {2,}.*//; s/\([^)]*\)//g; s/,/ /g' <<<"$line")
    links[$library]="${links[$library]:-} $targets"
done < <(grep -E '^[a-z]+ +──► ' "$diagram")

# Every library `library` may include from: itself and all it reaches.
reachable() {
    local -A seen=([$1]=1)
    local queue=("$1") next target
    while ((${#queue[@]})); do
        next=${queue[0]}
        queue=("${queue[@]:1}")
        for target in ${links[$next]:-}; do
            if [[ -z ${seen[$target]:-} ]]; then
                seen[$target]=1
                queue+=("$target")
            fi
        done
    done
    echo "${!seen[@]}"
}

failed=0
for folder in "$root"/src/*/; do
    library=$(basename "$folder")
    if [[ -z ${links[$library]+set} ]]; then
        echo "src/$library: not in the diagram of docs/ARCHITECTURE.md" >&2
        failed=1
        continue
    fi
    allowed=" $(reachable "$library") "
    while IFS=: read -r file number included; do
        target=${included%%/*}
        [[ -d "$root/src/$target" ]] || continue
        if [[ $allowed != *" $target "* ]]; then
            echo "${file#"$root"/}:$number: includes $included, which $library does not link" >&2
            failed=1
        fi
    done < <(grep -rnoE '^#include "[a-z]+/[^"]+"' "$folder" | sed -E 's/#include "([^"]+)"/\1/')
done
exit $failed
