// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/RouteTable.h"

#include <QByteArrayList>

namespace corkwheel {

namespace {

enum Column { Iface, Destination, Gateway, Flags, RefCnt, Use, Metric, Mask, ColumnCount };

struct DefaultRoute {
    QString interfaceName;
    quint64 metric = 0;
};

std::optional<DefaultRoute> parseDefaultRoute(const QByteArray& line) {
    const QByteArrayList fields = line.simplified().split(' ');
    if (fields.size() < ColumnCount || fields[Destination] != "00000000" ||
        fields[Mask] != "00000000")
        return std::nullopt;
    bool ok = false;
    const quint64 metric = fields[Metric].toULongLong(&ok);
    if (!ok)
        return std::nullopt;
    return DefaultRoute{QString::fromUtf8(fields[Iface]), metric};
}

} // namespace

std::optional<QString> defaultRouteInterface(QByteArrayView routeTable) {
    QByteArrayList lines = routeTable.toByteArray().split('\n');
    if (!lines.isEmpty())
        lines.removeFirst(); // the column headings
    std::optional<DefaultRoute> best;
    for (const QByteArray& line : lines) {
        const auto route = parseDefaultRoute(line);
        if (route && (!best || route->metric < best->metric))
            best = route;
    }
    if (!best)
        return std::nullopt;
    return best->interfaceName;
}

} // namespace corkwheel
