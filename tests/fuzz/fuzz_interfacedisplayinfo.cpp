// SPDX-License-Identifier: GPL-3.0-or-later

#include "FuzzInput.h"
#include "engine/InterfaceDisplayInfo.h"
#include "support/FakeNetworkSource.h"

#include <algorithm>

using namespace corkwheel;

// Any text as both the uevent and the type file of an interface with a device behind it. It
// is Wi-Fi exactly when one of its lines, white space at the ends aside, is DEVTYPE=wlan;
// otherwise Ethernet exactly when the whole text, white space aside, is the hardware type 1.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArrayView text = fuzz::inputText(data, size);
    const QList<QByteArrayView> lines = fuzz::piecesBetween(text, '\n');
    const bool wlan = std::any_of(lines.cbegin(), lines.cend(), [](QByteArrayView line) {
        return fuzz::withoutBlankEnds(line) == "DEVTYPE=wlan";
    });
    fuzz::require(ueventSaysWireless(text) == wlan);
    // Whatever comes before it, the line of its own says so.
    fuzz::require(ueventSaysWireless(text.toByteArray() + "\nDEVTYPE=wlan\n"));

    test::FakeNetworkSource network;
    network.setFile(QStringLiteral("/sys/class/net/eth0/uevent"), text.toByteArray());
    network.setFile(QStringLiteral("/sys/class/net/eth0/type"), text.toByteArray());
    network.setDirectory(QStringLiteral("/sys/class/net/eth0/device"));
    const InterfaceDisplayInfo expected =
        wlan ? InterfaceDisplayInfo{QStringLiteral("Wi-Fi"), NetworkInterfaceKind::Wifi}
        : fuzz::withoutBlankEnds(text) == "1"
            ? InterfaceDisplayInfo{QStringLiteral("Ethernet"), NetworkInterfaceKind::Ethernet}
            : InterfaceDisplayInfo{QStringLiteral("eth0"), NetworkInterfaceKind::Other};
    fuzz::require(readInterfaceDisplayInfo(network, QStringLiteral("eth0")) == expected);
    return 0;
}
