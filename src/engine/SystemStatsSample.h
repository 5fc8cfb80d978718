// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/BatteryReading.h"
#include "engine/DiskInfo.h"
#include "engine/FanReading.h"
#include "engine/LoadAverage.h"
#include "engine/SwapReading.h"
#include "engine/TemperatureReading.h"
#include "model/StatsRows.h"

#include <QList>

#include <optional>

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

    // The rows a panel may ask for whose readings this sample took: the panel asked for them
    // when it was taken. The readings of the others are empty or nothing, as are those that
    // failed.
    StatsRows rowsRead = {};
    // Each logical CPU's busy share, 0..1, in the kernel's order.
    QList<double> coreUsages = {};
    std::optional<SwapReading> swap = {};
    std::optional<LoadAverage> load = {};
    // How many logical CPUs are online: what a load of "fully busy" is.
    int onlineCpus = 0;
    QList<TemperatureReading> temperatures = {};
    QList<FanReading> fans = {};
    // Nothing on a machine without a battery.
    std::optional<BatteryReading> battery = {};

    // What a panel shows before its first reading.
    static SystemStatsSample zero() { return {}; }

    bool operator==(const SystemStatsSample&) const = default;
};

} // namespace corkwheel
