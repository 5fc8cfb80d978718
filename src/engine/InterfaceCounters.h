// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/KernelFiles.h"

#include <QByteArrayView>
#include <QString>

#include <optional>

namespace corkwheel {

// Cumulative bytes an interface has received and sent since it came up (64-bit counters).
struct InterfaceCounters {
    quint64 rx = 0;
    quint64 tx = 0;

    bool operator==(const InterfaceCounters&) const = default;
};

// From /sys/class/net/<interface>/statistics; nothing when the interface is gone or either
// counter is unreadable.
std::optional<InterfaceCounters> readInterfaceCounters(const KernelFiles& files,
                                                       const QString& interfaceName);

// A counter file: one decimal number and a newline.
std::optional<quint64> parseByteCounter(QByteArrayView text);

} // namespace corkwheel
