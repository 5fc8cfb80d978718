// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/InterfaceDisplayInfo.h"

#include <QByteArrayList>
#include <QCoreApplication>

#include <algorithm>

namespace corkwheel {

namespace {

// The hardware type of plain Ethernet in /sys/class/net/<interface>/type (ARPHRD_ETHER).
constexpr QByteArrayView kEthernetType = "1";

bool isWireless(const KernelFiles& files, const QString& directory) {
    if (files.exists(directory + QStringLiteral("/wireless")))
        return true;
    const auto uevent = files.readFile(directory + QStringLiteral("/uevent"));
    return uevent && ueventSaysWireless(*uevent);
}

// Virtual interfaces (bridges, veth, tun) also say they are Ethernet; only a real adapter
// has a device behind it.
bool isPhysicalEthernet(const KernelFiles& files, const QString& directory) {
    const auto type = files.readFile(directory + QStringLiteral("/type"));
    return type && type->trimmed() == kEthernetType &&
           files.exists(directory + QStringLiteral("/device"));
}

} // namespace

InterfaceDisplayInfo readInterfaceDisplayInfo(const KernelFiles& files,
                                              const QString& interfaceName) {
    const QString directory = QStringLiteral("/sys/class/net/") + interfaceName;
    if (isWireless(files, directory))
        return {QCoreApplication::translate("corkwheel::InterfaceDisplayInfo", "Wi-Fi"),
                NetworkInterfaceKind::Wifi};
    if (isPhysicalEthernet(files, directory))
        return {QCoreApplication::translate("corkwheel::InterfaceDisplayInfo", "Ethernet"),
                NetworkInterfaceKind::Ethernet};
    return {interfaceName, NetworkInterfaceKind::Other};
}

bool ueventSaysWireless(QByteArrayView uevent) {
    const QByteArrayList lines = uevent.toByteArray().split('\n');
    return std::any_of(lines.cbegin(), lines.cend(),
                       [](const QByteArray& line) { return line.trimmed() == "DEVTYPE=wlan"; });
}

} // namespace corkwheel
