// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/CpuTicks.h"
#include "support/FixtureFile.h"

#include <QTest>

using corkwheel::cpuBusyShare;
using corkwheel::CpuTicks;
using corkwheel::parseCpuTicks;
using corkwheel::test::fixtureFile;

class CpuTicksTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aggregateLineIsFoldedIntoFourStates() {
        // system + irq + softirq + steal, and idle + iowait.
        QCOMPARE(parseCpuTicks(fixtureFile(QStringLiteral("proc/stat-first.txt"))),
                 (CpuTicks{102345, 1200, 42110, 2105300}));
    }

    void countersBeyondThirtyTwoBitsAreKept() {
        const auto ticks = parseCpuTicks(fixtureFile(QStringLiteral("proc/stat-before-wrap.txt")));
        QVERIFY(ticks);
        QCOMPARE(ticks->user, Q_UINT64_C(18446744073709551606));
    }

    void oldKernelWithFourColumnsIsRead() {
        QCOMPARE(parseCpuTicks(fixtureFile(QStringLiteral("proc/stat-old-kernel.txt"))),
                 (CpuTicks{8120, 310, 2915, 96402}));
    }

    void lineCutShortIsNoReading() {
        QCOMPARE(parseCpuTicks(fixtureFile(QStringLiteral("proc/stat-cut-short.txt"))),
                 std::nullopt);
    }

    void textWithoutAggregateLineIsNoReading() {
        QCOMPARE(parseCpuTicks("cpu0 25811 301 10102 524880 1402 0 1150 0 0 0\n"), std::nullopt);
        QCOMPARE(parseCpuTicks(""), std::nullopt);
        QCOMPARE(parseCpuTicks("cpu  12 x 7 100\n"), std::nullopt);
    }

    void busyShareCountsUserNiceAndSystem() {
        const auto first = parseCpuTicks(fixtureFile(QStringLiteral("proc/stat-first.txt")));
        const auto second = parseCpuTicks(fixtureFile(QStringLiteral("proc/stat-second.txt")));
        QVERIFY(first && second);
        // 400 user + 20 nice + 140 system of 2000 ticks.
        QCOMPARE(cpuBusyShare(*first, *second), 0.28);
    }

    void niceTimeCountsAsBusy() {
        QCOMPARE(cpuBusyShare(CpuTicks{0, 0, 0, 0}, CpuTicks{0, 50, 0, 50}), 0.5);
    }

    void noTicksBetweenReadingsIsZero() {
        const CpuTicks ticks{100, 5, 40, 900};
        QCOMPARE(cpuBusyShare(ticks, ticks), 0.0);
    }

    void wrappedCounterGivesItsSmallDifference() {
        const CpuTicks before{Q_UINT64_C(18446744073709551606), 0, 100, 900};
        const CpuTicks after{30, 0, 120, 1040};
        // 40 user (across the wrap) + 20 system of 200 ticks.
        QCOMPARE(cpuBusyShare(before, after), 0.3);
    }
};

QTEST_GUILESS_MAIN(CpuTicksTest)
#include "tst_cputicks.moc"
