// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/Clock.h"

#include "model/ClockTimer.h"

#include <QTimer>

#include <algorithm>
#include <chrono>
#include <limits>

namespace corkwheel {

namespace {

class SystemClock final : public Clock {
public:
    QDateTime now() const override { return QDateTime::currentDateTime(); }
    // Without the local time zone, which Qt looks up on the disk at every conversion.
    qint64 nowMSecsSinceEpoch() const override { return QDateTime::currentMSecsSinceEpoch(); }
    double monotonicSeconds() const override {
        using namespace std::chrono;
        return duration<double>(steady_clock::now().time_since_epoch()).count();
    }
};

class QtClockTimer final : public ClockTimer {
public:
    QtClockTimer(const Clock& clock, std::function<void()> timeout) : m_clock(clock) {
        // Precise, so a refresh due on a whole second does not come early or late.
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setSingleShot(true);
        QObject::connect(&m_timer, &QTimer::timeout, std::move(timeout));
    }

    void startFor(qint64 dueMs) override {
        const qint64 delay = std::clamp<qint64>(dueMs - m_clock.nowMSecsSinceEpoch(), 0,
                                                std::numeric_limits<int>::max());
        m_timer.start(static_cast<int>(delay));
    }
    void stop() override { m_timer.stop(); }
    bool isActive() const override { return m_timer.isActive(); }

private:
    const Clock& m_clock;
    QTimer m_timer;
};

} // namespace

std::unique_ptr<ClockTimer> Clock::makeTimer(std::function<void()> timeout) const {
    return std::make_unique<QtClockTimer>(*this, std::move(timeout));
}

const Clock& Clock::system() {
    static const SystemClock clock;
    return clock;
}

} // namespace corkwheel
