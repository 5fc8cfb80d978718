// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/DiskSampler.h"

#include "engine/DiskList.h"
#include "engine/MountedVolumes.h"

namespace corkwheel {

DiskSampler::DiskSampler(const SystemSource& source, const Clock& clock,
                         std::chrono::milliseconds timeLimit, QObject* parent)
    : QObject(parent), m_source(source), m_clock(clock),
      m_capacities([&source](const QString& mountPoint) { return source.capacity(mountPoint); }),
      m_timeLimit(timeLimit), m_timeLimitTimer(clock.makeTimer([this] { finishReading(); })) {
    connect(&m_capacities, &VolumeCapacityQueries::answered, this, &DiskSampler::takeAnswer);
}

void DiskSampler::sample(QObject* receiver, Ready ready) {
    if (const auto recent = m_recent.at(m_clock.monotonicSeconds())) {
        ready(*recent);
        return;
    }
    m_waiting.append(Waiting{receiver, std::move(ready)});
    if (!m_readingUnderWay)
        startReading();
}

void DiskSampler::startReading() {
    m_readingUnderWay = true;
    m_readingStartedAt = m_clock.monotonicSeconds();
    // Asked on the first reading too, so that a change the first reading already saw does
    // not count again.
    const bool changed = m_source.mountTableChanged();
    if (changed || !m_volumes)
        m_volumes = readMountedVolumes(m_source);
    m_reading = *m_volumes;
    m_unanswered.clear();
    for (const VolumeReading& volume : std::as_const(m_reading)) {
        if (m_capacities.ask(volume.mountPoint))
            m_unanswered.insert(volume.mountPoint);
    }
    if (m_unanswered.isEmpty())
        finishReading();
    else
        m_timeLimitTimer->startFor(m_clock.nowMSecsSinceEpoch() + m_timeLimit.count());
}

void DiskSampler::takeAnswer(const QString& mountPoint,
                             const std::optional<VolumeCapacity>& capacity) {
    // Late answers to a reading that already ended are dropped; the next one asks again.
    if (!m_unanswered.remove(mountPoint))
        return;
    for (VolumeReading& volume : m_reading) {
        if (volume.mountPoint == mountPoint)
            volume.capacity = capacity;
    }
    if (m_unanswered.isEmpty())
        finishReading();
}

void DiskSampler::finishReading() {
    m_timeLimitTimer->stop();
    m_unanswered.clear();
    m_readingUnderWay = false;
    const QList<DiskInfo> disks = diskList(m_reading);
    m_recent.keep(disks, m_readingStartedAt);
    // Taken out first: a receiver may ask again from inside its callback.
    const QList<Waiting> waiting = std::exchange(m_waiting, {});
    for (const Waiting& each : waiting) {
        if (each.receiver)
            each.ready(disks);
    }
}

} // namespace corkwheel
