// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

namespace corkwheel {

// Size of a mounted file system in bytes, as the file system reports it. `availableBytes`
// is what an ordinary user may still write, which leaves out blocks reserved for root.
struct VolumeCapacity {
    quint64 totalBytes = 0;
    quint64 availableBytes = 0;

    bool operator==(const VolumeCapacity&) const = default;
};

} // namespace corkwheel
