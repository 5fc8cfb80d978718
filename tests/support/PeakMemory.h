// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <sys/resource.h>

namespace corkwheel::test {

// The most memory this process has held in RAM at any moment so far, in MiB.
inline long peakResidentMiB() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

} // namespace corkwheel::test
