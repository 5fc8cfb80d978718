// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/BlockDevice.h"

namespace corkwheel {

namespace {

// The sysfs directory of the whole disk: a partition's directory sits inside its disk's.
QString diskDevicePath(const KernelFiles& files, const QString& devicePath) {
    if (!files.exists(devicePath + QStringLiteral("/partition")))
        return devicePath;
    return devicePath.left(devicePath.lastIndexOf(u'/'));
}

} // namespace

bool isInternalBlockDevice(const KernelFiles& files, const QString& deviceName) {
    const QString devicePath =
        files.canonicalPath(QStringLiteral("/sys/class/block/") + deviceName);
    if (devicePath.isEmpty())
        return true;
    const QString diskPath = diskDevicePath(files, devicePath);
    return isInternalDisk(files.readFile(diskPath + QStringLiteral("/removable")), diskPath);
}

bool isInternalDisk(const std::optional<QByteArray>& removable, const QString& diskDevicePath) {
    if (removable && removable->trimmed() == "1")
        return false;
    return !diskDevicePath.contains(u"/usb");
}

} // namespace corkwheel
