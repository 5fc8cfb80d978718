// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArrayView>
#include <QtGlobal>

#include <optional>

namespace corkwheel {

// Cumulative CPU time of the whole machine, folded into four states. The kernel's
// counters are 64 bits wide; they are kept at that width so differences can be taken in
// the same modular arithmetic the counters live in.
struct CpuTicks {
    quint64 user = 0;
    quint64 nice = 0;
    // Kernel work, interrupts and time stolen by a hypervisor: busy, but not ours.
    quint64 system = 0;
    // Waiting for I/O counts as idle: the CPU could have run something else.
    quint64 idle = 0;

    bool operator==(const CpuTicks&) const = default;
};

// The aggregate "cpu" line at the top of /proc/stat; nothing when it is missing or short.
std::optional<CpuTicks> parseCpuTicks(QByteArrayView procStat);

// The counters of one line of /proc/stat, whatever its label ("cpu", "cpu3"); nothing when
// the line is short or a counter does not read.
std::optional<CpuTicks> parseCpuLine(QByteArrayView line);

// Share of the time between two readings that the CPU was busy (nice counts as busy), in
// 0..1. A counter that passed its maximum between the readings still gives its small true
// difference; no time at all between the readings gives 0.
double cpuBusyShare(const CpuTicks& previous, const CpuTicks& current);

} // namespace corkwheel
