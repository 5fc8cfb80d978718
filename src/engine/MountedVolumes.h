#pragma once

#include "engine/SystemSource.h"
#include "engine/VolumeReading.h"

#include <QList>

namespace corkwheel {

// The user-visible volumes in the mount table, in its order, each with its label (or its
// mount point when it has none), whether it is built in, and its capacity. Empty when the
// mount table can't be read.
QList<VolumeReading> readMountedVolumes(const SystemSource& source);

// The same volumes with the capacity each has now.
QList<VolumeReading> withCurrentCapacities(const SystemSource& source,
                                           QList<VolumeReading> volumes);

} // namespace corkwheel
