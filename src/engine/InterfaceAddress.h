// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace corkwheel {

// One entry of the interface address list (getifaddrs).
struct InterfaceAddress {
    QString interfaceName;
    unsigned int flags = 0;
    // The address family (AF_INET, AF_INET6, AF_PACKET); -1 when the entry has no address.
    int family = -1;

    bool operator==(const InterfaceAddress&) const = default;
};

// The first interface in the list that is up and running, is not the loopback and has an
// IPv4 address: the best guess at the connection in use when there is no default route.
std::optional<QString> firstActiveIPv4Interface(const QList<InterfaceAddress>& addresses);

} // namespace corkwheel
