// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/InterfaceAddress.h"

#include <net/if.h>
#include <sys/socket.h>

namespace corkwheel {

std::optional<QString> firstActiveIPv4Interface(const QList<InterfaceAddress>& addresses) {
    constexpr unsigned int kMask = IFF_UP | IFF_RUNNING | IFF_LOOPBACK;
    constexpr unsigned int kActive = IFF_UP | IFF_RUNNING;
    for (const InterfaceAddress& address : addresses) {
        if ((address.flags & kMask) == kActive && address.family == AF_INET)
            return address.interfaceName;
    }
    return std::nullopt;
}

} // namespace corkwheel
