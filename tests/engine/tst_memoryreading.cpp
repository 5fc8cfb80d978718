// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/MemoryReading.h"
#include "support/FixtureFile.h"

#include <QTest>

using corkwheel::MemoryReading;
using corkwheel::memoryReadingFromBytes;
using corkwheel::memoryReadingFromMeminfo;
using corkwheel::test::fixtureFile;

namespace {

constexpr double kGB = 1024.0 * 1024.0 * 1024.0;

} // namespace

class MemoryReadingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void usedIsTotalMinusAvailable() {
        const MemoryReading reading =
            memoryReadingFromMeminfo(fixtureFile(QStringLiteral("proc/meminfo-desktop.txt")));
        // 16318540 kB in all, 9876544 kB available: 6441996 kB in use.
        QCOMPARE(reading.usedGB, 6441996.0 / (1024 * 1024));
        QCOMPARE(reading.totalGB, 16318540.0 / (1024 * 1024));
        QCOMPARE(reading.usedFraction, 6441996.0 / 16318540.0);
    }

    void withoutAvailableFigureOnlyTotalIsShown() {
        const MemoryReading reading =
            memoryReadingFromMeminfo(fixtureFile(QStringLiteral("proc/meminfo-old-kernel.txt")));
        QCOMPARE(reading, (MemoryReading{0, 0, 2048000.0 / (1024 * 1024)}));
    }

    void withoutTotalEverythingIsZero() {
        QCOMPARE(memoryReadingFromMeminfo(fixtureFile(QStringLiteral("proc/meminfo-no-total.txt"))),
                 MemoryReading{});
        QCOMPARE(memoryReadingFromMeminfo("garbage"), MemoryReading{});
    }

    void keyIsMatchedWhole() {
        // "MemTotalX" and "SwapTotal" must not be taken for MemTotal.
        const MemoryReading reading = memoryReadingFromMeminfo(
            "SwapTotal:       2097148 kB\nMemTotalX:    99 kB\nMemTotal:    1048576 kB\n"
            "MemAvailable:     524288 kB\n");
        QCOMPARE(reading, (MemoryReading{0.5, 0.5, 1.0}));
    }

    void figureAfterTabsOrWithoutUnitOrLastNewlineIsRead() {
        QCOMPARE(memoryReadingFromMeminfo("MemTotal:\t1048576 kB\nMemAvailable:  524288"),
                 (MemoryReading{0.5, 0.5, 1.0}));
    }

    void keyWithoutFigureGivesNothing() {
        QCOMPARE(memoryReadingFromMeminfo("MemTotal:    kB\nMemAvailable: 524288 kB\n"),
                 MemoryReading{});
        QCOMPARE(memoryReadingFromMeminfo("MemTotal:"), MemoryReading{});
    }

    void memoryAbovePhysicalSizeCapsFractionButKeepsUsedGB() {
        const MemoryReading reading = memoryReadingFromBytes(20 * kGB, 16 * kGB);
        QCOMPARE(reading.usedFraction, 1.0);
        QCOMPARE(reading.usedGB, 20.0);
        QCOMPARE(reading.totalGB, 16.0);
    }

    void noPhysicalSizeGivesZeroFraction() {
        QCOMPARE(memoryReadingFromBytes(kGB, 0).usedFraction, 0.0);
    }
};

QTEST_GUILESS_MAIN(MemoryReadingTest)
#include "tst_memoryreading.moc"
