// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/EnglishCatalogue.h"

#include "render/PanelFonts.h"
#include "render/StatRow.h"
#include "render/StatsLayout.h"

#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

QList<DiskInfo> disks(int count) {
    QList<DiskInfo> list;
    for (int i = 1; i <= count; ++i)
        list.append(DiskInfo{QStringLiteral("/d%1").arg(i), QStringLiteral("Disk %1").arg(i),
                             i % 2 == 1, 0.5, 10, 20});
    return list;
}

// The height that makes the fitting rule come out at exactly `places` disk places, with
// rows of `row` and a graph of `graph` points.
double heightFor(qint64 places, double row, double graph) {
    return 28 + 2 * row + graph + 20 + static_cast<double>(places) * (row + 10) + 0.5;
}

} // namespace

class StatsLayoutTest : public QObject {
    Q_OBJECT

    EnglishCatalogue m_english;

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_english.install()); }

    void unmeasuredHeightsAssumeRowsOf30AndAGraphOf50() {
        // 28 + 60 + 50 + 20 = 158 for the fixed items; each disk place costs 40.
        QCOMPARE(StatsLayout::fittingDisks(disks(2), 158 + 80, 0, 0), (DiskFit{disks(2), 0}));
        QCOMPARE(StatsLayout::fittingDisks(disks(2), 158 + 79, 0, 0).hidden, 2);
    }

    void measuredHeightsReplaceTheDefaults() {
        // Rows of 20 and a graph of 40: 28 + 40 + 40 + 20 = 128 fixed, 30 per place.
        QCOMPARE(StatsLayout::fittingDisks(disks(3), 128 + 90, 20, 40), (DiskFit{disks(3), 0}));
        QCOMPARE(StatsLayout::fittingDisks(disks(3), 128 + 89, 20, 40), (DiskFit{disks(1), 2}));
    }

    void tooShortForAnyDiskSummarisesThemAll_data() {
        QTest::addColumn<double>("height");
        QTest::newRow("n is 0") << heightFor(0, 30, 50);
        QTest::newRow("n is negative") << 40.0;
        QTest::newRow("no height at all") << 0.0;
    }

    void tooShortForAnyDiskSummarisesThemAll() {
        QFETCH(double, height);
        QCOMPARE(StatsLayout::fittingDisks(disks(3), height, 30, 50), (DiskFit{{}, 3}));
    }

    void tooShortWithoutDisksHidesNothing() {
        QCOMPARE(StatsLayout::fittingDisks({}, 10, 0, 0), (DiskFit{{}, 0}));
    }

    void exactlyKDisksInKPlacesAreAllShown() {
        for (int k = 1; k <= 5; ++k)
            QCOMPARE(StatsLayout::fittingDisks(disks(k), heightFor(k, 30, 50), 30, 50),
                     (DiskFit{disks(k), 0}));
    }

    void oneDiskMoreThanPlacesShowsKMinusOneAndSummarisesTwo() {
        for (int k = 1; k <= 5; ++k) {
            const DiskFit fit =
                StatsLayout::fittingDisks(disks(k + 1), heightFor(k, 30, 50), 30, 50);
            QCOMPARE(fit.visible, disks(k - 1));
            QCOMPARE(fit.hidden, 2);
        }
    }

    void summaryCountsTheHiddenDisks() {
        QCOMPARE(StatsLayout::summaryText(1), QStringLiteral("+1 more disk"));
        QCOMPARE(StatsLayout::summaryText(2), QStringLiteral("+2 more disks"));
        QCOMPARE(StatsLayout::summaryText(3), QStringLiteral("+3 more disks"));
    }

    void statisticsAreSetTwoPointsSmallerButNeverUnderTen_data() {
        QTest::addColumn<double>("styleSize");
        QTest::addColumn<double>("statsSize");
        QTest::newRow("11") << 11.0 << 10.0;
        QTest::newRow("20") << 20.0 << 18.0;
        QTest::newRow("8") << 8.0 << 10.0;
        QTest::newRow("12") << 12.0 << 10.0;
        QTest::newRow("14.5") << 14.5 << 12.5;
    }

    void statisticsAreSetTwoPointsSmallerButNeverUnderTen() {
        QFETCH(double, styleSize);
        QFETCH(double, statsSize);
        QCOMPARE(StatsLayout::fontSize(styleSize), statsSize);
        PanelStyle style;
        style.fontSize = styleSize;
        const auto [font, scale] = StatsLayout::statsFont(style);
        QCOMPARE(PanelFonts::sizeOf(font) * scale, statsSize);
    }

    void cpuUsageIsCutTowardZero_data() {
        QTest::addColumn<double>("usage");
        QTest::addColumn<QString>("detail");
        QTest::newRow("0.999") << 0.999 << QStringLiteral("99%");
        QTest::newRow("0.37") << 0.37 << QStringLiteral("37%");
        QTest::newRow("0") << 0.0 << QStringLiteral("0%");
        QTest::newRow("1") << 1.0 << QStringLiteral("100%");
    }

    void cpuUsageIsCutTowardZero() {
        QFETCH(double, usage);
        QFETCH(QString, detail);
        QCOMPARE(StatRow::cpuDetail(usage), detail);
        QCOMPARE(StatRow::cpu(usage).detail, detail);
    }

    void memoryAndDiskDetailsUseTheirFormats() {
        QCOMPARE(StatRow::memoryDetail(5.26, 16), QStringLiteral("5.3 / 16.0 GB"));
        QCOMPARE(StatRow::diskDetail(123.6), QStringLiteral("124 GB free"));
    }

    void diskRowsNameTheDiskWithTheSymbolOfWhereItLives() {
        const DiskInfo internal{QStringLiteral("/"), QStringLiteral("System"), true, 0.25, 40, 80};
        const DiskInfo external{QStringLiteral("/mnt"), QStringLiteral("Backup"), false, 1.5, 2, 8};
        QCOMPARE(StatRow::disk(internal),
                 (StatRow{QStringLiteral("System"), QStringLiteral("internaldrive"), 0.25,
                          QStringLiteral("40 GB free")}));
        QCOMPARE(StatRow::disk(external).symbol, QStringLiteral("externaldrive"));
    }

    void barFractionIsClampedToZeroToOne() {
        QCOMPARE(StatRow::barFraction(-0.2), 0.0);
        QCOMPARE(StatRow::barFraction(0.4), 0.4);
        QCOMPARE(StatRow::barFraction(1.7), 1.0);
        QCOMPARE(StatRow::barFraction(std::nan("")), 0.0);
    }

    void layoutStacksRowsSummaryAndGraphTenPointsApart() {
        SystemStatsSample sample;
        sample.disks = disks(4);
        PanelStyle style;
        const StatsLayout probe = StatsLayout::build(sample, style, QSizeF(300, 1000), 0, 0);
        const double row = probe.rowHeight;
        const double graph = probe.networkHeight;
        // Room for two disk places: one disk and the summary.
        const StatsLayout layout =
            StatsLayout::build(sample, style, QSizeF(300, heightFor(2, row, graph)), row, graph);
        QCOMPARE(layout.rows.size(), 3);
        QCOMPARE(layout.summary, QStringLiteral("+3 more disks"));
        QCOMPARE(layout.rows[0].row.label, QStringLiteral("CPU"));
        QCOMPARE(layout.rows[1].row.label, QStringLiteral("Memory"));
        QCOMPARE(layout.rows[2].row.label, QStringLiteral("Disk 1"));
        QCOMPARE(layout.rows[0].rect, QRectF(14, 14, 272, row));
        for (int i = 1; i < 3; ++i)
            QCOMPARE(layout.rows[i].rect.top(), layout.rows[i - 1].rect.bottom() + 10);
        QCOMPARE(layout.summaryRect.top(), layout.rows[2].rect.bottom() + 10);
        QCOMPARE(layout.graphRect.top(), layout.summaryRect.bottom() + 10);
        QCOMPARE(layout.graphRect.width(), 272.0);
        QVERIFY(layout.graphRect.bottom() <= heightFor(2, row, graph) - 14);
    }
};

QTEST_MAIN(StatsLayoutTest)
#include "tst_statslayout.moc"
