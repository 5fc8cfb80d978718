// SPDX-License-Identifier: GPL-3.0-or-later

// CPU time of one system-stats refresh with every optional row on: memory, CPU, volumes and
// a network sample as bench_systemstats takes them, plus each core's load, the load
// average, swap, the temperatures, the fans and the battery, the last three read on the
// blocking pool's threads as the runner reads them. The CPU time is the whole process's,
// every thread's.
//
//   build/bench/bench_statsrows [iterations] [machine tree]
//
// With a machine tree (tests/data/machines/intel-laptop, say) the sensors and batteries are
// read from there, so that those this machine lacks are read all the same.

#include "RefreshTiming.h"
#include "RootedSystemSource.h"

#include "engine/NetworkSource.h"
#include "engine/NetworkStatsSampler.h"
#include "engine/SystemStatsSample.h"
#include "engine/SystemStatsSampler.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>

using namespace corkwheel;
using namespace corkwheel::bench;

namespace {

// What the runner does on each refresh of a system-stats panel that shows every row: the
// readings off the main thread come back through the event loop, and the refresh ends once
// all of them did.
SystemStatsSample refresh(SystemStatsSampler& sampler, NetworkStatsSampler& network) {
    SystemStatsSample sample;
    const MemoryReading memory = sampler.sampleMemory();
    sample.cpuUsage = sampler.sampleCPU();
    sample.memoryUsedFraction = memory.usedFraction;
    sample.memoryUsedGB = memory.usedGB;
    sample.memoryTotalGB = memory.totalGB;
    sample.coreUsages = sampler.sampleCores();
    sample.load = sampler.sampleLoad();
    sample.onlineCpus = sampler.onlineCpuCount();
    sample.swap = sampler.sampleSwap();

    QEventLoop loop;
    int unanswered = 4;
    const auto answered = [&] {
        if (--unanswered == 0)
            loop.quit();
    };
    sampler.sampleTemperatures(&loop, [&](const auto& readings) {
        sample.temperatures = readings;
        answered();
    });
    sampler.sampleFans(&loop, [&](const auto& readings) {
        sample.fans = readings;
        answered();
    });
    sampler.sampleBattery(&loop, [&](const auto& reading) {
        sample.battery = reading;
        answered();
    });
    sampler.sampleDisks(&loop, [&](const QList<DiskInfo>& disks) {
        sample.disks = disks;
        answered();
    });
    if (unanswered > 0)
        loop.exec();
    (void)network.sample();
    return sample;
}

} // namespace

int main(int argc, char* argv[]) {
    QCoreApplication app(argc, argv);
    const int iterations = argc > 1 ? std::max(1, std::atoi(argv[1])) : 1000;
    std::unique_ptr<bench::RootedSystemSource> tree;
    if (argc > 2)
        tree = std::make_unique<bench::RootedSystemSource>(
            QDir(QString::fromLocal8Bit(argv[2])).absolutePath());
    const SystemSource& source = tree ? *tree : SystemSource::real();

    const SecondPerReadingClock clock;
    SystemStatsSampler sampler(source, clock);
    NetworkStatsSampler network(NetworkSource::real(), clock);
    // Warm-up: first-use set-up is not measured.
    const SystemStatsSample first = refresh(sampler, network);
    std::printf("%s: %d volume(s), %d cores, %d temperature(s), %d fan(s), %s; %d refreshes\n",
                argc > 2 ? argv[2] : "this machine", int(first.disks.size()),
                int(first.coreUsages.size()), int(first.temperatures.size()),
                int(first.fans.size()), first.battery ? "a battery" : "no battery", iterations);

    timeRefreshes(iterations, [&] { (void)refresh(sampler, network); });
    return 0;
}
