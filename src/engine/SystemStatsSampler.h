// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/CpuTicks.h"
#include "engine/DiskSampler.h"
#include "engine/MemoryReading.h"
#include "engine/RecentReading.h"
#include "engine/SystemSource.h"
#include "model/Clock.h"

#include <QList>

#include <optional>

namespace corkwheel {

// Takes readings of CPU load, memory and mounted volumes. One instance serves every
// system-stats panel, so a CPU reading covers the time since the previous reading taken
// for any panel, and a figure asked for again within RecentReading's window is the reading
// already taken: every panel shows the same figures. Main thread only: the CPU baseline
// is unguarded.
class SystemStatsSampler {
public:
    SystemStatsSampler(const SystemSource& source, const Clock& clock);
    SystemStatsSampler(const SystemStatsSampler&) = delete;
    SystemStatsSampler& operator=(const SystemStatsSampler&) = delete;

    // The process-wide instance, reading this machine.
    static SystemStatsSampler& shared();

    // Busy share of the CPU since the previous call, 0..1. The first call gives 0, and so
    // does a failed read, which leaves the baseline as it was.
    double sampleCPU();
    MemoryReading sampleMemory();
    // The user-visible volumes, internal ones first, handed to `ready` as DiskSampler
    // describes: capacities are asked off the main thread, within a time limit.
    void sampleDisks(QObject* receiver, DiskSampler::Ready ready);

private:
    const SystemSource& m_source;
    const Clock& m_clock;
    std::optional<CpuTicks> m_previousCPUTicks;
    RecentReading<double> m_recentCPU;
    RecentReading<MemoryReading> m_recentMemory;
    DiskSampler m_disks;
};

} // namespace corkwheel
