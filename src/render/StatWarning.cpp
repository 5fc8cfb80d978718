// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/StatWarning.h"

#include "render/PanelColors.h"

#include <cmath>

namespace corkwheel::StatWarning {

QColor above(const StatsWarning& warning, double value) {
    return warning.isOn && value > warning.threshold ? PanelColors::toQColor(warning.color)
                                                     : QColor();
}

QColor below(const StatsWarning& warning, double value) {
    return warning.isOn && value < warning.threshold ? PanelColors::toQColor(warning.color)
                                                     : QColor();
}

double temperatureThreshold(const StatsWarnings& warnings, const TemperatureReading& reading) {
    // A sensor without a plausible maximum (some report -273 °C or millions) falls back.
    const bool sensorMax = warnings.temperaturesAtSensorMax && reading.maxCelsius &&
                           *reading.maxCelsius > 0 && *reading.maxCelsius < 1000;
    return sensorMax ? *reading.maxCelsius : warnings.temperatures.threshold;
}

QColor temperature(const StatsWarnings& warnings, const TemperatureReading& reading) {
    StatsWarning warning = warnings.temperatures;
    warning.threshold = temperatureThreshold(warnings, reading);
    return above(warning, reading.celsius);
}

} // namespace corkwheel::StatWarning
