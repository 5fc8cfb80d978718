// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/CoreTicks.h"

#include <limits>

namespace corkwheel {

namespace {

// The N of a line that starts "cpuN " (N plain decimal digits); -1 for any other line.
int coreNumber(QByteArrayView line) {
    if (!line.startsWith("cpu"))
        return -1;
    qsizetype i = 3;
    qint64 number = 0;
    for (; i < line.size() && line[i] >= '0' && line[i] <= '9'; ++i) {
        number = number * 10 + (line[i] - '0');
        if (number > std::numeric_limits<int>::max())
            return -1;
    }
    const bool digits = i > 3;
    const bool blankAfter = i < line.size() && (line[i] == ' ' || line[i] == '\t');
    return digits && blankAfter ? static_cast<int>(number) : -1;
}

} // namespace

QList<CoreTicks> parseCoreTicks(QByteArrayView procStat) {
    QList<CoreTicks> cores;
    for (qsizetype start = 0; start < procStat.size();) {
        qsizetype end = procStat.indexOf('\n', start);
        if (end < 0)
            end = procStat.size();
        const QByteArrayView line = procStat.sliced(start, end - start);
        start = end + 1;
        const int core = coreNumber(line);
        if (core < 0)
            continue;
        if (const auto ticks = parseCpuLine(line))
            cores.append(CoreTicks{core, *ticks});
    }
    return cores;
}

QList<double> coreBusyShares(const QList<CoreTicks>& previous, const QList<CoreTicks>& current) {
    QList<double> shares;
    shares.reserve(current.size());
    for (qsizetype i = 0; i < current.size(); ++i) {
        // The same core is nearly always at the same place; searched for when CPUs went
        // offline or came back in between.
        const CoreTicks* before =
            i < previous.size() && previous[i].core == current[i].core ? &previous[i] : nullptr;
        for (qsizetype j = 0; before == nullptr && j < previous.size(); ++j) {
            if (previous[j].core == current[i].core)
                before = &previous[j];
        }
        shares.append(before ? cpuBusyShare(before->ticks, current[i].ticks) : 0.0);
    }
    return shares;
}

} // namespace corkwheel
