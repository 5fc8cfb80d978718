// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/CodableColor.h"

namespace corkwheel {

// When a row of a system-stats panel warns: past `threshold` (a percentage for shares, or
// degrees Celsius for temperatures) its bar and figure take `color`. Above the threshold
// for every row but the battery's, which warns below it.
struct StatsWarning {
    bool isOn = false;
    double threshold = 0;
    // A red that stands out on a dark desktop and a light one alike.
    CodableColor color{1, 0.27, 0.23, 1};

    bool operator==(const StatsWarning&) const = default;
};

} // namespace corkwheel
