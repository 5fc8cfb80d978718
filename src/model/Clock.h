// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>

#include <functional>
#include <memory>

namespace corkwheel {

class ClockTimer;

// Time as Corkwheel sees it. Everything that reads the time takes a Clock, so tests can
// step time by hand instead of sleeping.
class Clock {
public:
    virtual ~Clock() = default;

    // Wall-clock time, for dates shown to the user.
    virtual QDateTime now() const = 0;
    // The same time as milliseconds since the epoch, for timing against the wall clock.
    virtual qint64 nowMSecsSinceEpoch() const { return now().toMSecsSinceEpoch(); }
    // Seconds on a clock that never jumps, for rates and intervals.
    virtual double monotonicSeconds() const = 0;

    // A timer that waits for this clock's wall-clock time and calls `timeout` each time it
    // goes off: a precise QTimer, unless the clock moves by other means than real time.
    virtual std::unique_ptr<ClockTimer> makeTimer(std::function<void()> timeout) const;

    // The real clock of this machine.
    static const Clock& system();
};

} // namespace corkwheel
