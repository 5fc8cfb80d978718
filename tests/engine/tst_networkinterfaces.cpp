// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/InterfaceAddress.h"
#include "engine/InterfaceCounters.h"
#include "engine/InterfaceDisplayInfo.h"
#include "engine/RouteTable.h"
#include "support/FakeNetworkSource.h"
#include "support/FixtureFile.h"

#include <QTest>

#include <net/if.h>
#include <sys/socket.h>

using namespace corkwheel;
using corkwheel::test::FakeNetworkSource;
using corkwheel::test::fixtureFile;

namespace {

constexpr unsigned int kUpRunning = IFF_UP | IFF_RUNNING | IFF_BROADCAST | IFF_MULTICAST;

std::optional<QString> defaultRouteIn(const char* fixture) {
    return defaultRouteInterface(fixtureFile(QString::fromUtf8(fixture)));
}

QString netPath(const char* interfaceName, const char* entry) {
    return QStringLiteral("/sys/class/net/%1/%2")
        .arg(QString::fromUtf8(interfaceName), QString::fromUtf8(entry));
}

} // namespace

class NetworkInterfacesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void defaultRouteGivesItsInterface() {
        QCOMPARE(defaultRouteIn("proc/net-route-wifi.txt"), QStringLiteral("wlp2s0"));
    }

    void lowestMetricDefaultRouteWins() {
        QCOMPARE(defaultRouteIn("proc/net-route-two-defaults.txt"), QStringLiteral("enp0s31f6"));
        QCOMPARE(defaultRouteIn("proc/net-route-vpn.txt"), QStringLiteral("wg0"));
    }

    void equalMetricsKeepTheFirstRoute() {
        QCOMPARE(
            defaultRouteInterface("Iface\tDestination\tGateway\tFlags\tRefCnt\tUse\tMetric\t"
                                  "Mask\tMTU\tWindow\tIRTT\n"
                                  "eth1\t00000000\t0100A8C0\t0003\t0\t0\t100\t00000000\t0\t0\t0\n"
                                  "eth0\t00000000\t0101A8C0\t0003\t0\t0\t100\t00000000\t0\t0\t0\n"),
            QStringLiteral("eth1"));
    }

    void withoutDefaultRouteThereIsNoInterface() {
        QCOMPARE(defaultRouteIn("proc/net-route-no-default.txt"), std::nullopt);
        QCOMPARE(defaultRouteInterface(""), std::nullopt);
    }

    void firstLineIsTakenAsColumnHeadings() {
        QCOMPARE(
            defaultRouteInterface("eth0\t00000000\t0101A8C0\t0003\t0\t0\t0\t00000000\t0\t0\t0\n"),
            std::nullopt);
    }

    void firstActiveIPv4InterfaceSkipsLoopbackDownAndOtherFamilies() {
        const QList<InterfaceAddress> addresses{
            {QStringLiteral("lo"), IFF_UP | IFF_RUNNING | IFF_LOOPBACK, AF_INET},
            {QStringLiteral("enp0s31f6"), IFF_UP | IFF_BROADCAST, AF_INET},
            {QStringLiteral("wlp2s0"), kUpRunning, AF_PACKET},
            {QStringLiteral("wlp2s0"), kUpRunning, AF_INET6},
            {QStringLiteral("tun0"), IFF_UP | IFF_RUNNING | IFF_POINTOPOINT, -1},
            {QStringLiteral("wlp2s0"), kUpRunning, AF_INET},
            {QStringLiteral("docker0"), kUpRunning, AF_INET}};
        QCOMPARE(firstActiveIPv4Interface(addresses), QStringLiteral("wlp2s0"));
    }

    void noActiveIPv4InterfaceIsNone() {
        QCOMPARE(firstActiveIPv4Interface(
                     {{QStringLiteral("lo"), IFF_UP | IFF_RUNNING | IFF_LOOPBACK, AF_INET}}),
                 std::nullopt);
        QCOMPARE(firstActiveIPv4Interface({}), std::nullopt);
    }

    void byteCounterIsOneSixtyFourBitNumber() {
        QCOMPARE(parseByteCounter("5368709120\n"), Q_UINT64_C(5368709120));
        QCOMPARE(parseByteCounter("18446744073709551615\n"), Q_UINT64_C(18446744073709551615));
        QCOMPARE(parseByteCounter(""), std::nullopt);
        QCOMPARE(parseByteCounter("n/a\n"), std::nullopt);
    }

    void byteCounterIsDigitsAlone() {
        QCOMPARE(parseByteCounter(" 1200\t\n"), Q_UINT64_C(1200));
        QCOMPARE(parseByteCounter("+1200\n"), std::nullopt);
        QCOMPARE(parseByteCounter(QByteArrayView("1200\0junk\n", 10)), std::nullopt);
        QCOMPARE(parseByteCounter("18446744073709551616\n"), std::nullopt);
    }

    void countersNeedBothDirections() {
        FakeNetworkSource source;
        source.setFile(netPath("eth0", "statistics/rx_bytes"), "9000000000\n");
        QCOMPARE(readInterfaceCounters(source, QStringLiteral("eth0")), std::nullopt);
        source.setFile(netPath("eth0", "statistics/tx_bytes"), "1200\n");
        QCOMPARE(readInterfaceCounters(source, QStringLiteral("eth0")),
                 (InterfaceCounters{Q_UINT64_C(9000000000), 1200}));
    }

    void ueventDevtypeWlanMeansWireless() {
        QVERIFY(ueventSaysWireless(fixtureFile(QStringLiteral("sys/uevent-wifi.txt"))));
        QVERIFY(!ueventSaysWireless(fixtureFile(QStringLiteral("sys/uevent-ethernet.txt"))));
        QVERIFY(!ueventSaysWireless(fixtureFile(QStringLiteral("sys/uevent-bridge.txt"))));
    }

    void wirelessDirectoryMeansWifi() {
        FakeNetworkSource source;
        source.setDirectory(netPath("wlan0", "wireless"));
        source.setFile(netPath("wlan0", "type"), "1\n");
        source.setLink(netPath("wlan0", "device"), QStringLiteral("/sys/devices/pci0000:00/x"));
        QCOMPARE(readInterfaceDisplayInfo(source, QStringLiteral("wlan0")),
                 (InterfaceDisplayInfo{QStringLiteral("Wi-Fi"), NetworkInterfaceKind::Wifi}));
    }

    void wlanUeventMeansWifi() {
        FakeNetworkSource source;
        source.setFile(netPath("wlp2s0", "uevent"),
                       fixtureFile(QStringLiteral("sys/uevent-wifi.txt")));
        source.setFile(netPath("wlp2s0", "type"), "1\n");
        QCOMPARE(readInterfaceDisplayInfo(source, QStringLiteral("wlp2s0")),
                 (InterfaceDisplayInfo{QStringLiteral("Wi-Fi"), NetworkInterfaceKind::Wifi}));
    }

    void physicalEthernetAdapterIsEthernet() {
        FakeNetworkSource source;
        source.setFile(netPath("enp0s31f6", "uevent"),
                       fixtureFile(QStringLiteral("sys/uevent-ethernet.txt")));
        source.setFile(netPath("enp0s31f6", "type"), "1\n");
        source.setLink(netPath("enp0s31f6", "device"),
                       QStringLiteral("/sys/devices/pci0000:00/0000:00:1f.6"));
        QCOMPARE(
            readInterfaceDisplayInfo(source, QStringLiteral("enp0s31f6")),
            (InterfaceDisplayInfo{QStringLiteral("Ethernet"), NetworkInterfaceKind::Ethernet}));
    }

    void virtualEthernetWithoutDeviceShowsItsName() {
        FakeNetworkSource source;
        source.setFile(netPath("br0", "uevent"),
                       fixtureFile(QStringLiteral("sys/uevent-bridge.txt")));
        source.setFile(netPath("br0", "type"), "1\n");
        QCOMPARE(readInterfaceDisplayInfo(source, QStringLiteral("br0")),
                 (InterfaceDisplayInfo{QStringLiteral("br0"), NetworkInterfaceKind::Other}));
    }

    void interfaceWithoutSysfsEntryShowsItsName() {
        FakeNetworkSource source;
        QCOMPARE(readInterfaceDisplayInfo(source, QStringLiteral("ppp0")),
                 (InterfaceDisplayInfo{QStringLiteral("ppp0"), NetworkInterfaceKind::Other}));
    }
};

QTEST_GUILESS_MAIN(NetworkInterfacesTest)
#include "tst_networkinterfaces.moc"
