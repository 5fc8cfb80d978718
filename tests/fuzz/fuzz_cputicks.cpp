// SPDX-License-Identifier: GPL-3.0-or-later

#include "FuzzInput.h"
#include "engine/CpuTicks.h"

using namespace corkwheel;

// Any text as /proc/stat. Whatever counters it holds, the busy share measured against them
// is a fraction.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto ticks = parseCpuTicks(fuzz::inputText(data, size));
    if (!ticks)
        return 0;
    for (const double share : {cpuBusyShare(CpuTicks{}, *ticks), cpuBusyShare(*ticks, {})})
        fuzz::require(share >= 0 && share <= 1);
    return 0;
}
