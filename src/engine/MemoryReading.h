// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArrayView>

namespace corkwheel {

// One reading of the machine's memory. GB figures are in units of 2^30 bytes.
struct MemoryReading {
    double usedFraction = 0;
    double usedGB = 0;
    double totalGB = 0;

    bool operator==(const MemoryReading&) const = default;
};

// Memory in use is what the kernel could not hand to a new program without swapping:
// MemTotal − MemAvailable from /proc/meminfo. When MemAvailable is missing, nothing is
// known about use but the total still shows; when MemTotal is missing, everything is 0.
MemoryReading memoryReadingFromMeminfo(QByteArrayView meminfo);

// The fraction is capped at 1 but the used figure is kept as it is, so an inconsistent
// pair never draws an overfull bar yet still shows the true number.
MemoryReading memoryReadingFromBytes(double usedBytes, double physicalBytes);

} // namespace corkwheel
