// SPDX-License-Identifier: GPL-3.0-or-later

#include "FuzzInput.h"
#include "engine/InterfaceCounters.h"
#include "support/FakeNetworkSource.h"

using namespace corkwheel;

// Any text as both of an interface's byte counter files in /sys/class/net/<interface>/
// statistics: the interface has counters exactly when the text is a counter.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArrayView text = fuzz::inputText(data, size);
    const auto counter = parseByteCounter(text);
    test::FakeNetworkSource network;
    for (const char* name : {"rx_bytes", "tx_bytes"})
        network.setFile(QStringLiteral("/sys/class/net/eth0/statistics/") +
                            QString::fromLatin1(name),
                        text.toByteArray());
    const auto counters = readInterfaceCounters(network, QStringLiteral("eth0"));
    fuzz::require(counters.has_value() == counter.has_value());
    if (counters)
        fuzz::require(counters->rx == *counter && counters->tx == *counter);
    return 0;
}
