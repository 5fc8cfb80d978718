// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace corkwheel {

// What sort of link the primary network connection runs over.
enum class NetworkInterfaceKind { Wifi, Ethernet, Other };

// One throughput reading of the primary network connection.
struct NetworkSample {
    // "Wi-Fi", "Ethernet", the interface's own name (such as "wg0"), or "No Network".
    QString displayName;
    NetworkInterfaceKind kind = NetworkInterfaceKind::Other;
    double downBytesPerSec = 0;
    double upBytesPerSec = 0;

    bool operator==(const NetworkSample&) const = default;
};

} // namespace corkwheel
