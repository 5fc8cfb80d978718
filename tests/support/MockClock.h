// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/Clock.h"
#include "model/ClockTimer.h"

#include <QList>
#include <QTimeZone>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <optional>

namespace corkwheel::test {

// A clock that moves only when the test moves it. Its timers go off only while the test
// lets it run: advance() jumps, as a clock set forward or a machine waking from sleep
// does, and leaves them waiting; runFor() lets the time pass, and each timer due on the
// way goes off at its time, in turn.
class MockClock final : public corkwheel::Clock {
public:
    QDateTime now() const override { return m_now; }
    double monotonicSeconds() const override { return m_monotonic; }
    std::unique_ptr<ClockTimer> makeTimer(std::function<void()> timeout) const override {
        return std::make_unique<Timer>(m_timers, std::move(timeout));
    }

    void setNow(const QDateTime& now) { m_now = now; }
    void advance(double seconds) {
        m_monotonic += seconds;
        m_now = m_now.addMSecs(std::llround(seconds * 1000));
    }
    void runFor(double seconds) {
        const qint64 startMs = m_now.toMSecsSinceEpoch();
        const qint64 endMs = startMs + std::llround(seconds * 1000);
        const double startMonotonic = m_monotonic;
        while (Timer* timer = firstDueBy(endMs)) {
            const qint64 dueMs = std::max(*timer->due, m_now.toMSecsSinceEpoch());
            m_now = m_now.addMSecs(dueMs - m_now.toMSecsSinceEpoch());
            m_monotonic = startMonotonic + double(dueMs - startMs) / 1000;
            timer->goOff();
        }
        m_now = m_now.addMSecs(endMs - m_now.toMSecsSinceEpoch());
        m_monotonic = startMonotonic + seconds;
    }

private:
    class Timer final : public ClockTimer {
    public:
        Timer(std::shared_ptr<QList<Timer*>> all, std::function<void()> timeout)
            : m_all(std::move(all)), m_timeout(std::move(timeout)) {
            m_all->append(this);
        }
        ~Timer() override { m_all->removeOne(this); }
        Timer(const Timer&) = delete;
        Timer& operator=(const Timer&) = delete;

        void startFor(qint64 dueMs) override { due = dueMs; }
        void stop() override { due.reset(); }
        bool isActive() const override { return due.has_value(); }
        void goOff() {
            due.reset();
            m_timeout();
        }

        std::optional<qint64> due;

    private:
        // Shared with the clock, so either may go first.
        std::shared_ptr<QList<Timer*>> m_all;
        std::function<void()> m_timeout;
    };

    Timer* firstDueBy(qint64 endMs) const {
        Timer* first = nullptr;
        for (Timer* timer : *m_timers) {
            if (timer->due && *timer->due <= endMs && (!first || *timer->due < *first->due))
                first = timer;
        }
        return first;
    }

    QDateTime m_now = QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5), QTimeZone::utc());
    double m_monotonic = 1000;
    std::shared_ptr<QList<Timer*>> m_timers = std::make_shared<QList<Timer*>>();
};

// A clock a second further on every time it is read, as if every reading came in a
// refresh of its own.
class SteppingClock final : public corkwheel::Clock {
public:
    QDateTime now() const override { return m_clock.now(); }
    double monotonicSeconds() const override {
        m_clock.advance(1);
        return m_clock.monotonicSeconds();
    }

private:
    mutable MockClock m_clock;
};

} // namespace corkwheel::test
