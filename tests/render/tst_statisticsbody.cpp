// SPDX-License-Identifier: GPL-3.0-or-later

// The statistics of a system-stats panel as its content view lays them out and draws them,
// fed by a real runner reading a made-up machine.

#include "support/EnglishCatalogue.h"
#include "support/ViewTesting.h"

#include "engine/PanelRunner.h"
#include "render/NetworkGraphView.h"
#include "render/PanelContentView.h"
#include "render/PanelFonts.h"
#include "render/StatsLayout.h"

#include <QHelpEvent>
#include <QTest>
#include <QToolTip>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

const QColor kYellow(255, 220, 0);

Panel statsPanel(double height, double width = 260) {
    Panel panel = Panel::makeDefault(PanelType::SystemStats);
    panel.frame = PanelFrame{0, 0, width, height};
    panel.style.showShadow = false;
    panel.style.textColor = CodableColor{1, 220 / 255.0, 0, 1};
    return panel;
}

QStringList labelsOf(const StatsLayout& layout) {
    QStringList labels;
    for (const StatsLayout::Row& row : layout.rows)
        labels.append(row.row.label);
    return labels;
}

} // namespace

class StatisticsBodyTest : public QObject {
    Q_OBJECT

private:
    EnglishCatalogue m_english;
    std::unique_ptr<FakeMachine> m_machine;
    std::unique_ptr<PanelRunner> m_runner;
    std::unique_ptr<PanelContentView> m_view;

    PanelContentView& show(const Panel& panel) {
        m_runner = std::make_unique<PanelRunner>(panel, m_machine->services());
        refreshStatsAndWait(*m_runner, &PanelRunner::start);
        m_view = std::make_unique<PanelContentView>(*m_runner);
        m_view->resize(int(panel.frame.width), int(panel.frame.height));
        m_view->setPanel(panel);
        return *m_view;
    }

    // Draws twice, as the screen does: the first layout measures the rows and the graph,
    // the second uses those heights.
    QImage settle(double ratio = 1) {
        render(*m_view, ratio);
        return render(*m_view, ratio);
    }

    // The row and graph heights of the default style.
    std::pair<double, double> measuredHeights() {
        FakeMachine machine;
        PanelRunner runner(statsPanel(400), machine.services());
        refreshStatsAndWait(runner, &PanelRunner::start);
        PanelContentView view(runner);
        view.resize(260, 400);
        view.setPanel(runner.panel());
        render(view, 1);
        return {view.measuredRowHeight(), view.measuredNetworkHeight()};
    }

    // A panel just tall enough for `places` disk places.
    double heightFor(int places) {
        const auto [row, graph] = measuredHeights();
        return std::ceil(28 + 2 * row + graph + 20 + places * (row + 10));
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_english.install()); }

    void init() { m_machine = std::make_unique<FakeMachine>(); }

    void cleanup() {
        m_view.reset();
        m_runner.reset();
    }

    void firstLayoutAssumesDefaultHeightsThenMeasures() {
        m_machine->setShares(3);
        PanelContentView& view = show(statsPanel(300));
        QCOMPARE(view.measuredRowHeight(), 0.0);
        QCOMPARE(view.measuredNetworkHeight(), 0.0);
        render(view, 1);
        const StatsLayout layout = view.statsLayout();
        QCOMPARE(view.measuredRowHeight(), layout.rowHeight);
        QCOMPARE(view.measuredNetworkHeight(), layout.networkHeight);
        QVERIFY(layout.rowHeight > 10 && layout.rowHeight < 30);
        QVERIFY(layout.networkHeight > 40 && layout.networkHeight < 60);
        // The measurements stay while the same panel is redrawn.
        view.setPanel(statsPanel(300));
        QCOMPARE(view.measuredRowHeight(), layout.rowHeight);
    }

    void measuredRowsLetMoreDisksFitThanTheDefaults() {
        m_machine->setShares(1);
        // Room for one disk with the measured heights, for none with the defaults (which
        // need 28 + 60 + 50 + 20 + 40 = 198 points).
        const double height = heightFor(1);
        QVERIFY(height < 198);
        PanelContentView& view = show(statsPanel(height));
        QCOMPARE(view.statsLayout().summary, QStringLiteral("+1 more disk"));
        settle();
        QCOMPARE(view.statsLayout().fit.visible.size(), 1);
        QVERIFY(view.statsLayout().summary.isEmpty());
    }

    void shortPanelShowsNoDiskRowsButSummarisesThemAll_data() {
        QTest::addColumn<double>("ratio");
        QTest::newRow("ratio 1") << 1.0;
        QTest::newRow("ratio 2") << 2.0;
    }

    void shortPanelShowsNoDiskRowsButSummarisesThemAll() {
        QFETCH(double, ratio);
        m_machine->setShares(3);
        PanelContentView& view = show(statsPanel(heightFor(0)));
        const QImage image = settle(ratio);
        const StatsLayout layout = view.statsLayout();
        QCOMPARE(labelsOf(layout), (QStringList{QStringLiteral("CPU"), QStringLiteral("Memory")}));
        QCOMPARE(layout.summary, QStringLiteral("+3 more disks"));
        QVERIFY(countPixels(image, layout.summaryRect, isVisible) > 20);
        // Dimmed: nothing in the summary is drawn at full strength.
        QCOMPARE(countPixels(image, layout.summaryRect, [](QColor c) { return c.alpha() > 150; }),
                 0);
    }

    void exactlyFittingDisksAreAllShownWithoutSummary() {
        m_machine->setShares(3);
        PanelContentView& view = show(statsPanel(heightFor(3)));
        const QImage image = settle();
        const StatsLayout layout = view.statsLayout();
        QCOMPARE(labelsOf(layout),
                 (QStringList{QStringLiteral("CPU"), QStringLiteral("Memory"),
                              QStringLiteral("/mnt/share1"), QStringLiteral("/mnt/share2"),
                              QStringLiteral("/mnt/share3")}));
        QVERIFY(layout.summary.isEmpty());
        // Everything is drawn, down to the graph, and nothing below its bottom.
        QVERIFY(countPixels(image, layout.rows.last().rect, isVisible) > 50);
        QVERIFY(countPixels(image, layout.graphRect, isVisible) > 50);
        QCOMPARE(countPixels(image,
                             QRectF(0, layout.graphRect.bottom() + 1, 260,
                                    view.height() - layout.graphRect.bottom() - 1),
                             isVisible),
                 0);
    }

    void oneDiskMoreThanFitsShowsOneFewerAndSummarisesTwo() {
        m_machine->setShares(4);
        PanelContentView& view = show(statsPanel(heightFor(3)));
        const QImage image = settle();
        const StatsLayout layout = view.statsLayout();
        QCOMPARE(labelsOf(layout),
                 (QStringList{QStringLiteral("CPU"), QStringLiteral("Memory"),
                              QStringLiteral("/mnt/share1"), QStringLiteral("/mnt/share2")}));
        QCOMPARE(layout.summary, QStringLiteral("+2 more disks"));
        QVERIFY(countPixels(image, layout.summaryRect, isVisible) > 20);
    }

    void rowsShowTheReadings() {
        m_machine->setShares(1);
        m_machine->setNextCpuUsage(999);
        PanelContentView& view = show(statsPanel(heightFor(1)));
        settle();
        const StatsLayout layout = view.statsLayout();
        QCOMPARE(layout.rows[0].row.detail, QStringLiteral("99%"));
        QCOMPARE(layout.rows[0].row.fraction, 0.999);
        QCOMPARE(layout.rows[0].row.symbol, QStringLiteral("cpu"));
        QCOMPARE(layout.rows[1].row.detail, QStringLiteral("4.0 / 8.0 GB"));
        QCOMPARE(layout.rows[1].row.symbol, QStringLiteral("memorychip"));
        QCOMPARE(layout.rows[2].row.detail, QStringLiteral("25 GB free"));
        QCOMPARE(layout.rows[2].row.symbol, QStringLiteral("externaldrive"));
    }

    void barsFillByTheirFractionInTheTextColour_data() {
        shortPanelShowsNoDiskRowsButSummarisesThemAll_data();
    }

    void barsFillByTheirFractionInTheTextColour() {
        QFETCH(double, ratio);
        m_machine->setNextCpuUsage(250);
        PanelContentView& view = show(statsPanel(heightFor(0)));
        const QImage image = settle(ratio);
        const QRectF row = view.statsLayout().rows[0].rect;
        // The bar is the row's last 4 points.
        const double barMiddle = row.bottom() - 2;
        QCOMPARE(colorAt(image, QPointF(row.left() + row.width() * 0.1, barMiddle)), kYellow);
        const QColor track = colorAt(image, QPointF(row.left() + row.width() * 0.6, barMiddle));
        QVERIFY(track.alpha() > 30 && track.alpha() < 100);
        // Memory is half used.
        const QRectF memory = view.statsLayout().rows[1].rect;
        QCOMPARE(
            colorAt(image, QPointF(memory.left() + memory.width() * 0.45, memory.bottom() - 2)),
            kYellow);
        QVERIFY(colorAt(image, QPointF(memory.left() + memory.width() * 0.55, memory.bottom() - 2))
                    .alpha() < 100);
    }

    void statisticsAreSetTwoPointsSmallerThanTheStyle_data() {
        QTest::addColumn<double>("styleSize");
        QTest::addColumn<int>("statsSize");
        QTest::newRow("11") << 11.0 << 10;
        QTest::newRow("20") << 20.0 << 18;
    }

    void statisticsAreSetTwoPointsSmallerThanTheStyle() {
        QFETCH(double, styleSize);
        QFETCH(int, statsSize);
        Panel panel = statsPanel(300);
        panel.style.fontSize = styleSize;
        PanelContentView& view = show(panel);
        const QImage image = settle();
        const StatsLayout layout = view.statsLayout();
        QCOMPARE(PanelFonts::sizeOf(layout.font) * layout.fontScale, double(statsSize));
        // The row's symbol is as tall as the type.
        const QRectF line(layout.rows[0].rect.left(), layout.rows[0].rect.top(), statsSize + 1,
                          layout.rows[0].rect.height() - 8);
        const QRectF symbol = inkBounds(image.copy(line.toRect()), isVisible);
        QVERIFY2(symbol.height() > statsSize * 0.6 && symbol.height() <= statsSize + 1,
                 qPrintable(QString::number(symbol.height())));
    }

    void summaryLineExplainsHowToSeeAllDisks() {
        m_machine->setShares(2);
        PanelContentView& view = show(statsPanel(heightFor(0)));
        view.show();
        settle();
        const QRectF summary = view.statsLayout().summaryRect;
        const QString help = QStringLiteral("Resize the panel to see all disks");
        QCOMPARE(view.toolTipAt(summary.center().toPoint()), help);
        QCOMPARE(view.toolTipAt(view.statsLayout().rows[0].rect.center().toPoint()), QString());

        QHelpEvent hover(QEvent::ToolTip, summary.center().toPoint(),
                         view.mapToGlobal(summary.center().toPoint()));
        QApplication::sendEvent(&view, &hover);
        QTRY_VERIFY(QToolTip::isVisible());
        QCOMPARE(QToolTip::text(), help);
    }

    void networkGraphComesLastWithTheConnection() {
        PanelContentView& view = show(statsPanel(heightFor(0)));
        m_machine->advanceClock(1);
        m_machine->setCounters(125'000, 100);
        refreshStatsAndWait(*m_runner, &PanelRunner::refreshNow);
        const QImage image = settle();
        const StatsLayout layout = view.statsLayout();
        QVERIFY(layout.graphRect.top() > layout.rows.last().rect.bottom());
        const NetworkGraphView graph(m_runner->networkHistory(), kYellow);
        QCOMPARE(graph.title(), QStringLiteral("Ethernet"));
        QCOMPARE(graph.ratesText(), QStringLiteral("1.0 Mbps ↓  800 bps ↑"));
        // The download line climbs from the baseline to the top of the graph.
        const QRectF canvas = NetworkGraphView::canvasRect(layout.graphRect, layout.font);
        QVERIFY(countPixels(image, canvas, near(kYellow)) > 20);
        QVERIFY(countPixels(image, QRectF(canvas.right() - 3, canvas.top(), 3, 3), isVisible) > 0);
    }

    void refreshIsRepaintedOnceAndOnlyWhereReadingsChanged() {
        m_machine->setNextCpuUsage(250);
        Panel panel = statsPanel(heightFor(0));
        panel.style.showShadow = true;
        PanelContentView& view = show(panel);
        PaintCounter paints(view);
        view.show();
        QVERIFY(paints.settle(2));
        const int before = paints.count;

        m_machine->setNextCpuUsage(750);
        refreshStatsAndWait(*m_runner, &PanelRunner::refreshNow);
        QTRY_COMPARE(paints.count, before + 1);
        QTest::qWait(50);
        QCOMPARE(paints.count, before + 1);
        const StatsLayout layout = view.statsLayout();
        QCOMPARE(layout.rows[0].row.detail, QStringLiteral("75%"));
        QVERIFY(paints.lastArea.intersects(layout.rows[0].rect.toRect()));
        // Memory reads as before.
        QVERIFY(!paints.lastArea.intersects(layout.rows[1].rect.adjusted(0, 3, 0, -3).toRect()));
    }

    void shadowFollowsTheStyle() {
        Panel panel = statsPanel(heightFor(0));
        show(panel);
        const auto shadowPixels = [](QColor c) {
            return c.alpha() > 0 && c.alpha() < 200 && c.red() < 60 && c.green() < 60;
        };
        QCOMPARE(countPixels(settle(), QRectF(0, 0, 260, panel.frame.height), shadowPixels), 0);
        panel.style.showShadow = true;
        m_view->setPanel(panel);
        QVERIFY(countPixels(settle(), QRectF(0, 0, 260, panel.frame.height), shadowPixels) > 50);
    }
};

QTEST_MAIN(StatisticsBodyTest)
#include "tst_statisticsbody.moc"
