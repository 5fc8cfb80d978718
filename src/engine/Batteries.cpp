// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/Batteries.h"

#include "engine/SysfsValue.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace corkwheel::Batteries {

namespace {

constexpr double kSecondsPerHour = 3600;

bool isMachineBattery(const PowerSupply& supply) {
    return supply.type == u"Battery" && supply.scope != u"Device" &&
           supply.present.value_or(1) != 0;
}

// Mains adapters and USB chargers ("USB", "USB_C", "USB_PD", …).
bool isCharger(const PowerSupply& supply) {
    return (supply.type == u"Mains" || supply.type.startsWith(u"USB")) &&
           supply.online.value_or(0) > 0;
}

// What a battery holds and the rate it changes at, in one unit for all of them: energy
// where every battery reports energy, charge where every one reports charge.
struct Amounts {
    double now = 0;
    double full = 0;
    double rate = 0;
};

std::optional<Amounts> sum(const QList<const PowerSupply*>& batteries,
                           std::optional<qint64> PowerSupply::*now,
                           std::optional<qint64> PowerSupply::*full,
                           std::optional<qint64> PowerSupply::*rate) {
    Amounts amounts;
    for (const PowerSupply* battery : batteries) {
        const auto& held = battery->*now;
        const auto& capacity = battery->*full;
        if (!held || !capacity || *held < 0 || *capacity <= 0)
            return std::nullopt;
        amounts.now += double(*held);
        amounts.full += double(*capacity);
        // Some drivers give the discharge rate a minus sign; the state says the direction.
        if (const auto& r = battery->*rate)
            amounts.rate += std::fabs(double(*r));
    }
    return amounts;
}

BatteryReading::State stateOf(const QList<const PowerSupply*>& batteries) {
    const auto any = [&batteries](QStringView status) {
        return std::any_of(batteries.cbegin(), batteries.cend(),
                           [status](const PowerSupply* b) { return b->status == status; });
    };
    // With two batteries one is often idle while the other works: the one at work counts.
    if (any(u"Charging"))
        return BatteryReading::State::Charging;
    if (any(u"Discharging"))
        return BatteryReading::State::Discharging;
    if (std::all_of(batteries.cbegin(), batteries.cend(),
                    [](const PowerSupply* b) { return b->status == u"Full"; }))
        return BatteryReading::State::Full;
    if (any(u"Not charging") || any(u"Full"))
        return BatteryReading::State::NotCharging;
    return BatteryReading::State::Unknown;
}

double percentFraction(const QList<const PowerSupply*>& batteries) {
    double total = 0;
    int counted = 0;
    for (const PowerSupply* battery : batteries) {
        if (battery->capacity) {
            total += double(*battery->capacity);
            ++counted;
        }
    }
    return counted > 0 ? total / counted / 100.0 : 0.0;
}

std::optional<qint64> readInteger(const KernelFiles& files, const QString& folder,
                                  const QStringList& names, const QString& name) {
    if (!names.contains(name))
        return std::nullopt;
    const auto text = files.readFile(folder + u'/' + name);
    return text ? parseSysfsInteger(*text) : std::nullopt;
}

QString readText(const KernelFiles& files, const QString& folder, const QStringList& names,
                 const QString& name) {
    if (!names.contains(name))
        return {};
    const auto text = files.readFile(folder + u'/' + name);
    return text ? parseSysfsText(*text) : QString();
}

} // namespace

std::optional<BatteryReading> fromSupplies(const QList<PowerSupply>& supplies) {
    QList<const PowerSupply*> batteries;
    bool charger = false;
    for (const PowerSupply& supply : supplies) {
        if (isMachineBattery(supply))
            batteries.append(&supply);
        charger = charger || isCharger(supply);
    }
    if (batteries.isEmpty())
        return std::nullopt;

    BatteryReading reading;
    reading.state = stateOf(batteries);
    reading.onExternalPower = charger;
    auto amounts =
        sum(batteries, &PowerSupply::energyNow, &PowerSupply::energyFull, &PowerSupply::powerNow);
    if (!amounts)
        amounts = sum(batteries, &PowerSupply::chargeNow, &PowerSupply::chargeFull,
                      &PowerSupply::currentNow);
    reading.fraction = amounts ? amounts->now / amounts->full : percentFraction(batteries);
    reading.fraction =
        std::isfinite(reading.fraction) ? std::clamp(reading.fraction, 0.0, 1.0) : 0.0;
    if (amounts && amounts->rate > 0) {
        if (reading.state == BatteryReading::State::Discharging)
            reading.secondsToEmpty = amounts->now / amounts->rate * kSecondsPerHour;
        else if (reading.state == BatteryReading::State::Charging)
            reading.secondsToFull =
                std::max(amounts->full - amounts->now, 0.0) / amounts->rate * kSecondsPerHour;
    }
    return reading;
}

QList<PowerSupply> readSupplies(const KernelFiles& files) {
    const QString root = QStringLiteral("/sys/class/power_supply");
    QList<PowerSupply> supplies;
    for (const QString& entry : files.entryNames(root)) {
        const QString folder = root + u'/' + entry;
        const QStringList names = files.entryNames(folder);
        PowerSupply supply;
        supply.name = entry;
        supply.type = readText(files, folder, names, QStringLiteral("type"));
        supply.scope = readText(files, folder, names, QStringLiteral("scope"));
        supply.present = readInteger(files, folder, names, QStringLiteral("present"));
        supply.online = readInteger(files, folder, names, QStringLiteral("online"));
        // Only a battery's figures are read: a charger has none, and each read of a
        // battery's may wait on the embedded controller.
        if (supply.type == u"Battery") {
            supply.status = readText(files, folder, names, QStringLiteral("status"));
            supply.capacity = readInteger(files, folder, names, QStringLiteral("capacity"));
            supply.energyNow = readInteger(files, folder, names, QStringLiteral("energy_now"));
            supply.energyFull = readInteger(files, folder, names, QStringLiteral("energy_full"));
            supply.powerNow = readInteger(files, folder, names, QStringLiteral("power_now"));
            supply.chargeNow = readInteger(files, folder, names, QStringLiteral("charge_now"));
            supply.chargeFull = readInteger(files, folder, names, QStringLiteral("charge_full"));
            supply.currentNow = readInteger(files, folder, names, QStringLiteral("current_now"));
        }
        supplies.append(supply);
    }
    return supplies;
}

std::optional<BatteryReading> read(const KernelFiles& files) {
    return fromSupplies(readSupplies(files));
}

} // namespace corkwheel::Batteries
