// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/NetworkStatsSampler.h"
#include "support/FakeNetworkSource.h"
#include "support/FixtureFile.h"
#include "support/MockClock.h"

#include <QTest>

#include <net/if.h>
#include <sys/socket.h>

using namespace corkwheel;
using corkwheel::test::FakeNetworkSource;
using corkwheel::test::fixtureFile;
using corkwheel::test::MockClock;

namespace {

const QString kRoutes = QStringLiteral("/proc/net/route");
const QString kWifi = QStringLiteral("wlp2s0");
const QString kEthernet = QStringLiteral("enp0s31f6");

QString netPath(const QString& interfaceName, const char* entry) {
    return QStringLiteral("/sys/class/net/%1/%2").arg(interfaceName, QString::fromUtf8(entry));
}

void setRoutes(FakeNetworkSource& source, const char* fixture) {
    source.setFile(kRoutes, fixtureFile(QString::fromUtf8(fixture)));
}

void setCounters(FakeNetworkSource& source, const QString& interfaceName, quint64 rx, quint64 tx) {
    source.setFile(netPath(interfaceName, "statistics/rx_bytes"), QByteArray::number(rx) + '\n');
    source.setFile(netPath(interfaceName, "statistics/tx_bytes"), QByteArray::number(tx) + '\n');
}

// A laptop with a Wi-Fi card and an Ethernet port, as sysfs describes them, online over
// Wi-Fi.
void setUpLaptop(FakeNetworkSource& source) {
    source.setDirectory(netPath(kWifi, "wireless"));
    source.setFile(netPath(kWifi, "uevent"), fixtureFile(QStringLiteral("sys/uevent-wifi.txt")));
    source.setFile(netPath(kWifi, "type"), "1\n");
    source.setLink(netPath(kWifi, "device"),
                   QStringLiteral("/sys/devices/pci0000:00/0000:02:00.0"));
    source.setFile(netPath(kEthernet, "uevent"),
                   fixtureFile(QStringLiteral("sys/uevent-ethernet.txt")));
    source.setFile(netPath(kEthernet, "type"), "1\n");
    source.setLink(netPath(kEthernet, "device"),
                   QStringLiteral("/sys/devices/pci0000:00/0000:00:1f.6"));
    setRoutes(source, "proc/net-route-wifi.txt");
    setCounters(source, kWifi, 5'000'000, 800'000);
    setCounters(source, kEthernet, 90'000'000, 7'000'000);
}

// That laptop, measured by a sampler that reads the time from a clock the test moves.
struct Laptop {
    Laptop() { setUpLaptop(source); }

    FakeNetworkSource source;
    MockClock clock;
    NetworkStatsSampler sampler{source, clock};
};

NetworkSample wifi(double down, double up) {
    return {QStringLiteral("Wi-Fi"), NetworkInterfaceKind::Wifi, down, up};
}

NetworkSample ethernet(double down, double up) {
    return {QStringLiteral("Ethernet"), NetworkInterfaceKind::Ethernet, down, up};
}

const NetworkSample kNoNetwork{QStringLiteral("No Network"), NetworkInterfaceKind::Other, 0, 0};

} // namespace

class NetworkStatsSamplerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void firstSampleIsZeroRateWithNameAndKind() {
        Laptop laptop;
        QCOMPARE(laptop.sampler.sample(), wifi(0, 0));
    }

    void nextSampleGivesBytesPerSecondSinceThePrevious_data() {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<quint64>("received");
        QTest::addColumn<quint64>("sent");
        QTest::addColumn<double>("down");
        QTest::addColumn<double>("up");
        // The laptop's Wi-Fi starts at 5,000,000 bytes received and 800,000 sent.
        QTest::newRow("two seconds apart")
            << 2.0 << quint64(5'004'000) << quint64(801'000) << 2000.0 << 500.0;
        QTest::newRow("samples closer than a tenth of a second divide by a tenth")
            << 0.05 << quint64(5'001'000) << quint64(800'500) << 10'000.0 << 5'000.0;
    }

    void nextSampleGivesBytesPerSecondSinceThePrevious() {
        QFETCH(double, seconds);
        QFETCH(quint64, received);
        QFETCH(quint64, sent);
        QFETCH(double, down);
        QFETCH(double, up);
        Laptop laptop;
        laptop.sampler.sample();
        laptop.clock.advance(seconds);
        setCounters(laptop.source, kWifi, received, sent);
        QCOMPARE(laptop.sampler.sample(), wifi(down, up));
    }

    void sampleAskedForInTheSameWakeUpIsTheLastSample() {
        Laptop laptop;
        laptop.sampler.sample();
        laptop.clock.advance(2);
        setCounters(laptop.source, kWifi, 5'002'000, 801'000);
        const NetworkSample measured = laptop.sampler.sample();
        QCOMPARE(measured, wifi(1'000, 500));
        // Other panels a moment later: the same figures, not the rate over that moment.
        // (Steps exact in binary, so that the rates below come out whole.)
        laptop.clock.advance(0.015625);
        setCounters(laptop.source, kWifi, 5'003'000, 801'000);
        QCOMPARE(laptop.sampler.sample(), measured);
        laptop.clock.advance(0.015625);
        QCOMPARE(laptop.sampler.sample(), measured);
        // The next wake-up measures from the last real sample.
        laptop.clock.advance(0.96875);
        QCOMPARE(laptop.sampler.sample(), wifi(1'000, 0));
    }

    void backwardsReceivedCounterGivesZeroDownloadAndBecomesBaseline() {
        Laptop laptop;
        laptop.sampler.sample();
        laptop.clock.advance(1);
        setCounters(laptop.source, kWifi, 1'000, 802'000);
        QCOMPARE(laptop.sampler.sample(), wifi(0, 2'000));
        laptop.clock.advance(1);
        setCounters(laptop.source, kWifi, 4'000, 803'000);
        QCOMPARE(laptop.sampler.sample(), wifi(3'000, 1'000));
    }

    void switchFromWifiToEthernetGivesZeroRateBaselineThenRealRates() {
        Laptop laptop;
        laptop.sampler.sample();
        laptop.clock.advance(1);
        setCounters(laptop.source, kWifi, 5'010'000, 801'000);
        QCOMPARE(laptop.sampler.sample(), wifi(10'000, 1'000));

        setRoutes(laptop.source, "proc/net-route-two-defaults.txt");
        laptop.clock.advance(1);
        QCOMPARE(laptop.sampler.sample(), ethernet(0, 0));
        laptop.clock.advance(4);
        setCounters(laptop.source, kEthernet, 90'400'000, 7'020'000);
        QCOMPARE(laptop.sampler.sample(), ethernet(100'000, 5'000));
    }

    void noNetworkThenReconnectionGivesZeroRateBaseline() {
        Laptop laptop;
        laptop.sampler.sample();
        setRoutes(laptop.source, "proc/net-route-no-default.txt");
        laptop.clock.advance(1);
        QCOMPARE(laptop.sampler.sample(), kNoNetwork);

        setRoutes(laptop.source, "proc/net-route-wifi.txt");
        setCounters(laptop.source, kWifi, 6'000'000, 900'000);
        laptop.clock.advance(1);
        QCOMPARE(laptop.sampler.sample(), wifi(0, 0));
        laptop.clock.advance(1);
        setCounters(laptop.source, kWifi, 6'050'000, 905'000);
        QCOMPARE(laptop.sampler.sample(), wifi(50'000, 5'000));
    }

    void interfaceWithoutCountersIsNoNetwork() {
        Laptop laptop;
        laptop.sampler.sample();
        laptop.source.removeFile(netPath(kWifi, "statistics/tx_bytes"));
        laptop.clock.advance(1);
        QCOMPARE(laptop.sampler.sample(), kNoNetwork);
    }

    void interfaceNeitherWifiNorEthernetShowsItsName() {
        Laptop laptop;
        setRoutes(laptop.source, "proc/net-route-vpn.txt");
        laptop.source.setFile(netPath(QStringLiteral("wg0"), "type"), "65534\n");
        setCounters(laptop.source, QStringLiteral("wg0"), 1'000, 2'000);
        QCOMPARE(laptop.sampler.sample(),
                 (NetworkSample{QStringLiteral("wg0"), NetworkInterfaceKind::Other, 0, 0}));
    }

    void withoutDefaultRouteFirstActiveIPv4InterfaceIsMeasured() {
        Laptop laptop;
        setRoutes(laptop.source, "proc/net-route-no-default.txt");
        laptop.source.setInterfaceAddresses(
            {{QStringLiteral("lo"), IFF_UP | IFF_RUNNING | IFF_LOOPBACK, AF_INET},
             {kEthernet, IFF_UP | IFF_RUNNING | IFF_BROADCAST, AF_INET}});
        QCOMPARE(laptop.sampler.sample(), ethernet(0, 0));
    }

    void unreadableRouteTableFallsBackToInterfaceAddresses() {
        Laptop laptop;
        laptop.source.removeFile(kRoutes);
        laptop.source.setInterfaceAddresses({{kWifi, IFF_UP | IFF_RUNNING, AF_INET}});
        QCOMPARE(laptop.sampler.sample(), wifi(0, 0));
    }

    void realMachineGivesSaneSample() {
        NetworkStatsSampler& sampler = NetworkStatsSampler::shared();
        QCOMPARE(&sampler, &NetworkStatsSampler::shared());
        sampler.sample();
        const NetworkSample sample = sampler.sample();
        QVERIFY(!sample.displayName.isEmpty());
        QVERIFY(sample.downBytesPerSec >= 0);
        QVERIFY(sample.upBytesPerSec >= 0);
    }
};

QTEST_GUILESS_MAIN(NetworkStatsSamplerTest)
#include "tst_networkstatssampler.moc"
