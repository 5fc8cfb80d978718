// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/MemoryReading.h"

#include "engine/MeminfoField.h"

#include <algorithm>

namespace corkwheel {

namespace {

constexpr double kBytesPerGB = 1024.0 * 1024.0 * 1024.0;

} // namespace

MemoryReading memoryReadingFromMeminfo(QByteArrayView meminfo) {
    const auto total = meminfoBytes(meminfo, "MemTotal");
    if (!total)
        return {};
    const auto available = meminfoBytes(meminfo, "MemAvailable");
    if (!available)
        return MemoryReading{0, 0, *total / kBytesPerGB};
    return memoryReadingFromBytes(std::max(*total - *available, 0.0), *total);
}

MemoryReading memoryReadingFromBytes(double usedBytes, double physicalBytes) {
    const double fraction = physicalBytes > 0 ? std::min(usedBytes / physicalBytes, 1.0) : 0.0;
    return MemoryReading{fraction, usedBytes / kBytesPerGB, physicalBytes / kBytesPerGB};
}

} // namespace corkwheel
