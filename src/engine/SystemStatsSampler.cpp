// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/SystemStatsSampler.h"

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

SystemStatsSampler::SystemStatsSampler(const SystemSource& source, const Clock& clock)
    : m_source(source), m_clock(clock), m_disks(source, clock) {}

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

} // namespace corkwheel
