// SPDX-License-Identifier: GPL-3.0-or-later

#include "FuzzInput.h"
#include "engine/InterfaceCounters.h"
#include "support/FakeNetworkSource.h"

using namespace corkwheel;

// Any text as the received-bytes counter of an interface whose sent-bytes counter is 1200.
// A counter is decimal digits that fit 64 bits, with white space around them and nothing
// else; its value is worked out here digit by digit.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArrayView text = fuzz::inputText(data, size);
    const std::optional<quint64> expected = fuzz::plainDecimal(fuzz::withoutBlankEnds(text));
    fuzz::require(parseByteCounter(text) == expected);

    test::FakeNetworkSource network;
    network.setFile(QStringLiteral("/sys/class/net/eth0/statistics/rx_bytes"), text.toByteArray());
    network.setFile(QStringLiteral("/sys/class/net/eth0/statistics/tx_bytes"), "1200\n");
    const auto counters = readInterfaceCounters(network, QStringLiteral("eth0"));
    fuzz::require(counters.has_value() == expected.has_value());
    if (counters)
        fuzz::require(counters->rx == *expected && counters->tx == 1200);
    return 0;
}
