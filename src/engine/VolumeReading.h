// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/VolumeCapacity.h"

#include <QString>

#include <optional>

namespace corkwheel {

// What the system says about one user-visible mounted volume, before any judgement on
// whether and how to show it.
struct VolumeReading {
    QString mountPoint;
    QString name;
    bool isInternal = true;
    // Nothing when the file system could not be asked.
    std::optional<VolumeCapacity> capacity;

    bool operator==(const VolumeReading&) const = default;
};

} // namespace corkwheel
