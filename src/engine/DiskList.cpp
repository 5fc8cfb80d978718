// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/DiskList.h"

#include <algorithm>

namespace corkwheel {

namespace {

constexpr double kBytesPerGB = 1024.0 * 1024.0 * 1024.0;

DiskInfo diskInfo(const VolumeReading& volume) {
    const auto total = double(volume.capacity->totalBytes);
    const auto available = double(volume.capacity->availableBytes);
    // A file system may report more available than total (some network shares do); that
    // reads as empty, never as a negative use.
    const double used = std::clamp((total - available) / total, 0.0, 1.0);
    return DiskInfo{volume.mountPoint,       volume.name,        volume.isInternal, used,
                    available / kBytesPerGB, total / kBytesPerGB};
}

} // namespace

QList<DiskInfo> diskList(const QList<VolumeReading>& volumes) {
    QList<DiskInfo> disks;
    for (const VolumeReading& volume : volumes) {
        if (volume.capacity && volume.capacity->totalBytes >= 1)
            disks.append(diskInfo(volume));
    }
    std::stable_sort(disks.begin(), disks.end(), [](const DiskInfo& a, const DiskInfo& b) {
        return a.isInternal && !b.isInternal;
    });
    return disks;
}

} // namespace corkwheel
