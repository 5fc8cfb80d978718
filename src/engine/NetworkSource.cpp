// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/NetworkSource.h"

#include <ifaddrs.h>
#include <memory>

namespace corkwheel {

namespace {

InterfaceAddress interfaceAddress(const ifaddrs& entry) {
    return InterfaceAddress{QString::fromLocal8Bit(entry.ifa_name), entry.ifa_flags,
                            entry.ifa_addr ? int(entry.ifa_addr->sa_family) : -1};
}

class RealNetworkSource final : public MachineKernelFiles<NetworkSource> {
public:
    QList<InterfaceAddress> interfaceAddresses() const override {
        ifaddrs* first = nullptr;
        if (::getifaddrs(&first) != 0)
            return {};
        const std::unique_ptr<ifaddrs, void (*)(ifaddrs*)> list(first, &::freeifaddrs);
        QList<InterfaceAddress> addresses;
        for (const ifaddrs* entry = first; entry != nullptr; entry = entry->ifa_next)
            addresses.append(interfaceAddress(*entry));
        return addresses;
    }
};

} // namespace

const NetworkSource& NetworkSource::real() {
    static const RealNetworkSource source;
    return source;
}

} // namespace corkwheel
