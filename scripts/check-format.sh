#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later

# Fails when a C++ file differs from what clang-format makes of it, when a source, script or
# CMake file does not say its licence in its first lines, or when an include points up or
# sideways between the libraries (scripts/check-layering.sh).
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
git ls-files -z '*.cpp' '*.h' | xargs -0 clang-format --dry-run --Werror

missing=0
while IFS= read -r -d '' file; do
    if ! head -n 3 "$file" | grep -q 'SPDX-License-Identifier: GPL-3.0-or-later'; then
        echo "$file: no SPDX-License-Identifier line in its first three lines" >&2
        missing=1
    fi
done < <(git ls-files -z '*.cpp' '*.h' '*.sh' '*.cmake' 'CMakeLists.txt' '*/CMakeLists.txt' \
    '.ci/run' ':!tests/data/*')
scripts/check-layering.sh || missing=1
exit $missing
