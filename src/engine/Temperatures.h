// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/HwmonChip.h"
#include "engine/KernelFiles.h"
#include "engine/TemperatureReading.h"

#include <QList>

namespace corkwheel::Temperatures {

// The temperatures worth a row, from the hardware monitoring chips: the CPU package or die
// ("CPU", from coretemp, k10temp or zenpower; the hottest when there are several sockets),
// each GPU ("GPU", from amdgpu, nouveau or i915) and each NVMe disk ("NVMe"), in that
// order, numbered when there are several of a kind. Chips of other drivers are left out.
QList<TemperatureReading> fromChips(const QList<HwmonChip>& chips);

// The thermal zones of /sys/class/thermal that can be read, for a machine whose hardware
// monitoring shows none of the above: "CPU" for the zones that measure the processor, the
// zone's own type for the others.
QList<TemperatureReading> readThermalZones(const KernelFiles& files);

// What the temperature rows show: the chips' temperatures, or the thermal zones where the
// chips have none. Reads sensors that may answer slowly: off the main thread.
QList<TemperatureReading> read(const KernelFiles& files);

} // namespace corkwheel::Temperatures
