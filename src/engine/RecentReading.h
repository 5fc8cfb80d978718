// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>

namespace corkwheel {

// The last reading of a figure that every system-statistics panel shares, and when it was
// taken. Panels that refresh in the same wake-up (whole-second intervals share the wall
// clock's seconds) ask one after another within a few milliseconds; measured again, a change
// over that sliver would read as no load at all, so they are all handed the one reading.
// Asked for later than that, by a panel of its own schedule, the figure is measured again.
template <typename Reading> class RecentReading {
public:
    // Readings asked for less than this many seconds apart are one reading.
    static constexpr double kWindow = 0.04;

    // The reading kept at `now` (monotonic seconds), if it was taken within the window.
    std::optional<Reading> at(double now) const {
        if (m_reading && now - m_takenAt < kWindow && now >= m_takenAt)
            return m_reading;
        return std::nullopt;
    }

    void keep(const Reading& reading, double takenAt) {
        m_reading = reading;
        m_takenAt = takenAt;
    }

private:
    std::optional<Reading> m_reading;
    double m_takenAt = 0;
};

} // namespace corkwheel
