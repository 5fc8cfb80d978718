// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>

namespace corkwheel {

// The interface that carries the default IPv4 route in /proc/net/route: the route with
// destination and mask 0.0.0.0 and the lowest metric (the first of equals). Nothing when
// there is no default route.
std::optional<QString> defaultRouteInterface(QByteArrayView routeTable);

} // namespace corkwheel
