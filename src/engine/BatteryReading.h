// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>

namespace corkwheel {

// The machine's batteries taken together, as a system-stats panel shows them.
struct BatteryReading {
    enum class State { Discharging, Charging, Full, NotCharging, Unknown };

    // How full, 0..1.
    double fraction = 0;
    State state = State::Unknown;
    // At the present rate, while discharging or charging and the rate is known.
    std::optional<double> secondsToEmpty;
    std::optional<double> secondsToFull;
    // A mains adapter or a USB charger is plugged in.
    bool onExternalPower = false;

    bool operator==(const BatteryReading&) const = default;
};

} // namespace corkwheel
