// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/SystemStatsSampler.h"

#include "engine/Batteries.h"
#include "engine/Fans.h"
#include "engine/Temperatures.h"

#include <QCoreApplication>
#include <QThread>

namespace corkwheel {

namespace {

// The CPU baseline is unguarded, so a reading from another thread is a programming error;
// it stops the program in every build rather than giving wrong figures. Without an
// application object there is no event loop to be off of, so any thread goes.
void requireMainThread() {
    const QCoreApplication* app = QCoreApplication::instance();
    if (app != nullptr && QThread::currentThread() != app->thread())
        qFatal("SystemStatsSampler used off the main thread");
}

} // namespace

SystemStatsSampler::SystemStatsSampler(const SystemSource& source, const Clock& clock,
                                       std::chrono::milliseconds sensorTimeLimit)
    : m_source(source), m_clock(clock), m_disks(source, clock),
      m_temperatures([&source] { return corkwheel::Temperatures::read(source); }, clock,
                     sensorTimeLimit),
      m_fans([&source] { return corkwheel::Fans::read(source); }, clock, sensorTimeLimit),
      m_battery([&source] { return corkwheel::Batteries::read(source); }, clock, sensorTimeLimit) {}

SystemStatsSampler& SystemStatsSampler::shared() {
    static SystemStatsSampler sampler(SystemSource::real(), Clock::system());
    return sampler;
}

double SystemStatsSampler::sampleCPU() {
    requireMainThread();
    const double now = m_clock.monotonicSeconds();
    if (const auto recent = m_recentCPU.at(now))
        return *recent;
    const auto stat = m_source.readFile(QStringLiteral("/proc/stat"));
    const auto current = stat ? parseCpuTicks(*stat) : std::nullopt;
    if (!current)
        return 0.0;
    const double usage = m_previousCPUTicks ? cpuBusyShare(*m_previousCPUTicks, *current) : 0.0;
    m_previousCPUTicks = current;
    m_recentCPU.keep(usage, now);
    return usage;
}

MemoryReading SystemStatsSampler::sampleMemory() {
    requireMainThread();
    const double now = m_clock.monotonicSeconds();
    if (const auto recent = m_recentMemory.at(now))
        return *recent;
    const auto meminfo = m_source.readFile(QStringLiteral("/proc/meminfo"));
    MemoryReading memory = meminfo ? memoryReadingFromMeminfo(*meminfo) : MemoryReading{};
    // Without a total from the kernel's file, nothing is known of use, but the machine's
    // memory still shows.
    if (memory.totalGB <= 0)
        memory = memoryReadingFromBytes(0, m_source.physicalMemoryBytes());
    m_recentMemory.keep(memory, now);
    return memory;
}

void SystemStatsSampler::sampleDisks(QObject* receiver, DiskSampler::Ready ready) {
    requireMainThread();
    m_disks.sample(receiver, std::move(ready));
}

QList<double> SystemStatsSampler::sampleCores() {
    requireMainThread();
    const double now = m_clock.monotonicSeconds();
    if (const auto recent = m_recentCores.at(now))
        return *recent;
    const auto stat = m_source.readFile(QStringLiteral("/proc/stat"));
    if (!stat)
        return {};
    QList<CoreTicks> current = parseCoreTicks(*stat);
    // The first reading has no baseline: every core reads 0, as the machine's CPU does.
    const QList<double> shares =
        coreBusyShares(m_previousCoreTicks.isEmpty() ? current : m_previousCoreTicks, current);
    m_previousCoreTicks = std::move(current);
    m_recentCores.keep(shares, now);
    return shares;
}

std::optional<SwapReading> SystemStatsSampler::sampleSwap() {
    const auto meminfo = m_source.readFile(QStringLiteral("/proc/meminfo"));
    return meminfo ? swapReadingFromMeminfo(*meminfo) : std::nullopt;
}

std::optional<LoadAverage> SystemStatsSampler::sampleLoad() {
    const auto loadavg = m_source.readFile(QStringLiteral("/proc/loadavg"));
    return loadavg ? parseLoadAverage(*loadavg) : std::nullopt;
}

void SystemStatsSampler::sampleTemperatures(QObject* receiver,
                                            OffThreadReading<Temperatures>::Ready ready) {
    requireMainThread();
    m_temperatures.sample(receiver, std::move(ready));
}

void SystemStatsSampler::sampleFans(QObject* receiver, OffThreadReading<Fans>::Ready ready) {
    requireMainThread();
    m_fans.sample(receiver, std::move(ready));
}

void SystemStatsSampler::sampleBattery(QObject* receiver, OffThreadReading<Battery>::Ready ready) {
    requireMainThread();
    m_battery.sample(receiver, std::move(ready));
}

} // namespace corkwheel
