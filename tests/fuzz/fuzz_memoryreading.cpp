// SPDX-License-Identifier: GPL-3.0-or-later

#include "FuzzInput.h"
#include "engine/MemoryReading.h"

using namespace corkwheel;

// Any text as /proc/meminfo. The bar drawn from it is never negative or overfull.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const MemoryReading reading = memoryReadingFromMeminfo(fuzz::inputText(data, size));
    fuzz::require(reading.usedFraction >= 0 && reading.usedFraction <= 1);
    fuzz::require(reading.usedGB >= 0 && reading.totalGB >= 0);
    return 0;
}
