// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArrayView>

#include <optional>

namespace corkwheel {

// The value of the "Key:   1234 kB" line of /proc/meminfo named `key`, in bytes; nothing
// when the line is missing or its number does not read.
std::optional<double> meminfoBytes(QByteArrayView meminfo, QByteArrayView key);

} // namespace corkwheel
