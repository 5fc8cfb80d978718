// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/Clock.h"

#include <QTimeZone>

namespace corkwheel::test {

// A clock that moves only when the test moves it.
class MockClock final : public corkwheel::Clock {
public:
    QDateTime now() const override { return m_now; }
    double monotonicSeconds() const override { return m_monotonic; }

    void setNow(const QDateTime& now) { m_now = now; }
    void advance(double seconds) {
        m_monotonic += seconds;
        m_now = m_now.addMSecs(static_cast<qint64>(seconds * 1000));
    }

private:
    QDateTime m_now = QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5), QTimeZone::utc());
    double m_monotonic = 1000;
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
