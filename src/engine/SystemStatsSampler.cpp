#include "engine/SystemStatsSampler.h"

#include "engine/DiskList.h"
#include "engine/MountedVolumes.h"

#include <QCoreApplication>
#include <QThread>

namespace corkwheel {

namespace {

// Without an application object there is no event loop to be off of, so any thread goes.
bool onMainThread() {
    const QCoreApplication* app = QCoreApplication::instance();
    return app == nullptr || QThread::currentThread() == app->thread();
}

} // namespace

SystemStatsSampler::SystemStatsSampler(const SystemSource& source) : m_source(source) {}

SystemStatsSampler& SystemStatsSampler::shared() {
    static SystemStatsSampler sampler(SystemSource::real());
    return sampler;
}

double SystemStatsSampler::sampleCPU() {
    Q_ASSERT(onMainThread());
    const auto stat = m_source.readFile(QStringLiteral("/proc/stat"));
    const auto current = stat ? parseCpuTicks(*stat) : std::nullopt;
    if (!current)
        return 0.0;
    const double usage = m_previousCPUTicks ? cpuBusyShare(*m_previousCPUTicks, *current) : 0.0;
    m_previousCPUTicks = current;
    return usage;
}

MemoryReading SystemStatsSampler::sampleMemory() {
    Q_ASSERT(onMainThread());
    const auto meminfo = m_source.readFile(QStringLiteral("/proc/meminfo"));
    return meminfo ? memoryReadingFromMeminfo(*meminfo) : MemoryReading{};
}

QList<DiskInfo> SystemStatsSampler::sampleDisks() {
    Q_ASSERT(onMainThread());
    return diskList(readMountedVolumes(m_source));
}

} // namespace corkwheel
