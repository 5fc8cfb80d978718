// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/HwmonChip.h"
#include "engine/KernelFiles.h"

#include <QList>
#include <QStringList>

namespace corkwheel {

// What of the chips to read: the inputs of a kind that is not asked for are not read at all.
struct HwmonParts {
    bool temperatures = false;
    bool fans = false;
};

// The chips of /sys/class/hwmon in the order of their numbers (hwmon2 before hwmon10).
// Reading a chip's inputs may wake a device or wait on a slow bus, so this belongs off the
// main thread.
QList<HwmonChip> readHwmonChips(const KernelFiles& files, HwmonParts parts);

// The numbers N of the `prefix`N`_input` files among a chip's file names, ascending.
QList<int> hwmonInputNumbers(const QStringList& fileNames, QStringView prefix);

} // namespace corkwheel
