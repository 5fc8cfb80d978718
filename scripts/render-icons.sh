#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later

# Renders the PNG sizes of the application icon from its SVG. The PNGs are committed, so
# building Corkwheel needs no SVG renderer; run this again after changing the SVG or the
# sizes in src/app/icons/sizes, which the install rules and scripts/check-package.sh read too.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
icons="$(repo_root)/src/app/icons"
app_id=io.github.corkwheel.Corkwheel

install_missing_packages librsvg2-bin

mapfile -t sizes <"$icons/sizes"
for size in "${sizes[@]}"; do
    mkdir -p "$icons/${size}x${size}"
    rsvg-convert --width "$size" --height "$size" "$icons/$app_id.svg" \
        --output "$icons/${size}x${size}/$app_id.png"
done
echo "Rendered $icons/*/$app_id.png"
