// SPDX-License-Identifier: GPL-3.0-or-later

#include "FuzzInput.h"
#include "engine/RouteTable.h"

using namespace corkwheel;

// Any text as /proc/net/route. A default route always names an interface.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto interfaceName = defaultRouteInterface(fuzz::inputText(data, size));
    if (interfaceName)
        fuzz::require(!interfaceName->isEmpty());
    return 0;
}
