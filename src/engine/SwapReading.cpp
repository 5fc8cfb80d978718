// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/SwapReading.h"

#include "engine/MeminfoField.h"

#include <algorithm>

namespace corkwheel {

namespace {

constexpr double kBytesPerGB = 1024.0 * 1024.0 * 1024.0;

} // namespace

std::optional<SwapReading> swapReadingFromMeminfo(QByteArrayView meminfo) {
    const auto total = meminfoBytes(meminfo, "SwapTotal");
    const auto free = meminfoBytes(meminfo, "SwapFree");
    if (!total || !free)
        return std::nullopt;
    const double used = std::max(*total - *free, 0.0);
    const double fraction = *total > 0 ? used / *total : 0.0;
    return SwapReading{fraction, used / kBytesPerGB, *total / kBytesPerGB};
}

} // namespace corkwheel
