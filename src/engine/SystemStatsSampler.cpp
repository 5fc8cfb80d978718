#include "engine/SystemStatsSampler.h"

#include "engine/DiskList.h"
#include "engine/MountedVolumes.h"

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

SystemStatsSampler::SystemStatsSampler(const SystemSource& source) : m_source(source) {}

SystemStatsSampler& SystemStatsSampler::shared() {
    static SystemStatsSampler sampler(SystemSource::real());
    return sampler;
}

double SystemStatsSampler::sampleCPU() {
    requireMainThread();
    const auto stat = m_source.readFile(QStringLiteral("/proc/stat"));
    const auto current = stat ? parseCpuTicks(*stat) : std::nullopt;
    if (!current)
        return 0.0;
    const double usage = m_previousCPUTicks ? cpuBusyShare(*m_previousCPUTicks, *current) : 0.0;
    m_previousCPUTicks = current;
    return usage;
}

MemoryReading SystemStatsSampler::sampleMemory() {
    requireMainThread();
    const auto meminfo = m_source.readFile(QStringLiteral("/proc/meminfo"));
    return meminfo ? memoryReadingFromMeminfo(*meminfo) : MemoryReading{};
}

QList<DiskInfo> SystemStatsSampler::sampleDisks() {
    requireMainThread();
    // Asked on the first call too, so that a change the first reading already saw does
    // not count again.
    const bool changed = m_source.mountTableChanged();
    m_volumes = changed || !m_volumes ? readMountedVolumes(m_source)
                                      : withCurrentCapacities(m_source, *m_volumes);
    return diskList(*m_volumes);
}

} // namespace corkwheel
