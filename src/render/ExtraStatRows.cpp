// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/ExtraStatRows.h"

#include "render/StatWarning.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace corkwheel::ExtraStatRows {

namespace {

// The rows' texts, in a translation context of their own.
struct Texts {
    Q_DECLARE_TR_FUNCTIONS(corkwheel::ExtraStatRows)
};

const QString kThermometer = QStringLiteral("thermometer");

// A row whose figure is not there: not read yet, or not readable.
StatRow withoutFigure(const QString& label, const QString& symbol, const QString& detail) {
    StatRow row{label, symbol, 0, detail};
    row.hasBar = false;
    return row;
}

QString notReadYet() {
    return QStringLiteral(u"\u2026");
}

// Within 0..1 whatever a reading held, and 0 for what is not a number.
double share(double value) {
    return std::isfinite(value) ? std::clamp(value, 0.0, 1.0) : 0.0;
}

void appendCores(QList<StatRow>& rows, const SystemStatsSample& sample) {
    if (!sample.rowsRead.cores)
        rows.append(withoutFigure(Texts::tr("Cores"), QStringLiteral("cpu"), notReadYet()));
    else if (sample.coreUsages.isEmpty())
        rows.append(
            withoutFigure(Texts::tr("Cores"), QStringLiteral("cpu"), Texts::tr("unavailable")));
    else
        rows.append(StatRow::cores(sample.coreUsages));
}

void appendLoad(QList<StatRow>& rows, const SystemStatsSample& sample) {
    const QString label = Texts::tr("Load");
    const QString symbol = QStringLiteral("gauge.with.dots.needle.50percent");
    if (!sample.rowsRead.load || !sample.load) {
        rows.append(withoutFigure(label, symbol,
                                  sample.rowsRead.load ? Texts::tr("unavailable") : notReadYet()));
        return;
    }
    // Full when every online CPU had a task, on average, over the last minute.
    const double cpus = std::max(sample.onlineCpus, 1);
    rows.append(StatRow{label, symbol, share(sample.load->one / cpus), loadDetail(*sample.load)});
}

void appendSwap(QList<StatRow>& rows, const SystemStatsSample& sample,
                const StatsWarnings& warnings) {
    const QString label = Texts::tr("Swap");
    const QString symbol = QStringLiteral("memorychip");
    if (!sample.rowsRead.swap || !sample.swap) {
        rows.append(withoutFigure(label, symbol,
                                  sample.rowsRead.swap ? Texts::tr("unavailable") : notReadYet()));
        return;
    }
    if (sample.swap->totalGB <= 0) {
        rows.append(withoutFigure(label, symbol, Texts::tr("none")));
        return;
    }
    StatRow row{label, symbol, sample.swap->usedFraction,
                StatRow::memoryDetail(sample.swap->usedGB, sample.swap->totalGB)};
    row.warningColor = StatWarning::above(warnings.swap, sample.swap->usedFraction * 100);
    rows.append(row);
}

void appendTemperatures(QList<StatRow>& rows, const SystemStatsSample& sample,
                        const StatsWarnings& warnings) {
    if (!sample.rowsRead.temperatures || sample.temperatures.isEmpty()) {
        rows.append(
            withoutFigure(Texts::tr("Temperature"), kThermometer,
                          sample.rowsRead.temperatures ? Texts::tr("no sensors") : notReadYet()));
        return;
    }
    for (const TemperatureReading& reading : sample.temperatures) {
        // The bar runs up to where the hardware protects itself.
        const double top = reading.criticalCelsius && *reading.criticalCelsius > 0
                               ? *reading.criticalCelsius
                           : reading.maxCelsius && *reading.maxCelsius > 0 ? *reading.maxCelsius
                                                                           : 100.0;
        StatRow row{reading.label, kThermometer, share(reading.celsius / top),
                    temperatureDetail(reading.celsius)};
        row.warningColor = StatWarning::temperature(warnings, reading);
        rows.append(row);
    }
}

void appendFans(QList<StatRow>& rows, const SystemStatsSample& sample) {
    const QString symbol = QStringLiteral("fan");
    if (!sample.rowsRead.fans || sample.fans.isEmpty()) {
        rows.append(withoutFigure(Texts::tr("Fans"), symbol,
                                  sample.rowsRead.fans ? Texts::tr("none found") : notReadYet()));
        return;
    }
    for (const FanReading& fan : sample.fans) {
        StatRow row{fan.label, symbol, fan.maxRpm ? share(fan.rpm / *fan.maxRpm) : 0.0,
                    fanDetail(fan.rpm)};
        row.hasBar = fan.maxRpm.has_value();
        rows.append(row);
    }
}

void appendBattery(QList<StatRow>& rows, const SystemStatsSample& sample,
                   const StatsWarnings& warnings) {
    if (!sample.battery)
        return;
    StatRow row{Texts::tr("Battery"), QStringLiteral("battery"), sample.battery->fraction,
                batteryDetail(*sample.battery)};
    row.warningColor = StatWarning::below(warnings.battery, sample.battery->fraction * 100);
    rows.append(row);
}

} // namespace

QList<StatRow> rows(const SystemStatsSample& sample, const SystemStatsOptions& options) {
    const StatsRows& asked = options.rows;
    QList<StatRow> rows;
    if (asked.cores)
        appendCores(rows, sample);
    if (asked.load)
        appendLoad(rows, sample);
    if (asked.swap)
        appendSwap(rows, sample, options.warnings);
    if (asked.temperatures)
        appendTemperatures(rows, sample, options.warnings);
    if (asked.fans)
        appendFans(rows, sample);
    if (asked.battery)
        appendBattery(rows, sample, options.warnings);
    return rows;
}

QString temperatureDetail(double celsius) {
    const double shown = std::isfinite(celsius) ? std::clamp(celsius, -1e6, 1e6) : 0.0;
    return QString::number(std::lround(shown)) + QStringLiteral(u" \u00B0C");
}

QString fanDetail(double rpm) {
    const double shown = std::isfinite(rpm) ? std::clamp(rpm, 0.0, 1e9) : 0.0;
    return QString::number(std::llround(shown)) + u' ' + Texts::tr("RPM");
}

QString loadDetail(const LoadAverage& load) {
    return QString::asprintf("%.2f  %.2f  %.2f", std::min(load.one, 1e9), std::min(load.five, 1e9),
                             std::min(load.fifteen, 1e9));
}

QString duration(double seconds) {
    const qint64 minutes =
        std::isfinite(seconds) ? std::llround(std::clamp(seconds, 0.0, 1e9) / 60) : 0;
    return QString::asprintf("%lld:%02lld", minutes / 60, minutes % 60);
}

QString batteryDetail(const BatteryReading& battery) {
    const QString percent =
        QString::number(std::lround(share(battery.fraction) * 100)) + QStringLiteral("%");
    const QString dot = QStringLiteral(u" \u00B7 ");
    using State = BatteryReading::State;
    if (battery.state == State::Discharging && battery.secondsToEmpty)
        return percent + dot + Texts::tr("%1 left").arg(duration(*battery.secondsToEmpty));
    if (battery.state == State::Charging && battery.secondsToFull)
        return percent + dot + Texts::tr("%1 to full").arg(duration(*battery.secondsToFull));
    if (battery.state == State::Charging)
        return percent + dot + Texts::tr("charging");
    if (battery.state == State::Full)
        return percent + dot + Texts::tr("full");
    if (battery.onExternalPower)
        return percent + dot + Texts::tr("on AC");
    return percent;
}

} // namespace corkwheel::ExtraStatRows
