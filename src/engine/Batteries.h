// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/BatteryReading.h"
#include "engine/KernelFiles.h"
#include "engine/PowerSupply.h"

#include <QList>

#include <optional>

namespace corkwheel::Batteries {

// The machine's batteries summed: how full from the energy (or charge) they hold together,
// the time to empty or to full from their combined rate. A battery that reports only its
// percentage counts by that. Batteries of devices (a mouse, a keyboard) and absent ones are
// left out; nothing at all without a battery.
std::optional<BatteryReading> fromSupplies(const QList<PowerSupply>& supplies);

// Every directory of /sys/class/power_supply. A battery's figures may come from the
// embedded controller, which answers slowly: off the main thread.
QList<PowerSupply> readSupplies(const KernelFiles& files);

std::optional<BatteryReading> read(const KernelFiles& files);

} // namespace corkwheel::Batteries
