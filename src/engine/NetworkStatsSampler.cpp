// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/NetworkStatsSampler.h"

#include "engine/InterfaceDisplayInfo.h"
#include "engine/RouteTable.h"

#include <QCoreApplication>

#include <algorithm>

namespace corkwheel {

namespace {

double perSecond(quint64 current, quint64 previous, double seconds) {
    return current >= previous ? double(current - previous) / seconds : 0.0;
}

} // namespace

NetworkStatsSampler::NetworkStatsSampler(const NetworkSource& source, const Clock& clock)
    : m_source(source), m_clock(clock) {}

NetworkStatsSampler& NetworkStatsSampler::shared() {
    static NetworkStatsSampler sampler(NetworkSource::real(), Clock::system());
    return sampler;
}

NetworkSample NetworkStatsSampler::sample() {
    const double now = m_clock.monotonicSeconds();
    if (const auto recent = m_recent.at(now))
        return *recent;
    const NetworkSample result = measure(now);
    m_recent.keep(result, now);
    return result;
}

NetworkSample NetworkStatsSampler::measure(double now) {
    const auto name = primaryInterfaceName();
    const auto counters = name ? readInterfaceCounters(m_source, *name) : std::nullopt;
    if (!counters)
        return noNetwork(now);

    const InterfaceDisplayInfo info = readInterfaceDisplayInfo(m_source, *name);
    NetworkSample result{info.name, info.kind, 0, 0};
    if (hasBaselineFor(*name))
        measureRates(result, *counters, now);
    m_lastInterfaceName = name;
    m_lastCounters = counters;
    m_lastTime = now;
    return result;
}

std::optional<QString> NetworkStatsSampler::primaryInterfaceName() const {
    const auto routes = m_source.readFile(QStringLiteral("/proc/net/route"));
    if (auto name = routes ? defaultRouteInterface(*routes) : std::nullopt)
        return name;
    return firstActiveIPv4Interface(m_source.interfaceAddresses());
}

NetworkSample NetworkStatsSampler::noNetwork(double now) {
    m_lastInterfaceName.reset();
    m_lastCounters.reset();
    m_lastTime = now;
    return NetworkSample{
        QCoreApplication::translate("corkwheel::NetworkStatsSampler", "No Network"),
        NetworkInterfaceKind::Other, 0, 0};
}

bool NetworkStatsSampler::hasBaselineFor(const QString& interfaceName) const {
    return m_lastInterfaceName == interfaceName && m_lastCounters && m_lastTime;
}

void NetworkStatsSampler::measureRates(NetworkSample& sample, const InterfaceCounters& counters,
                                       double now) const {
    // Traffic over a sliver of time would read as a burst far above the real rate.
    const double seconds = std::max(now - *m_lastTime, kMinimumInterval);
    sample.downBytesPerSec = perSecond(counters.rx, m_lastCounters->rx, seconds);
    sample.upBytesPerSec = perSecond(counters.tx, m_lastCounters->tx, seconds);
}

} // namespace corkwheel
