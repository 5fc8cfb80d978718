// SPDX-License-Identifier: GPL-3.0-or-later

#include "FuzzInput.h"
#include "engine/RouteTable.h"

using namespace corkwheel;

namespace {

// Columns: Iface Destination Gateway Flags RefCnt Use Metric Mask MTU Window IRTT.
constexpr QByteArrayView kHeadings =
    "Iface\tDestination\tGateway\tFlags\tRefCnt\tUse\tMetric\tMask\tMTU\tWindow\tIRTT\n";
constexpr QByteArrayView kAnywhere = "00000000";

// The words of a line, between runs of white space.
QList<QByteArrayView> columns(QByteArrayView line) {
    QList<QByteArrayView> words;
    qsizetype start = -1;
    for (qsizetype i = 0; i <= line.size(); ++i) {
        const bool blank = i == line.size() || fuzz::isBlank(line[i]);
        if (!blank && start < 0) {
            start = i;
        } else if (blank && start >= 0) {
            words.append(line.sliced(start, i - start));
            start = -1;
        }
    }
    return words;
}

// A route to 0.0.0.0 with mask 0.0.0.0.
bool isDefaultRoute(const QList<QByteArrayView>& route) {
    return route.size() >= 8 && route[1] == kAnywhere && route[7] == kAnywhere;
}

QByteArray defaultRoute(const QByteArray& interfaceName, int metric) {
    return interfaceName + "\t00000000\t0101A8C0\t0003\t0\t0\t" + QByteArray::number(metric) +
           "\t00000000\t0\t0\t0\n";
}

// The first word of the text as an interface name, as long as the kernel allows.
QByteArray interfaceNameFrom(QByteArrayView text) {
    const QList<QByteArrayView> words = columns(text.first(std::min<qsizetype>(text.size(), 15)));
    return words.isEmpty() ? QByteArray("wg0") : words.first().toByteArray();
}

} // namespace

// Any text as /proc/net/route. The interface chosen is named by a default route below the
// headings, and there is one whenever such a route has a decimal metric. Put below the
// headings, a default route with metric 0 wins over one with metric 1 before it and over all
// that follow.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArrayView text = fuzz::inputText(data, size);
    const std::optional<QString> chosen = defaultRouteInterface(text);
    bool chosenIsNamed = false;
    bool anyDefault = false;
    for (const QByteArrayView line : fuzz::piecesBetween(text, '\n').mid(1)) {
        const QList<QByteArrayView> route = columns(line);
        if (!isDefaultRoute(route))
            continue;
        anyDefault = anyDefault || fuzz::plainDecimal(route[6]).has_value();
        chosenIsNamed = chosenIsNamed || (chosen && QString::fromUtf8(route[0]) == *chosen);
    }
    fuzz::require(chosen ? chosenIsNamed : !anyDefault);

    const QByteArray name = interfaceNameFrom(text);
    const QByteArray table = kHeadings.toByteArray() + defaultRoute(name + "-slow", 1) +
                             defaultRoute(name, 0) + text.toByteArray();
    fuzz::require(defaultRouteInterface(table) == QString::fromUtf8(name));
    return 0;
}
