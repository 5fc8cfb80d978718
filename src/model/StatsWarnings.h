// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/StatsWarning.h"

namespace corkwheel {

// The warning of each figure row of a system-stats panel, each off until the user turns it
// on, with the threshold it then starts from.
struct StatsWarnings {
    StatsWarning cpu{false, 90};
    StatsWarning memory{false, 90};
    // Every disk row, by the share of the disk in use.
    StatsWarning disks{false, 90};
    StatsWarning swap{false, 50};
    StatsWarning temperatures{false, 85};
    // A temperature warns at its sensor's own maximum where the sensor states one, and at
    // the threshold where it does not; off, at the threshold always.
    bool temperaturesAtSensorMax = true;
    // Below the threshold, as a battery runs down.
    StatsWarning battery{false, 15};

    bool operator==(const StatsWarnings&) const = default;
};

} // namespace corkwheel
