// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArrayView>

#include <optional>

namespace corkwheel {

// How much of the swap space is in use. GB figures are in units of 2^30 bytes; a machine
// without swap has a total of 0.
struct SwapReading {
    double usedFraction = 0;
    double usedGB = 0;
    double totalGB = 0;

    bool operator==(const SwapReading&) const = default;
};

// SwapTotal − SwapFree from /proc/meminfo. Nothing when either line is missing, as the file
// then says nothing about swap; a free figure above the total (the two are not read at one
// instant) counts as none used.
std::optional<SwapReading> swapReadingFromMeminfo(QByteArrayView meminfo);

} // namespace corkwheel
