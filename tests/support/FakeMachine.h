// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// A made-up machine for real panel runners to read, so tests never depend on this
// machine's statistics or its clock.

#include "support/FakeNetworkSource.h"
#include "support/FakeSystemSource.h"
#include "support/MockClock.h"

#include "engine/NetworkStatsSampler.h"
#include "engine/PanelRunner.h"
#include "engine/RunnerServices.h"
#include "engine/SystemStatsSampler.h"

#include <QSignalSpy>

#include <functional>
#include <memory>

namespace corkwheel::test {

inline constexpr quint64 kGiB = Q_UINT64_C(1) << 30;

// A machine with 8 GiB of memory (half in use), an Ethernet link and as many network
// shares as a test asks for; each share is a disk of the statistics.
class FakeMachine {
public:
    FakeMachine()
        : m_systemSampler(std::make_unique<SystemStatsSampler>(m_system, m_clock)),
          m_networkSampler(std::make_unique<NetworkStatsSampler>(m_network, m_clock)) {
        m_system.setFile(QStringLiteral("/proc/meminfo"),
                         "MemTotal:        8388608 kB\nMemAvailable:    4194304 kB\n");
        m_system.setFile(QStringLiteral("/proc/stat"), "cpu  100 0 100 800 0 0 0 0 0 0\n");
        m_network.setFile(QStringLiteral("/proc/net/route"),
                          "Iface\tDestination\tGateway\tFlags\tRefCnt\tUse\tMetric\tMask\n"
                          "eth0\t00000000\t0102A8C0\t0003\t0\t0\t100\t00000000\n");
        m_network.setFile(QStringLiteral("/sys/class/net/eth0/type"), "1\n");
        m_network.setDirectory(QStringLiteral("/sys/class/net/eth0/device"));
        setCounters(0, 0);
        setShares(0);
    }

    // `count` network shares mounted at /mnt/share1, /mnt/share2, ..., each 100 GiB with
    // 25 GiB free.
    void setShares(int count) {
        QByteArray table = "29 1 259:2 / / rw,relatime shared:1 - tmpfs tmpfs rw\n";
        for (int i = 1; i <= count; ++i) {
            const QString mountPoint = QStringLiteral("/mnt/share%1").arg(i);
            table += QStringLiteral("%1 29 0:%1 / %2 rw,relatime shared:%1 - nfs4 nas:/v%1 rw\n")
                         .arg(100 + i)
                         .arg(mountPoint)
                         .toUtf8();
            m_system.setCapacity(mountPoint, 100 * kGiB, 25 * kGiB);
        }
        m_system.setFile(QStringLiteral("/proc/self/mountinfo"), table);
    }

    // The next CPU reading gives `usage` (in thousandths).
    void setNextCpuUsage(int thousandths) {
        // Each reading a second after the one before, so none is the reading already taken.
        m_clock.advance(1);
        m_system.setFile(QStringLiteral("/proc/stat"), "cpu  0 0 0 0 0 0 0 0 0 0\n");
        m_systemSampler->sampleCPU();
        m_clock.advance(1);
        m_system.setFile(QStringLiteral("/proc/stat"),
                         QStringLiteral("cpu  %1 0 0 %2 0 0 0 0 0 0\n")
                             .arg(thousandths)
                             .arg(1000 - thousandths)
                             .toUtf8());
    }

    void setCounters(quint64 received, quint64 sent) {
        m_network.setFile(QStringLiteral("/sys/class/net/eth0/statistics/rx_bytes"),
                          QByteArray::number(received) + "\n");
        m_network.setFile(QStringLiteral("/sys/class/net/eth0/statistics/tx_bytes"),
                          QByteArray::number(sent) + "\n");
    }

    void advanceClock(double seconds) { m_clock.advance(seconds); }
    MockClock& clock() { return m_clock; }
    FakeSystemSource& system() { return m_system; }

    RunnerServices services(std::function<WebPage*(QObject*)> createWebPage = {}) {
        RunnerServices services;
        services.clock = &m_clock;
        services.systemStats = m_systemSampler.get();
        services.networkStats = m_networkSampler.get();
        services.createWebPage = std::move(createWebPage);
        return services;
    }

private:
    MockClock m_clock;
    FakeSystemSource m_system;
    FakeNetworkSource m_network;
    std::unique_ptr<SystemStatsSampler> m_systemSampler;
    std::unique_ptr<NetworkStatsSampler> m_networkSampler;
};

// Refreshes a system-stats runner (`refresh` is start or refreshNow) and waits for its
// figures: the volumes' capacities are asked on other threads.
inline void refreshStatsAndWait(PanelRunner& runner, void (PanelRunner::*refresh)()) {
    QSignalSpy stats(&runner, &PanelRunner::statsChanged);
    (runner.*refresh)();
    if (stats.isEmpty())
        static_cast<void>(stats.wait());
}

} // namespace corkwheel::test
