// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <optional>

namespace corkwheel {

// One fan a system-stats panel shows: its name and speed in revolutions per minute, with
// the most its driver says it turns.
struct FanReading {
    QString label;
    double rpm = 0;
    std::optional<double> maxRpm;

    bool operator==(const FanReading&) const = default;
};

} // namespace corkwheel
