// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/NetworkSource.h"
#include "support/FakeKernelFiles.h"

namespace corkwheel::test {

// A network made up by the test: files plus the interface address list.
class FakeNetworkSource final : public FakeKernelFiles<corkwheel::NetworkSource> {
public:
    QList<corkwheel::InterfaceAddress> interfaceAddresses() const override { return m_addresses; }

    void setInterfaceAddresses(const QList<corkwheel::InterfaceAddress>& addresses) {
        m_addresses = addresses;
    }

private:
    QList<corkwheel::InterfaceAddress> m_addresses;
};

} // namespace corkwheel::test
