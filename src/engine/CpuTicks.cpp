// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/CpuTicks.h"

#include <QByteArrayList>

#include <algorithm>

namespace corkwheel {

namespace {

// The aggregate line's columns after its "cpu" label.
enum Column { User, Nice, System, Idle, IoWait, Irq, SoftIrq, Steal, ColumnCount };
// Kernels before 2.6 give only the first four; the rest then read as 0.
constexpr qsizetype kRequiredColumns = Idle + 1;

std::optional<QList<quint64>> parseColumns(const QByteArrayList& fields) {
    QList<quint64> columns(ColumnCount, 0);
    const qsizetype available = std::min<qsizetype>(fields.size() - 1, ColumnCount);
    if (available < kRequiredColumns)
        return std::nullopt;
    for (qsizetype i = 0; i < available; ++i) {
        bool ok = false;
        columns[i] = fields[i + 1].toULongLong(&ok);
        if (!ok)
            return std::nullopt;
    }
    return columns;
}

// Guest time is already part of user and nice, so it is not added again.
std::optional<CpuTicks> ticksFromFields(const QByteArrayList& fields) {
    const auto columns = parseColumns(fields);
    if (!columns)
        return std::nullopt;
    const auto& c = *columns;
    return CpuTicks{c[User], c[Nice], c[System] + c[Irq] + c[SoftIrq] + c[Steal],
                    c[Idle] + c[IoWait]};
}

} // namespace

std::optional<CpuTicks> parseCpuTicks(QByteArrayView procStat) {
    const qsizetype end = procStat.indexOf('\n');
    const QByteArray firstLine = procStat.first(end < 0 ? procStat.size() : end).toByteArray();
    const QByteArrayList fields = firstLine.simplified().split(' ');
    if (fields.first() != "cpu")
        return std::nullopt;
    return ticksFromFields(fields);
}

std::optional<CpuTicks> parseCpuLine(QByteArrayView line) {
    return ticksFromFields(line.toByteArray().simplified().split(' '));
}

double cpuBusyShare(const CpuTicks& previous, const CpuTicks& current) {
    // Unsigned subtraction wraps exactly as the counters do.
    const auto du = double(current.user - previous.user);
    const auto dn = double(current.nice - previous.nice);
    const auto ds = double(current.system - previous.system);
    const auto di = double(current.idle - previous.idle);
    const double total = du + ds + di + dn;
    if (total <= 0)
        return 0.0;
    return std::clamp((du + ds + dn) / total, 0.0, 1.0);
}

} // namespace corkwheel
