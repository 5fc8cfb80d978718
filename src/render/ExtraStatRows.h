// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/BatteryReading.h"
#include "engine/LoadAverage.h"
#include "engine/SystemStatsSample.h"
#include "model/SystemStatsOptions.h"
#include "render/StatRow.h"

#include <QList>
#include <QString>

namespace corkwheel::ExtraStatRows {

// The rows a system-stats panel shows beyond CPU, memory and disks, in the order of
// StatsRows, as `options` asks for them and `sample` read them, warnings applied. A row
// asked for but not read yet shows "…"; one whose reading failed says so; the battery's
// row is left out on a machine without a battery.
QList<StatRow> rows(const SystemStatsSample& sample, const SystemStatsOptions& options);

// "52 °C".
QString temperatureDetail(double celsius);
// "1250 RPM".
QString fanDetail(double rpm);
// "1.50  1.25  0.75".
QString loadDetail(const LoadAverage& load);
// "57% · 4:00 left", "75% · 0:30 to full", "100% · full", "80% · on AC", "60%".
QString batteryDetail(const BatteryReading& battery);
// Hours and minutes, "4:05".
QString duration(double seconds);

} // namespace corkwheel::ExtraStatRows
