// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/StatsRows.h"
#include "model/StatsWarnings.h"

namespace corkwheel {

// What a system-stats panel shows beyond what every such panel shows, and when its rows
// warn. The default is a panel that asks for nothing more.
struct SystemStatsOptions {
    StatsRows rows;
    StatsWarnings warnings;

    bool operator==(const SystemStatsOptions&) const = default;
};

} // namespace corkwheel
