// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/HwmonChannel.h"

#include <QList>
#include <QString>

namespace corkwheel {

// One directory of /sys/class/hwmon: the driver's name ("coretemp", "amdgpu", "nvme") and
// its temperature and fan inputs, in the order of their numbers.
struct HwmonChip {
    QString name;
    QList<HwmonChannel> temperatures;
    QList<HwmonChannel> fans;

    bool operator==(const HwmonChip&) const = default;
};

} // namespace corkwheel
