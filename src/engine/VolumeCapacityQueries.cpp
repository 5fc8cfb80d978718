// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/VolumeCapacityQueries.h"

#include "engine/BackgroundTask.h"

namespace corkwheel {

VolumeCapacityQueries::VolumeCapacityQueries(Ask ask, QObject* parent)
    : QObject(parent), m_ask(std::move(ask)) {}

bool VolumeCapacityQueries::ask(const QString& mountPoint) {
    if (m_outstanding.contains(mountPoint))
        return false;
    m_outstanding.insert(mountPoint);
    BackgroundTask::run(
        BackgroundTask::blockingPool(), this, [ask = m_ask, mountPoint] { return ask(mountPoint); },
        [this, mountPoint](const std::optional<VolumeCapacity>& capacity) {
            m_outstanding.remove(mountPoint);
            Q_EMIT answered(mountPoint, capacity);
        });
    return true;
}

} // namespace corkwheel
