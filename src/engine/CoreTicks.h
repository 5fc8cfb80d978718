// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/CpuTicks.h"

#include <QByteArrayView>
#include <QList>

namespace corkwheel {

// The cumulative time of one logical CPU, from its "cpuN" line of /proc/stat.
struct CoreTicks {
    int core = 0;
    CpuTicks ticks;

    bool operator==(const CoreTicks&) const = default;
};

// Every "cpuN" line of /proc/stat, in the file's order. A line that does not read is left
// out rather than failing the rest: an offline CPU has no line at all either. Empty when
// there is none.
QList<CoreTicks> parseCoreTicks(QByteArrayView procStat);

// Each core's busy share (0..1) since `previous`, in the order of `current`. A core that
// has no earlier reading (it just came online) reads 0 this once.
QList<double> coreBusyShares(const QList<CoreTicks>& previous, const QList<CoreTicks>& current);

} // namespace corkwheel
