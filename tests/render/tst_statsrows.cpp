// SPDX-License-Identifier: GPL-3.0-or-later

// The optional rows of a system-stats panel and their warnings, as the layout places them,
// fed by a real runner reading the machines of tests/data/machines.

#include "support/MachineTree.h"
#include "support/ViewTesting.h"

#include "engine/PanelRunner.h"
#include "render/ExtraStatRows.h"
#include "render/PanelContentView.h"
#include "render/StatWarning.h"
#include "render/StatsLayout.h"

#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

const StatsRows kAllRows{true, true, true, true, true, true};

Panel statsPanel(const SystemStatsOptions& options, double height = 600) {
    Panel panel = Panel::makeDefault(PanelType::SystemStats);
    panel.frame = PanelFrame{0, 0, 280, height};
    panel.style.showShadow = false;
    panel.systemStats = options;
    return panel;
}

SystemStatsOptions withRows(const StatsRows& rows) {
    SystemStatsOptions options;
    options.rows = rows;
    return options;
}

QStringList labelsOf(const StatsLayout& layout) {
    QStringList labels;
    for (const StatsLayout::Row& row : layout.rows)
        labels.append(row.row.label);
    return labels;
}

const StatRow* rowLabelled(const StatsLayout& layout, const QString& label) {
    for (const StatsLayout::Row& row : layout.rows) {
        if (row.row.label == label)
            return &row.row;
    }
    return nullptr;
}

} // namespace

class StatsRowsTest : public QObject {
    Q_OBJECT

    std::unique_ptr<FakeMachine> m_machine;
    std::unique_ptr<PanelRunner> m_runner;
    std::unique_ptr<PanelContentView> m_view;

    // The layout of `panel` on `machine` once its readings are in, laid out twice as the
    // screen does, so that the rows' measured heights decide what fits.
    StatsLayout layoutOn(const QString& machine, const Panel& panel, int shares = 0) {
        m_machine = std::make_unique<FakeMachine>();
        loadMachineTree(m_machine->system(), machine);
        m_machine->setShares(shares);
        m_runner = std::make_unique<PanelRunner>(panel, m_machine->services());
        refreshStatsAndWait(*m_runner, &PanelRunner::start);
        m_view = std::make_unique<PanelContentView>(*m_runner);
        m_view->resize(int(panel.frame.width), int(panel.frame.height));
        m_view->setPanel(panel);
        render(*m_view, 1);
        render(*m_view, 1);
        return m_view->statsLayout();
    }

private Q_SLOTS:
    void panelAskingForNoneShowsTheRowsOfOld() {
        const StatsLayout layout = layoutOn(QStringLiteral("intel-laptop"), statsPanel({}), 2);
        QCOMPARE(labelsOf(layout),
                 (QStringList{QStringLiteral("CPU"), QStringLiteral("Memory"),
                              QStringLiteral("/mnt/share1"), QStringLiteral("/mnt/share2")}));
        for (const StatsLayout::Row& row : layout.rows)
            QVERIFY(!row.row.warningColor.isValid());
    }

    void rowsGrowInTheOrderListed() {
        const StatsLayout layout =
            layoutOn(QStringLiteral("intel-laptop"), statsPanel(withRows(kAllRows)), 1);
        QCOMPARE(labelsOf(layout),
                 (QStringList{QStringLiteral("CPU"), QStringLiteral("Memory"),
                              QStringLiteral("Cores"), QStringLiteral("Load"),
                              QStringLiteral("Swap"), QStringLiteral("CPU"), QStringLiteral("NVMe"),
                              QStringLiteral("Processor Fan"), QStringLiteral("Fan 1"),
                              QStringLiteral("Battery"), QStringLiteral("/mnt/share1")}));
        const StatRow* battery = rowLabelled(layout, QStringLiteral("Battery"));
        QVERIFY(battery);
        QCOMPARE(battery->detail, QStringLiteral(u"57% \u00B7 4:00 left"));
        QCOMPARE(rowLabelled(layout, QStringLiteral("NVMe"))->detail,
                 QStringLiteral(u"37 \u00B0C"));
        QCOMPARE(rowLabelled(layout, QStringLiteral("Processor Fan"))->detail,
                 QStringLiteral("2450 RPM"));
        QCOMPARE(rowLabelled(layout, QStringLiteral("Load"))->detail,
                 QStringLiteral("3.10  2.40  1.95"));
        // The first reading of the cores has no earlier one: each reads 0.
        QCOMPARE(rowLabelled(layout, QStringLiteral("Cores"))->coreBars,
                 (QList<double>{0, 0, 0, 0}));
        // Rows in order down the panel, a row's height and a gap apart.
        for (qsizetype i = 1; i < layout.rows.size(); ++i)
            QCOMPARE(layout.rows[i].rect.top(),
                     layout.rows[i - 1].rect.bottom() + StatsLayout::kSpacing);
    }

    void disksFitIntoWhatIsLeft() {
        // Tall enough for four disk places with no optional row: with the laptop's eight
        // optional rows there is no place left, and every disk goes into the summary.
        const StatsLayout plain = layoutOn(QStringLiteral("intel-laptop"), statsPanel({}), 3);
        const double height = 2 * StatsLayout::kPadding + 2 * plain.rowHeight +
                              plain.networkHeight + 2 * StatsLayout::kSpacing +
                              4 * (plain.rowHeight + StatsLayout::kSpacing) + 0.5;
        QCOMPARE(layoutOn(QStringLiteral("intel-laptop"), statsPanel({}, height), 3).fit,
                 (DiskFit{plain.fit.visible, 0}));
        SystemStatsOptions twoRows = withRows(StatsRows{true, true, false, false, false, false});
        const StatsLayout less =
            layoutOn(QStringLiteral("intel-laptop"), statsPanel(twoRows, height), 3);
        QCOMPARE(less.fit.visible.size(), 1);
        QCOMPARE(less.fit.hidden, 2);
        const StatsLayout none =
            layoutOn(QStringLiteral("intel-laptop"), statsPanel(withRows(kAllRows), height), 3);
        QCOMPARE(none.fit.visible.size(), 0);
        QCOMPARE(none.fit.hidden, 3);
        QVERIFY(!none.summary.isEmpty());
    }

    void bareMachineSaysWhatItLacks() {
        const StatsLayout layout = layoutOn(QStringLiteral("bare"), statsPanel(withRows(kAllRows)));
        QCOMPARE(
            labelsOf(layout),
            (QStringList{QStringLiteral("CPU"), QStringLiteral("Memory"), QStringLiteral("Cores"),
                         QStringLiteral("Load"), QStringLiteral("Swap"),
                         QStringLiteral("Temperature"), QStringLiteral("Fans")}));
        QCOMPARE(rowLabelled(layout, QStringLiteral("Swap"))->detail, QStringLiteral("none"));
        QCOMPARE(rowLabelled(layout, QStringLiteral("Temperature"))->detail,
                 QStringLiteral("no sensors"));
        QCOMPARE(rowLabelled(layout, QStringLiteral("Fans"))->detail, QStringLiteral("none found"));
        QVERIFY(!rowLabelled(layout, QStringLiteral("Fans"))->hasBar);
    }

    void unreadableFiguresSaySo() {
        m_machine = std::make_unique<FakeMachine>();
        m_machine->system().removeFile(QStringLiteral("/proc/stat"));
        Panel panel = statsPanel(withRows(kAllRows));
        m_runner = std::make_unique<PanelRunner>(panel, m_machine->services());
        refreshStatsAndWait(*m_runner, &PanelRunner::start);
        const StatsLayout layout =
            StatsLayout::build(m_runner->stats(), panel.style, panel.systemStats, {280, 600}, 0, 0);
        for (const char* label : {"Cores", "Load"})
            QCOMPARE(rowLabelled(layout, QString::fromLatin1(label))->detail,
                     QStringLiteral("unavailable"));
    }

    void rowsNotReadYetWait() {
        const StatsLayout layout = StatsLayout::build(SystemStatsSample::zero(), PanelStyle{},
                                                      withRows(kAllRows), {280, 600}, 0, 0);
        QCOMPARE(rowLabelled(layout, QStringLiteral("Cores"))->detail, QStringLiteral(u"\u2026"));
        // Without a reading, no battery is known of.
        QVERIFY(!rowLabelled(layout, QStringLiteral("Battery")));
    }

    void eachFigureRowWarnsPastItsThreshold() {
        SystemStatsOptions options = withRows(kAllRows);
        StatsWarnings& warnings = options.warnings;
        const CodableColor orange{1, 0.5, 0, 1};
        for (StatsWarning* warning : {&warnings.cpu, &warnings.memory, &warnings.disks,
                                      &warnings.swap, &warnings.temperatures, &warnings.battery}) {
            warning->isOn = true;
            warning->color = orange;
        }
        // The laptop: memory 62.5 % used, swap 50 %, CPU package 71 °C of a 100 °C
        // maximum, NVMe 36.85 °C of 79.85 °C, batteries at 57 %, each share 75 % used.
        warnings.memory.threshold = 60;
        warnings.swap.threshold = 49;
        warnings.battery.threshold = 60;
        warnings.disks.threshold = 70;
        const StatsLayout layout = layoutOn(QStringLiteral("intel-laptop"), statsPanel(options), 1);
        const QColor warned = QColor::fromRgbF(1, 0.5, 0, 1);
        QCOMPARE(rowLabelled(layout, QStringLiteral("Memory"))->warningColor, warned);
        QCOMPARE(rowLabelled(layout, QStringLiteral("Swap"))->warningColor, warned);
        QCOMPARE(rowLabelled(layout, QStringLiteral("Battery"))->warningColor, warned);
        QCOMPARE(rowLabelled(layout, QStringLiteral("/mnt/share1"))->warningColor, warned);
        // Below their thresholds: the first CPU reading is 0, and the temperatures are under
        // their sensors' maxima.
        QVERIFY(!layout.rows[0].row.warningColor.isValid());
        QVERIFY(!rowLabelled(layout, QStringLiteral("NVMe"))->warningColor.isValid());
    }

    void temperatureWarnsAtItsSensorsMaximumOrTheThreshold() {
        StatsWarnings warnings;
        warnings.temperatures.isOn = true;
        const TemperatureReading withMax{QStringLiteral("NVMe"), 80, 79.85, 82.85};
        const TemperatureReading withoutMax{QStringLiteral("CPU"), 84, std::nullopt, std::nullopt};
        QVERIFY(StatWarning::temperature(warnings, withMax).isValid());
        QVERIFY(!StatWarning::temperature(warnings, withoutMax).isValid());
        QVERIFY(
            StatWarning::temperature(warnings, {QStringLiteral("CPU"), 85.5, {}, {}}).isValid());
        warnings.temperaturesAtSensorMax = false;
        QVERIFY(!StatWarning::temperature(warnings, withMax).isValid());
        warnings.temperatures.threshold = 70;
        QVERIFY(StatWarning::temperature(warnings, withMax).isValid());
        // A sensor's maximum that is no temperature counts as none.
        warnings.temperaturesAtSensorMax = true;
        warnings.temperatures.threshold = 85;
        QVERIFY(!StatWarning::temperature(warnings, {QStringLiteral("NVMe"), 80, 65261.85, {}})
                     .isValid());
    }

    void cpuWarnsAboveAndBatteryBelow() {
        const StatsWarning cpu{true, 90, {1, 0, 0, 1}};
        QVERIFY(!StatWarning::above(cpu, 90).isValid());
        QVERIFY(StatWarning::above(cpu, 90.5).isValid());
        QVERIFY(!StatWarning::above(StatsWarning{false, 90, {1, 0, 0, 1}}, 100).isValid());
        const StatsWarning battery{true, 15, {1, 0, 0, 1}};
        QVERIFY(StatWarning::below(battery, 14).isValid());
        QVERIFY(!StatWarning::below(battery, 15).isValid());
        QVERIFY(!StatWarning::above(cpu, std::nan("")).isValid());
    }

    void batteryDetails() {
        using State = BatteryReading::State;
        QCOMPARE(ExtraStatRows::batteryDetail({0.75, State::Charging, {}, 1800, true}),
                 QStringLiteral(u"75% \u00B7 0:30 to full"));
        QCOMPARE(ExtraStatRows::batteryDetail({1, State::Full, {}, {}, true}),
                 QStringLiteral(u"100% \u00B7 full"));
        QCOMPARE(ExtraStatRows::batteryDetail({0.8, State::NotCharging, {}, {}, true}),
                 QStringLiteral(u"80% \u00B7 on AC"));
        QCOMPARE(ExtraStatRows::batteryDetail({0.6, State::Unknown, {}, {}, false}),
                 QStringLiteral("60%"));
        QCOMPARE(ExtraStatRows::duration(4 * 3600 + 5 * 60 + 20), QStringLiteral("4:05"));
    }
};

QTEST_MAIN(StatsRowsTest)
#include "tst_statsrows.moc"
