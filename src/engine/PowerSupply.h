// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <optional>

namespace corkwheel {

// One directory of /sys/class/power_supply, as far as it could be read, in the kernel's
// units: percent, µWh and µW, or µAh and µA, depending on what the driver counts in.
struct PowerSupply {
    QString name;
    // "Battery", "Mains", "USB", …
    QString type;
    // "Device" for the battery of a mouse or a keyboard; empty or "System" for the machine's.
    QString scope;
    std::optional<qint64> present;
    std::optional<qint64> online;
    // "Charging", "Discharging", "Full", "Not charging", "Unknown".
    QString status;
    std::optional<qint64> capacity;
    std::optional<qint64> energyNow;
    std::optional<qint64> energyFull;
    std::optional<qint64> powerNow;
    std::optional<qint64> chargeNow;
    std::optional<qint64> chargeFull;
    std::optional<qint64> currentNow;

    bool operator==(const PowerSupply&) const = default;
};

} // namespace corkwheel
