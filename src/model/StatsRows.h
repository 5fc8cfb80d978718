// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace corkwheel {

// The rows a system-stats panel shows beyond CPU, memory, disks and network, each off until
// the user turns it on. The panel shows them in this order, after the memory row.
struct StatsRows {
    // Each logical CPU's load, as a bar of its own, all in one row.
    bool cores = false;
    bool load = false;
    bool swap = false;
    bool temperatures = false;
    bool fans = false;
    bool battery = false;

    bool operator==(const StatsRows&) const = default;
};

} // namespace corkwheel
