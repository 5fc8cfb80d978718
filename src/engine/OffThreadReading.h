// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/BackgroundTask.h"
#include "engine/OneJobPerKey.h"
#include "engine/RecentReading.h"
#include "model/Clock.h"
#include "model/ClockTimer.h"

#include <QList>
#include <QObject>
#include <QPointer>

#include <chrono>
#include <functional>
#include <memory>
#include <utility>

namespace corkwheel {

// A figure whose files may keep a reader waiting (a sensor on a slow bus, a battery behind
// the embedded controller, a graphics card that must wake up to answer), read on a thread of
// the blocking pool for every panel that shows it. A reading asked for while one is under
// way waits for that one; one that has not come within the time limit is answered with the
// last reading that did come (or `Reading{}` before any), and a reading that never returns
// holds one thread, never more.
template <typename Reading> class OffThreadReading {
public:
    using Read = std::function<Reading()>;
    using Ready = std::function<void(const Reading& reading)>;

    static constexpr std::chrono::milliseconds kTimeLimit{1000};

    // `read` runs on other threads and may block for good.
    OffThreadReading(Read read, const Clock& clock,
                     std::chrono::milliseconds timeLimit = kTimeLimit)
        : m_read(std::move(read)), m_clock(clock), m_timeLimit(timeLimit),
          m_owner(std::make_unique<QObject>()), m_jobs(m_owner.get()),
          m_timer(clock.makeTimer([this] { answer(m_last); })) {}
    OffThreadReading(const OffThreadReading&) = delete;
    OffThreadReading& operator=(const OffThreadReading&) = delete;

    // Calls `ready` with a reading, unless `receiver` is gone by then: at once with one taken
    // within RecentReading's window, otherwise when the reading comes or the time limit
    // passes.
    void sample(QObject* receiver, Ready ready) {
        if (const auto recent = m_recent.at(m_clock.monotonicSeconds())) {
            ready(*recent);
            return;
        }
        m_waiting.append(Waiting{receiver, std::move(ready)});
        if (m_timer->isActive())
            return;
        const double startedAt = m_clock.monotonicSeconds();
        // A reading still under way from an earlier time limit is waited for again.
        m_jobs.run(BackgroundTask::blockingPool(), QStringLiteral("reading"), m_read,
                   [this, startedAt](Reading reading) {
                       m_last = std::move(reading);
                       m_recent.keep(m_last, startedAt);
                       answer(m_last);
                   });
        m_timer->startFor(m_clock.nowMSecsSinceEpoch() + m_timeLimit.count());
    }

    // Whether a reading is under way on another thread.
    bool isReading() const { return m_jobs.isUnderWay(QStringLiteral("reading")); }

private:
    struct Waiting {
        QPointer<QObject> receiver;
        Ready ready;
    };

    void answer(const Reading& reading) {
        m_timer->stop();
        // Taken out first: a receiver may ask again from inside its callback.
        const QList<Waiting> waiting = std::exchange(m_waiting, {});
        for (const Waiting& each : waiting) {
            if (each.receiver)
                each.ready(reading);
        }
    }

    Read m_read;
    const Clock& m_clock;
    std::chrono::milliseconds m_timeLimit;
    // Results come to the main thread only while this exists.
    std::unique_ptr<QObject> m_owner;
    OneJobPerKey m_jobs;
    std::unique_ptr<ClockTimer> m_timer;
    QList<Waiting> m_waiting;
    Reading m_last{};
    RecentReading<Reading> m_recent;
};

} // namespace corkwheel
