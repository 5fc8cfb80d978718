// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/DiskInfo.h"
#include "engine/RecentReading.h"
#include "engine/SystemSource.h"
#include "engine/VolumeCapacityQueries.h"
#include "engine/VolumeReading.h"
#include "model/Clock.h"
#include "model/ClockTimer.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QSet>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace corkwheel {

// Takes readings of the mounted volumes for every system-stats panel. The mount table and
// what is known of each volume come from kernel files, which answer at once; capacities come
// from the file systems themselves, which may not (a network share whose server went away),
// so they are asked off the main thread and a volume that has not answered within the time
// limit is left out of that reading. A volume still stuck on an earlier question is left
// out at once.
class DiskSampler : public QObject {
    Q_OBJECT

public:
    using Ready = std::function<void(const QList<DiskInfo>& disks)>;

    static constexpr std::chrono::milliseconds kTimeLimit{1000};

    DiskSampler(const SystemSource& source, const Clock& clock,
                std::chrono::milliseconds timeLimit = kTimeLimit, QObject* parent = nullptr);

    // Calls `ready` with the volumes to show, internal ones first, unless `receiver` is gone
    // by then: at once with a reading taken within RecentReading's window, otherwise when
    // every volume answered or the time limit passed. The mount table, the volumes' names
    // and whether each is built in are read again only after the mount table changed.
    void sample(QObject* receiver, Ready ready);

private:
    struct Waiting {
        QPointer<QObject> receiver;
        Ready ready;
    };

    void startReading();
    void takeAnswer(const QString& mountPoint, const std::optional<VolumeCapacity>& capacity);
    void finishReading();

    const SystemSource& m_source;
    const Clock& m_clock;
    VolumeCapacityQueries m_capacities;
    std::chrono::milliseconds m_timeLimit;
    std::unique_ptr<ClockTimer> m_timeLimitTimer;
    std::optional<QList<VolumeReading>> m_volumes;
    // The reading under way: its volumes, and those whose answer it still waits for.
    QList<VolumeReading> m_reading;
    QSet<QString> m_unanswered;
    bool m_readingUnderWay = false;
    double m_readingStartedAt = 0;
    QList<Waiting> m_waiting;
    RecentReading<QList<DiskInfo>> m_recent;
};

} // namespace corkwheel
