// SPDX-License-Identifier: GPL-3.0-or-later

// CPU time of one full system-stats refresh on this machine: a memory, CPU and volume
// reading plus a network sample, as a system-stats panel takes them on every refresh.
//
//   build/bench/bench_systemstats [iterations]

#include "RefreshTiming.h"

#include "engine/NetworkSource.h"
#include "engine/NetworkStatsSampler.h"
#include "engine/SystemStatsSample.h"
#include "engine/SystemStatsSampler.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>

using namespace corkwheel;
using namespace corkwheel::bench;

namespace {

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

    timeRefreshes(iterations, [&] { (void)refresh(sampler, network); });
    return 0;
}
