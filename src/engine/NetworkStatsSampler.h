// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/InterfaceCounters.h"
#include "engine/NetworkSample.h"
#include "engine/NetworkSource.h"
#include "engine/RecentReading.h"
#include "model/Clock.h"

#include <QString>

#include <optional>

namespace corkwheel {

// Measures the throughput of the primary network interface. One instance serves every
// system-stats panel, so each rate covers the time since the previous sample taken for any
// panel, and a sample asked for again within RecentReading's window is the sample already
// taken. Main thread only: the baseline is unguarded.
class NetworkStatsSampler {
public:
    NetworkStatsSampler(const NetworkSource& source, const Clock& clock);
    NetworkStatsSampler(const NetworkStatsSampler&) = delete;
    NetworkStatsSampler& operator=(const NetworkStatsSampler&) = delete;

    // The process-wide instance, reading this machine.
    static NetworkStatsSampler& shared();

    // One measurement. The first on an interface (at start, after a change of interface or
    // after a spell without network) is a baseline with rates 0.
    NetworkSample sample();

private:
    // The shortest time a rate is divided by, in seconds.
    static constexpr double kMinimumInterval = 0.1;

    std::optional<QString> primaryInterfaceName() const;
    NetworkSample measure(double now);
    NetworkSample noNetwork(double now);
    bool hasBaselineFor(const QString& interfaceName) const;
    // Bytes per second from the baseline to `counters`; 0 in a direction whose counter went
    // backwards (interface reset).
    void measureRates(NetworkSample& sample, const InterfaceCounters& counters, double now) const;

    const NetworkSource& m_source;
    const Clock& m_clock;
    std::optional<QString> m_lastInterfaceName;
    std::optional<InterfaceCounters> m_lastCounters;
    std::optional<double> m_lastTime;
    RecentReading<NetworkSample> m_recent;
};

} // namespace corkwheel
