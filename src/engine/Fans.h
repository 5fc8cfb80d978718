// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/FanReading.h"
#include "engine/HwmonChip.h"
#include "engine/KernelFiles.h"

#include <QList>

namespace corkwheel::Fans {

// Every fan of the hardware monitoring chips, in the chips' order: named by its driver's
// label where it has one, "GPU Fan" on a graphics card's chip, "Fan 1", "Fan 2", … for the
// rest. A fan header with nothing plugged in reads 0 and has no label, so an unlabelled fan
// at 0 is left out; a labelled one at 0 has stopped and is shown.
QList<FanReading> fromChips(const QList<HwmonChip>& chips);

// The same, read from /sys/class/hwmon: off the main thread.
QList<FanReading> read(const KernelFiles& files);

} // namespace corkwheel::Fans
