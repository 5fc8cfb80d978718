// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/BatteryReading.h"
#include "engine/CoreTicks.h"
#include "engine/CpuTicks.h"
#include "engine/DiskSampler.h"
#include "engine/FanReading.h"
#include "engine/LoadAverage.h"
#include "engine/MemoryReading.h"
#include "engine/OffThreadReading.h"
#include "engine/RecentReading.h"
#include "engine/SwapReading.h"
#include "engine/SystemSource.h"
#include "engine/TemperatureReading.h"
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
    using Temperatures = QList<TemperatureReading>;
    using Fans = QList<FanReading>;
    using Battery = std::optional<BatteryReading>;

    SystemStatsSampler(
        const SystemSource& source, const Clock& clock,
        std::chrono::milliseconds sensorTimeLimit = OffThreadReading<Temperatures>::kTimeLimit);
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

    // Each logical CPU's busy share since the previous call, as sampleCPU() does for the
    // whole machine; empty when /proc/stat can't be read.
    QList<double> sampleCores();
    // Nothing when /proc/meminfo says nothing of swap, or /proc/loadavg can't be read.
    std::optional<SwapReading> sampleSwap();
    std::optional<LoadAverage> sampleLoad();
    int onlineCpuCount() const { return m_source.onlineCpuCount(); }
    // The sensors and the batteries, read off the main thread and handed to `ready` as
    // OffThreadReading describes.
    void sampleTemperatures(QObject* receiver, OffThreadReading<Temperatures>::Ready ready);
    void sampleFans(QObject* receiver, OffThreadReading<Fans>::Ready ready);
    void sampleBattery(QObject* receiver, OffThreadReading<Battery>::Ready ready);

private:
    const SystemSource& m_source;
    const Clock& m_clock;
    std::optional<CpuTicks> m_previousCPUTicks;
    RecentReading<double> m_recentCPU;
    RecentReading<MemoryReading> m_recentMemory;
    DiskSampler m_disks;
    QList<CoreTicks> m_previousCoreTicks;
    RecentReading<QList<double>> m_recentCores;
    OffThreadReading<Temperatures> m_temperatures;
    OffThreadReading<Fans> m_fans;
    OffThreadReading<Battery> m_battery;
};

} // namespace corkwheel
