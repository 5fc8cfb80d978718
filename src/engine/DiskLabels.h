// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/KernelFiles.h"

#include <QHash>
#include <QString>

namespace corkwheel {

// File system labels keyed by the canonical path of their device ("/dev/sdb1"), from the
// links udev keeps in /dev/disk/by-label. Empty when there are none.
QHash<QString, QString> diskLabelsByDevice(const KernelFiles& files);

// udev writes the bytes of a label that are unsafe in a file name as "\xHH".
QString decodeUdevEscapes(const QString& linkName);

} // namespace corkwheel
