// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/KernelFiles.h"
#include "engine/NetworkSample.h"

#include <QByteArrayView>
#include <QString>

namespace corkwheel {

// How a network interface is named to the user.
struct InterfaceDisplayInfo {
    QString name;
    NetworkInterfaceKind kind = NetworkInterfaceKind::Other;

    bool operator==(const InterfaceDisplayInfo&) const = default;
};

// "Wi-Fi" for a wireless interface, "Ethernet" for a physical Ethernet adapter, otherwise
// the interface's own name (bridges, tunnels, VPNs, virtual Ethernet, ...).
InterfaceDisplayInfo readInterfaceDisplayInfo(const KernelFiles& files,
                                              const QString& interfaceName);

// A wireless interface says DEVTYPE=wlan in its uevent file.
bool ueventSaysWireless(QByteArrayView uevent);

} // namespace corkwheel
