// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/DiskInfo.h"

#include <QList>

namespace corkwheel {

// One reading of CPU, memory and volumes, as a system-stats panel draws it. Fractions are
// 0..1; GB figures are in units of 2^30 bytes.
struct SystemStatsSample {
    double cpuUsage = 0;
    double memoryUsedFraction = 0;
    double memoryUsedGB = 0;
    double memoryTotalGB = 0;
    // In display order.
    QList<DiskInfo> disks;

    // What a panel shows before its first reading.
    static SystemStatsSample zero() { return {}; }

    bool operator==(const SystemStatsSample&) const = default;
};

} // namespace corkwheel
