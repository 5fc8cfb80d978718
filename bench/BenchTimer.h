// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace corkwheel::bench {

// Runs `work` `rounds` times and prints the median and the fastest wall-clock time of one
// run, in microseconds.
template <typename Work> void measure(const char* label, int rounds, Work&& work) {
    using Clock = std::chrono::steady_clock;
    std::vector<double> micros;
    micros.reserve(static_cast<size_t>(rounds));
    for (int i = 0; i < rounds; ++i) {
        const auto start = Clock::now();
        work();
        micros.push_back(std::chrono::duration<double, std::micro>(Clock::now() - start).count());
    }
    std::sort(micros.begin(), micros.end());
    std::printf("%-44s median %10.2f us   min %10.2f us   (%d runs)\n", label,
                micros[micros.size() / 2], micros.front(), rounds);
}

} // namespace corkwheel::bench
