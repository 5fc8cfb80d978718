// SPDX-License-Identifier: GPL-3.0-or-later

#include "FuzzInput.h"
#include "engine/SwapReading.h"

#include <cmath>

using namespace corkwheel;

// Any text as /proc/meminfo. The swap bar drawn from it is never negative or overfull and
// never shows more in use than there is; and whatever follows them, the first SwapTotal and
// SwapFree lines are the ones that count.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArrayView text = fuzz::inputText(data, size);
    if (const auto swap = swapReadingFromMeminfo(text)) {
        fuzz::require(swap->usedFraction >= 0 && swap->usedFraction <= 1);
        fuzz::require(std::isfinite(swap->totalGB) && swap->usedGB >= 0);
        fuzz::require(swap->usedGB <= swap->totalGB);
    }
    const QByteArray led = "SwapTotal: 2048 kB\nSwapFree: 512 kB\n" + text.toByteArray();
    const auto swap = swapReadingFromMeminfo(led);
    fuzz::require(swap.has_value());
    fuzz::require(swap->usedFraction == 0.75);
    fuzz::require(swap->totalGB == 2048.0 / (1024 * 1024));
    return 0;
}
