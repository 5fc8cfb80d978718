// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/SystemSource.h"
#include "engine/VolumeReading.h"

#include <QList>

namespace corkwheel {

// The user-visible volumes in the mount table, in its order, each with its label (or its
// mount point when it has none) and whether it is built in; their capacities are left for
// the file systems to answer. Empty when the mount table can't be read.
QList<VolumeReading> readMountedVolumes(const SystemSource& source);

} // namespace corkwheel
