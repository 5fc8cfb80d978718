// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <optional>

namespace corkwheel {

// One temperature a system-stats panel shows: what it is of ("CPU", "GPU", "NVMe"), in
// degrees Celsius, with the limits its sensor states.
struct TemperatureReading {
    QString label;
    double celsius = 0;
    // Where the sensor's driver says it runs too hot (tempN_max, a thermal zone's "hot" trip).
    std::optional<double> maxCelsius;
    // Where the hardware protects itself (tempN_crit, a thermal zone's "critical" trip).
    std::optional<double> criticalCelsius;

    bool operator==(const TemperatureReading&) const = default;
};

} // namespace corkwheel
