// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/TemperatureReading.h"
#include "model/StatsWarning.h"
#include "model/StatsWarnings.h"

#include <QColor>

namespace corkwheel::StatWarning {

// The colour a row takes at `value` (a percentage, or degrees Celsius): the warning's while
// it is on and the value is past its threshold, above it or, for `below`, under it; an
// invalid colour otherwise. A value that is not a number never warns.
QColor above(const StatsWarning& warning, double value);
QColor below(const StatsWarning& warning, double value);

// A temperature's threshold: its sensor's own maximum where the warnings ask for that and
// the sensor states one, the warning's threshold otherwise.
double temperatureThreshold(const StatsWarnings& warnings, const TemperatureReading& reading);
QColor temperature(const StatsWarnings& warnings, const TemperatureReading& reading);

} // namespace corkwheel::StatWarning
