// SPDX-License-Identifier: GPL-3.0-or-later

#include "FuzzInput.h"
#include "engine/InterfaceDisplayInfo.h"
#include "support/FakeNetworkSource.h"

using namespace corkwheel;

// Any text as both the uevent and the type file of an interface with a device behind it:
// it shows as Wi-Fi exactly when the uevent says so.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArrayView text = fuzz::inputText(data, size);
    const bool wireless = ueventSaysWireless(text);
    test::FakeNetworkSource network;
    network.setFile(QStringLiteral("/sys/class/net/eth0/uevent"), text.toByteArray());
    network.setFile(QStringLiteral("/sys/class/net/eth0/type"), text.toByteArray());
    network.setDirectory(QStringLiteral("/sys/class/net/eth0/device"));
    const InterfaceDisplayInfo info = readInterfaceDisplayInfo(network, QStringLiteral("eth0"));
    fuzz::require((info.kind == NetworkInterfaceKind::Wifi) == wireless);
    return 0;
}
