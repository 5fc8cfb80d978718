// SPDX-License-Identifier: GPL-3.0-or-later

// What a system-stats panel's runner reads for the optional rows, on the laptop of
// tests/data/machines: what the panel asks for, and nothing else.

#include "engine/PanelRunner.h"
#include "support/BackgroundWork.h"
#include "support/FakeMachine.h"
#include "support/MachineTree.h"

#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

Panel statsPanel(const StatsRows& rows) {
    Panel panel = Panel::makeDefault(PanelType::SystemStats);
    panel.systemStats.rows = rows;
    return panel;
}

bool readUnder(const QStringList& paths, const QString& folder) {
    return std::any_of(paths.cbegin(), paths.cend(),
                       [&folder](const QString& path) { return path.startsWith(folder); });
}

const QString kHwmon = QStringLiteral("/sys/class/hwmon");
const QString kPowerSupply = QStringLiteral("/sys/class/power_supply");
const QString kThermal = QStringLiteral("/sys/class/thermal");
const QString kLoadavg = QStringLiteral("/proc/loadavg");

} // namespace

class PanelRunnerStatsRowsTest : public QObject {
    Q_OBJECT

    std::unique_ptr<FakeMachine> m_machine;

private Q_SLOTS:
    void init() {
        m_machine = std::make_unique<FakeMachine>();
        loadMachineTree(m_machine->system(), QStringLiteral("intel-laptop"));
    }

    void panelAskingForNoneReadsWhatItAlwaysDid() {
        PanelRunner runner(statsPanel({}), m_machine->services());
        refreshStatsAndWait(runner, &PanelRunner::start);
        const QStringList paths = m_machine->system().pathsRead();
        QCOMPARE(paths.count(QStringLiteral("/proc/stat")), 1);
        QCOMPARE(paths.count(QStringLiteral("/proc/meminfo")), 1);
        for (const QString& folder : {kHwmon, kPowerSupply, kThermal, kLoadavg})
            QVERIFY2(!readUnder(paths, folder), qPrintable(folder));
        const SystemStatsSample stats = runner.stats();
        QCOMPARE(stats.rowsRead, StatsRows{});
        QVERIFY(stats.coreUsages.isEmpty() && stats.temperatures.isEmpty() &&
                stats.fans.isEmpty() && !stats.battery && !stats.swap && !stats.load);
    }

    void everyRowAskedForIsRead() {
        const StatsRows all{true, true, true, true, true, true};
        m_machine->setShares(2);
        PanelRunner runner(statsPanel(all), m_machine->services());
        refreshStatsAndWait(runner, &PanelRunner::start);
        const SystemStatsSample stats = runner.stats();
        QCOMPARE(stats.rowsRead, all);
        QCOMPARE(stats.coreUsages.size(), 4);
        QCOMPARE(stats.load, std::optional(LoadAverage{3.1, 2.4, 1.95}));
        QCOMPARE(stats.onlineCpus, 4);
        QVERIFY(stats.swap && stats.swap->totalGB > 0);
        QCOMPARE(stats.temperatures.size(), 2);
        QCOMPARE(stats.fans.size(), 2);
        QVERIFY(stats.battery);
        // The disks are still there.
        QCOMPARE(stats.disks.size(), 2);
        QVERIFY(stats.memoryTotalGB > 0);
    }

    void onlyTheSensorsAskedForAreRead() {
        PanelRunner runner(statsPanel(StatsRows{false, false, false, true, false, false}),
                           m_machine->services());
        refreshStatsAndWait(runner, &PanelRunner::start);
        const QStringList paths = m_machine->system().pathsRead();
        QVERIFY(readUnder(paths, kHwmon));
        QVERIFY(!readUnder(paths, kPowerSupply));
        QVERIFY(!paths.contains(QStringLiteral("/sys/class/hwmon/hwmon4/fan1_input")));
        QVERIFY(paths.contains(QStringLiteral("/sys/class/hwmon/hwmon3/temp1_input")));
        QCOMPARE(runner.stats().temperatures.size(), 2);
    }

    void turningARowOnReadsItAtOnce() {
        PanelRunner runner(statsPanel({}), m_machine->services());
        refreshStatsAndWait(runner, &PanelRunner::start);
        QVERIFY(!runner.stats().battery);
        m_machine->advanceClock(1);
        QSignalSpy stats(&runner, &PanelRunner::statsChanged);
        runner.apply(statsPanel(StatsRows{false, false, false, false, false, true}));
        QTRY_VERIFY(!stats.isEmpty());
        QVERIFY(runner.stats().battery);
    }

    void changingAWarningReadsNothingAgain() {
        Panel panel = statsPanel({});
        PanelRunner runner(panel, m_machine->services());
        refreshStatsAndWait(runner, &PanelRunner::start);
        const qsizetype before = m_machine->system().pathsRead().size();
        panel.systemStats.warnings.cpu.isOn = true;
        runner.apply(panel);
        waitForBackgroundWork();
        QCOMPARE(m_machine->system().pathsRead().size(), before);

        // A row turned on the same way is read at once.
        panel.systemStats.rows.battery = true;
        QSignalSpy stats(&runner, &PanelRunner::statsChanged);
        runner.apply(panel);
        QTRY_VERIFY(!stats.isEmpty());
        QCOMPARE_GT(m_machine->system().pathsRead().size(), before);
    }
};

QTEST_GUILESS_MAIN(PanelRunnerStatsRowsTest)
#include "tst_panelrunnerstatsrows.moc"
