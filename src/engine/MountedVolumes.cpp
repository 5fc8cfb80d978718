// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/MountedVolumes.h"

#include "engine/BlockDevice.h"
#include "engine/DiskLabels.h"
#include "engine/MountEntry.h"
#include "engine/UserVisibleMounts.h"

namespace corkwheel {

namespace {

VolumeReading networkVolume(const MountEntry& mount) {
    // A share lives on another machine, so it is never built in.
    return VolumeReading{mount.mountPoint, mount.mountPoint, false, std::nullopt};
}

VolumeReading diskVolume(const SystemSource& source, const MountEntry& mount,
                         const QHash<QString, QString>& labels) {
    // "/dev/mapper/…" and "/dev/disk/by-…" names are links to the kernel's device node.
    const QString resolved = source.canonicalPath(mount.source);
    const QString device = resolved.isEmpty() ? mount.source : resolved;
    const QString deviceName = device.mid(device.lastIndexOf(u'/') + 1);
    return VolumeReading{mount.mountPoint, labels.value(device, mount.mountPoint),
                         isInternalBlockDevice(source, deviceName), std::nullopt};
}

} // namespace

QList<VolumeReading> readMountedVolumes(const SystemSource& source) {
    const auto table = source.readFile(QStringLiteral("/proc/self/mountinfo"));
    if (!table)
        return {};
    const QList<MountEntry> mounts = userVisibleMounts(parseMountInfo(*table));
    if (mounts.isEmpty())
        return {};
    const QHash<QString, QString> labels = diskLabelsByDevice(source);
    QList<VolumeReading> volumes;
    for (const MountEntry& mount : mounts) {
        volumes.append(isNetworkFileSystem(mount.fileSystemType)
                           ? networkVolume(mount)
                           : diskVolume(source, mount, labels));
    }
    return volumes;
}

} // namespace corkwheel
