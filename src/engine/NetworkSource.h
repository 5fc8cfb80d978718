// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/InterfaceAddress.h"
#include "engine/KernelFiles.h"

#include <QList>

namespace corkwheel {

// Everything network throughput is read from: the kernel's files (routes, per-interface
// counters and attributes) plus the interface address list.
class NetworkSource : public KernelFiles {
public:
    // Empty when the list can't be read.
    virtual QList<InterfaceAddress> interfaceAddresses() const = 0;

    // This machine.
    static const NetworkSource& real();
};

} // namespace corkwheel
