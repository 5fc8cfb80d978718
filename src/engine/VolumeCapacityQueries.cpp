// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/VolumeCapacityQueries.h"

#include "engine/BackgroundTask.h"

namespace corkwheel {

VolumeCapacityQueries::VolumeCapacityQueries(Ask ask, QObject* parent)
    : QObject(parent), m_ask(std::move(ask)), m_questions(this) {}

bool VolumeCapacityQueries::ask(const QString& mountPoint) {
    return m_questions.run(
        BackgroundTask::blockingPool(), mountPoint,
        [ask = m_ask, mountPoint] { return ask(mountPoint); },
        [this, mountPoint](const std::optional<VolumeCapacity>& capacity) {
            Q_EMIT answered(mountPoint, capacity);
        });
}

} // namespace corkwheel
