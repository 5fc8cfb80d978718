// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/KernelFiles.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace corkwheel {

// Whether the disk holding a block device ("sda1", "nvme0n1p2", "dm-0") is built into the
// machine. A partition is judged by its parent disk. When sysfs says nothing, the device
// counts as internal.
bool isInternalBlockDevice(const KernelFiles& files, const QString& deviceName);

// A disk is external when the kernel marks it removable (card readers, optical drives) or
// when its device path runs through a USB controller (USB sticks and enclosures, which
// the kernel often reports as fixed).
bool isInternalDisk(const std::optional<QByteArray>& removable, const QString& diskDevicePath);

} // namespace corkwheel
