// SPDX-License-Identifier: GPL-3.0-or-later

// CPU time of one full system-stats refresh on this machine: a memory, CPU and volume
// reading plus a network sample, as a system-stats panel takes them on every refresh.
//
//   build/bench/bench_systemstats [iterations]

#include "engine/NetworkSource.h"
#include "engine/NetworkStatsSampler.h"
#include "engine/SystemStatsSample.h"
#include "engine/SystemStatsSampler.h"
#include "model/Clock.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <numeric>
#include <optional>
#include <vector>

using namespace corkwheel;

namespace {

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

double processCpuMicros() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e6 + double(now.tv_nsec) / 1e3;
}

double wallMicros() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return double(now.tv_sec) * 1e6 + double(now.tv_nsec) / 1e3;
}

// The volumes' capacities are asked on other threads; a refresh ends once they answered.
QList<DiskInfo> sampleDisks(SystemStatsSampler& sampler) {
    std::optional<QList<DiskInfo>> disks;
    QEventLoop loop;
    sampler.sampleDisks(&loop, [&](const QList<DiskInfo>& ready) {
        disks = ready;
        loop.quit();
    });
    if (!disks)
        loop.exec();
    return disks.value_or(QList<DiskInfo>{});
}

// What the runner does on each refresh of a system-stats panel.
SystemStatsSample refresh(SystemStatsSampler& sampler, NetworkStatsSampler& network) {
    const MemoryReading memory = sampler.sampleMemory();
    const double cpu = sampler.sampleCPU();
    SystemStatsSample sample{cpu, memory.usedFraction, memory.usedGB, memory.totalGB,
                             sampleDisks(sampler)};
    (void)network.sample();
    return sample;
}

void report(const char* label, std::vector<double> micros) {
    std::sort(micros.begin(), micros.end());
    const double mean = std::accumulate(micros.begin(), micros.end(), 0.0) / double(micros.size());
    std::printf("%-22s median %8.1f us   mean %8.1f us   p99 %8.1f us   max %8.1f us\n", label,
                micros[micros.size() / 2], mean, micros[micros.size() * 99 / 100], micros.back());
}

} // namespace

int main(int argc, char* argv[]) {
    QCoreApplication app(argc, argv);
    const int iterations = argc > 1 ? std::max(1, std::atoi(argv[1])) : 1000;

    const SecondPerReadingClock clock;
    SystemStatsSampler sampler(SystemSource::real(), clock);
    NetworkStatsSampler network(NetworkSource::real(), clock);
    const SystemStatsSample first =
        refresh(sampler, network); // warm-up: first-use set-up is not measured
    std::printf("%d volume(s), %.1f GB memory; %d refreshes\n", int(first.disks.size()),
                first.memoryTotalGB, iterations);

    std::vector<double> cpu;
    std::vector<double> wall;
    cpu.reserve(size_t(iterations));
    wall.reserve(size_t(iterations));
    for (int i = 0; i < iterations; ++i) {
        const double cpuStart = processCpuMicros();
        const double wallStart = wallMicros();
        (void)refresh(sampler, network);
        cpu.push_back(processCpuMicros() - cpuStart);
        wall.push_back(wallMicros() - wallStart);
    }
    report("refresh, CPU time", cpu);
    report("refresh, wall time", wall);
    return 0;
}
