// SPDX-License-Identifier: GPL-3.0-or-later

// Each core's ticks, the swap and the load average as /proc shows them, on the machines of
// tests/data/machines, and the numbers of the kernel's sysfs attributes.

#include "engine/CoreTicks.h"
#include "engine/LoadAverage.h"
#include "engine/SwapReading.h"
#include "engine/SysfsValue.h"
#include "support/FixtureFile.h"

#include <QTest>

#include <limits>

using namespace corkwheel;
using corkwheel::test::fixtureFile;

namespace {

QByteArray machineFile(const char* machine, const char* file) {
    return fixtureFile(
        QStringLiteral("machines/%1/%2").arg(QString::fromUtf8(machine), QString::fromUtf8(file)));
}

// /proc/meminfo counts in KiB.
constexpr double kKiBPerGiB = 1024.0 * 1024.0;

} // namespace

class ProcReadingsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyCoreLineIsRead() {
        const QList<CoreTicks> cores = parseCoreTicks(machineFile("intel-laptop", "proc/stat"));
        QCOMPARE(cores.size(), 4);
        QCOMPARE(cores[2].core, 2);
        // cpu2 2020 10 1000 8000 5 0 2 0 0 0: system takes in the soft interrupts, idle the
        // waiting for I/O.
        QCOMPARE(cores[2].ticks, (CpuTicks{2020, 10, 1002, 8005}));
        QCOMPARE(parseCoreTicks(machineFile("amd-desktop", "proc/stat")).size(), 8);
    }

    void aggregateLineAndOtherLinesAreNotCores() {
        const QList<CoreTicks> cores =
            parseCoreTicks("cpu  1 2 3 4\ncpux 1 2 3 4\ncpu0 1 2 3 4\ncpu1 1 2\ncpu3 5 6 7 8\n"
                           "intr 1 2 3 4\n");
        QCOMPARE(cores.size(), 2);
        QCOMPARE(cores[0].core, 0);
        // cpu1's line is cut short and left out; cpu2 is offline and has none.
        QCOMPARE(cores[1].core, 3);
    }

    void eachCoresShareSinceTheLastReading() {
        const QList<CoreTicks> before{{0, {100, 0, 0, 100}}, {1, {100, 0, 0, 100}}};
        const QList<CoreTicks> after{{0, {175, 0, 0, 125}}, {1, {110, 0, 0, 190}}};
        QCOMPARE(coreBusyShares(before, after), (QList<double>{0.75, 0.1}));
    }

    void coreThatCameOnlineReadsZeroOnce() {
        const QList<CoreTicks> before{{0, {100, 0, 0, 100}}, {2, {100, 0, 0, 100}}};
        const QList<CoreTicks> after{
            {0, {150, 0, 0, 150}}, {1, {500, 0, 0, 0}}, {2, {200, 0, 0, 100}}};
        QCOMPARE(coreBusyShares(before, after), (QList<double>{0.5, 0.0, 1.0}));
    }

    void swapInUseFromTheLaptop() {
        const auto swap = swapReadingFromMeminfo(machineFile("intel-laptop", "proc/meminfo"));
        QVERIFY(swap);
        QCOMPARE(swap->totalGB, 2097148 / kKiBPerGiB);
        QCOMPARE(swap->usedGB, (2097148 - 1048572) / kKiBPerGiB);
        QCOMPARE(swap->usedFraction, (2097148.0 - 1048572.0) / 2097148.0);
    }

    void machineWithoutSwapHasNoneInUse() {
        const auto swap = swapReadingFromMeminfo(machineFile("bare", "proc/meminfo"));
        QCOMPARE(swap, std::optional(SwapReading{0, 0, 0}));
    }

    void meminfoWithoutSwapLinesSaysNothing() {
        QVERIFY(!swapReadingFromMeminfo("MemTotal: 100 kB\nSwapTotal: 100 kB\n"));
        QVERIFY(!swapReadingFromMeminfo(""));
    }

    void loadAverageFromTheDesktop() {
        QCOMPARE(parseLoadAverage(machineFile("amd-desktop", "proc/loadavg")),
                 std::optional(LoadAverage{1.5, 1.25, 0.75}));
    }

    void loadAverageNeedsThreePlainFigures() {
        QVERIFY(!parseLoadAverage(""));
        QVERIFY(!parseLoadAverage("0.5 0.4"));
        QVERIFY(!parseLoadAverage("0.5 -0.4 0.3 1/2 3"));
        QVERIFY(!parseLoadAverage("inf 0.4 0.3"));
        QVERIFY(!parseLoadAverage("1e3 0.4 0.3"));
        QVERIFY(!parseLoadAverage("1..2 0.4 0.3"));
        QCOMPARE(parseLoadAverage("12 .5 3."), std::optional(LoadAverage{12, 0.5, 3}));
    }

    void loadAverageBeyondADoubleEitherWayIsNoLoad() {
        const QByteArray huge = "1" + QByteArray(400, '0');
        const QByteArray tiny = "0." + QByteArray(400, '0') + "1";
        QVERIFY(!parseLoadAverage(huge + " 0.4 0.3"));
        QVERIFY(!parseLoadAverage("0.5 " + tiny + " 0.3"));
        const QByteArray subnormal = "0." + QByteArray(320, '0') + "1";
        QVERIFY(parseLoadAverage("0.5 " + subnormal + " 0.3"));
        QVERIFY(parseLoadAverage("0." + QByteArray(400, '0') + " 0.4 0.3"));
    }

    void sysfsIntegers() {
        QCOMPARE(parseSysfsInteger("38850\n"), std::optional<qint64>(38850));
        QCOMPARE(parseSysfsInteger(" -273150 "), std::optional<qint64>(-273150));
        QCOMPARE(parseSysfsInteger("-9223372036854775808"),
                 std::optional<qint64>(std::numeric_limits<qint64>::min()));
        QCOMPARE(parseSysfsInteger("9223372036854775807"),
                 std::optional<qint64>(std::numeric_limits<qint64>::max()));
        QVERIFY(!parseSysfsInteger("9223372036854775808"));
        QVERIFY(!parseSysfsInteger("99999999999999999999"));
        QVERIFY(!parseSysfsInteger("-9223372036854775809"));
        QVERIFY(!parseSysfsInteger(""));
        QVERIFY(!parseSysfsInteger("-"));
        QVERIFY(!parseSysfsInteger("+5"));
        QVERIFY(!parseSysfsInteger("12 34"));
        QVERIFY(!parseSysfsInteger(QByteArrayView("12\0", 3)));
    }
};

QTEST_GUILESS_MAIN(ProcReadingsTest)
#include "tst_procreadings.moc"
