// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/DiskInfo.h"
#include "engine/VolumeReading.h"

#include <QList>

namespace corkwheel {

// The volumes to show, in display order: internal ones first, otherwise in the order the
// system listed them. A volume without a known capacity, or smaller than one byte, is left
// out.
QList<DiskInfo> diskList(const QList<VolumeReading>& volumes);

} // namespace corkwheel
