// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

namespace corkwheel {

// A single-shot timer that goes off at a time of its Clock's wall clock, made by
// Clock::makeTimer().
class ClockTimer {
public:
    virtual ~ClockTimer() = default;

    // Goes off once the clock reads `dueMs` (milliseconds since the epoch), from the event
    // loop; replaces the time it waited for before.
    virtual void startFor(qint64 dueMs) = 0;
    virtual void stop() = 0;
    virtual bool isActive() const = 0;
};

} // namespace corkwheel
