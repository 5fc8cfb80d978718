// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace corkwheel {

// One mounted volume as a system-stats panel shows it. GB figures are in units of 2^30
// bytes.
struct DiskInfo {
    // The mount point; unique among mounted volumes, so it identifies the volume in lists.
    QString id;
    QString name;
    bool isInternal = true;
    double usedFraction = 0;
    double freeGB = 0;
    double totalGB = 0;

    bool operator==(const DiskInfo&) const = default;
};

} // namespace corkwheel
