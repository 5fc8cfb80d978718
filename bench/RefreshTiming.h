// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// What the system-stats benchmarks share: a clock that makes every refresh read the machine,
// and the process's CPU time and the wall time of one refresh.

#include "model/Clock.h"

#include <QDateTime>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <numeric>
#include <vector>

namespace corkwheel::bench {

// A clock a second further on each time it is read, so that no refresh is handed the
// reading of the one before (panels refreshing in the same wake-up share one) and every
// refresh reads the machine.
class SecondPerReadingClock final : public Clock {
public:
    QDateTime now() const override { return Clock::system().now(); }
    double monotonicSeconds() const override { return m_seconds += 1; }

private:
    mutable double m_seconds = 0;
};

// The CPU time of the whole process, every thread's, in microseconds.
inline double processCpuMicros() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e6 + double(now.tv_nsec) / 1e3;
}

inline double wallMicros() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return double(now.tv_sec) * 1e6 + double(now.tv_nsec) / 1e3;
}

inline void report(const char* label, std::vector<double> micros) {
    std::sort(micros.begin(), micros.end());
    const double mean = std::accumulate(micros.begin(), micros.end(), 0.0) / double(micros.size());
    std::printf("%-22s median %8.1f us   mean %8.1f us   p99 %8.1f us   max %8.1f us\n", label,
                micros[micros.size() / 2], mean, micros[micros.size() * 99 / 100], micros.back());
}

// Runs `refresh` `iterations` times and prints the CPU and the wall time one run took.
template <typename Refresh> void timeRefreshes(int iterations, Refresh&& refresh) {
    std::vector<double> cpu;
    std::vector<double> wall;
    cpu.reserve(size_t(iterations));
    wall.reserve(size_t(iterations));
    for (int i = 0; i < iterations; ++i) {
        const double cpuStart = processCpuMicros();
        const double wallStart = wallMicros();
        refresh();
        cpu.push_back(processCpuMicros() - cpuStart);
        wall.push_back(wallMicros() - wallStart);
    }
    report("refresh, CPU time", cpu);
    report("refresh, wall time", wall);
}

} // namespace corkwheel::bench
