#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later

# scripts/check-layering.sh passes on this checkout and fails on a copy of it into which an
# upward include, a sideways include and a library missing from the diagram were planted.
set -uo pipefail
repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
check="$repo/scripts/check-layering.sh"
source "$repo/tests/scripts/lib/verdicts.sh"
copy=$(mktemp -d)
trap 'rm -rf "$copy"' EXIT

expect() {
    local what=$1 wanted=$2
    shift 2
    local output status
    output=$("$@" 2>&1)
    status=$?
    if [[ $status -eq 0 && $wanted == pass ]] ||
        [[ $status -ne 0 && $wanted == fail:* && $output == *"${wanted#fail:}"* ]]; then
        verdict "$what" true
    else
        verdict "$what" false "exit $status, wanted $wanted: $output"
    fi
}

expect "this checkout keeps its layering" pass "$check" "$repo"

plant() {
    rm -rf "${copy:?}"/*
    cp -r "$repo/src" "$repo/docs" "$copy/"
    echo "$2" >>"$copy/src/$1"
}

plant model/Panel.cpp '#include "render/Theme.h"'
expect "an upward include fails" "fail:src/model/Panel.cpp" "$check" "$copy"
plant desktop/PanelOutline.cpp '#include "editor/EditorView.h"'
expect "a sideways include fails" "fail:src/desktop/PanelOutline.cpp" "$check" "$copy"
plant app/main.cpp '#include "model/Panel.h"'
expect "an include two levels down passes" pass "$check" "$copy"
plant model/Panel.cpp ''
mkdir "$copy/src/newlib"
expect "a library missing from the diagram fails" "fail:src/newlib" "$check" "$copy"

totals
