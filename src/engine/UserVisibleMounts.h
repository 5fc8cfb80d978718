// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/MountEntry.h"

#include <QList>

namespace corkwheel {

// The mounts a user thinks of as volumes, in table order: each local disk file system once,
// plus every network share. Kernel, memory and container file systems are left out, and so
// are read-only package images (squashfs) that only clutter the list.
QList<MountEntry> userVisibleMounts(const QList<MountEntry>& mounts);

bool isNetworkFileSystem(const QString& fileSystemType);

} // namespace corkwheel
