// SPDX-License-Identifier: GPL-3.0-or-later

// The inspector's section of a system-stats panel: a switch for each optional row, and each
// figure row's warning, driven as a user drives them, on the laptop of tests/data/machines.

#include "support/InspectorTesting.h"
#include "support/MachineTree.h"

#include "editor/ColorWell.h"
#include "editor/FormSection.h"
#include "editor/InspectorView.h"
#include "editor/MiniSwitch.h"
#include "editor/StepperLabel.h"
#include "render/PanelContentView.h"

#include <QCheckBox>
#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

Panel statsPanel() {
    Panel panel = Panel::makeDefault(PanelType::SystemStats);
    panel.frame = {40, 40, 280, 640};
    return panel;
}

QStringList previewLabels(InspectorView& inspector) {
    QStringList labels;
    for (const StatsLayout::Row& row : inspector.preview().statsLayout().rows)
        labels.append(row.row.label);
    return labels;
}

QStringList sectionTitlesInOrder(InspectorView& inspector) {
    QList<FormSection*> sections = inspector.findChildren<FormSection*>();
    std::sort(sections.begin(), sections.end(), [&inspector](FormSection* a, FormSection* b) {
        return a->mapTo(&inspector, QPoint()).y() < b->mapTo(&inspector, QPoint()).y();
    });
    QStringList titles;
    for (FormSection* section : sections)
        titles.append(section->title());
    return titles;
}

} // namespace

class InspectorStatsTest : public QObject, private InspectorFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { loadMachineTree(m_machine.system(), QStringLiteral("intel-laptop")); }
    void cleanup() { close(); }

    void sectionFollowsSourceForStatsPanelsOnly() {
        InspectorView& inspector = open({statsPanel()});
        QVERIFY(QTest::qWaitForWindowExposed(&inspector));
        QCOMPARE(sectionTitlesInOrder(inspector),
                 (QStringList{QStringLiteral("Preview"), QStringLiteral("General"),
                              QStringLiteral("Source"), QStringLiteral("Rows & Warnings"),
                              QStringLiteral("Appearance"), QStringLiteral("Position & Size")}));
        // The same inspector showing the panel as another type loses the section.
        Panel panel = stored(store().panels().first().id);
        panel.type = PanelType::Text;
        store().update(panel);
        QTRY_VERIFY(!control<QWidget>("statsSection"));
        QVERIFY(!sectionTitlesInOrder(inspector).contains(QStringLiteral("Rows & Warnings")));
    }

    void eachSwitchAddsItsRowToThePanel_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("label");
        QTest::newRow("cores") << QStringLiteral("coresSwitch") << QStringLiteral("Cores");
        QTest::newRow("load") << QStringLiteral("loadSwitch") << QStringLiteral("Load");
        QTest::newRow("swap") << QStringLiteral("swapSwitch") << QStringLiteral("Swap");
        QTest::newRow("temperatures")
            << QStringLiteral("temperaturesSwitch") << QStringLiteral("NVMe");
        QTest::newRow("fans") << QStringLiteral("fansSwitch") << QStringLiteral("Processor Fan");
        QTest::newRow("battery") << QStringLiteral("batterySwitch") << QStringLiteral("Battery");
    }

    void eachSwitchAddsItsRowToThePanel() {
        QFETCH(QString, name);
        QFETCH(QString, label);
        const Panel panel = statsPanel();
        InspectorView& inspector = open({panel});
        QVERIFY(QTest::qWaitForWindowExposed(&inspector));
        QTRY_COMPARE(previewLabels(inspector),
                     (QStringList{QStringLiteral("CPU"), QStringLiteral("Memory")}));
        auto* toggle = m_inspector->findChild<MiniSwitch*>(name);
        QVERIFY(toggle);
        QVERIFY(!toggle->isChecked());
        m_machine.advanceClock(1);
        QTest::mouseClick(toggle, Qt::LeftButton);
        QVERIFY(toggle->isChecked());
        QVERIFY(stored(panel.id).systemStats.rows != StatsRows{});
        QTRY_VERIFY(previewLabels(inspector).contains(label));
        m_machine.advanceClock(1);
        QTest::mouseClick(toggle, Qt::LeftButton);
        QCOMPARE(stored(panel.id).systemStats.rows, StatsRows{});
        QTRY_VERIFY(!previewLabels(inspector).contains(label));
    }

    void switchesShowTheStoredRows() {
        Panel panel = statsPanel();
        panel.systemStats.rows.fans = true;
        open({panel});
        QVERIFY(control<MiniSwitch>("fansSwitch")->isChecked());
        QVERIFY(!control<MiniSwitch>("batterySwitch")->isChecked());
    }

    void warningIsTurnedOnSteppedAndColoured() {
        const Panel panel = statsPanel();
        open({panel});
        auto* stepper = control<StepperLabel>("cpuWarningStepper");
        QCOMPARE(stepper->text(), QStringLiteral("above 90%"));
        QVERIFY(!stepper->isEnabled());
        QTest::mouseClick(control<MiniSwitch>("cpuWarningSwitch"), Qt::LeftButton);
        QVERIFY(stored(panel.id).systemStats.warnings.cpu.isOn);
        QVERIFY(stepper->isEnabled());
        QTest::mouseClick(button(stepper, "decrementButton"), Qt::LeftButton);
        QCOMPARE(stored(panel.id).systemStats.warnings.cpu.threshold, 85.0);
        QCOMPARE(stepper->text(), QStringLiteral("above 85%"));
        control<ColorWell>("cpuWarningColorWell")->setColor(QColor(255, 128, 0));
        const StatsWarning cpu = stored(panel.id).systemStats.warnings.cpu;
        QCOMPARE(cpu, (StatsWarning{true, 85, ColorWell::toCodable(QColor(255, 128, 0))}));
        // The other warnings are as they were.
        QCOMPARE(stored(panel.id).systemStats.warnings.memory, StatsWarnings{}.memory);
    }

    void warningsStartFromTheirDefaults() {
        open({statsPanel()});
        QCOMPARE(control<StepperLabel>("batteryWarningStepper")->text(),
                 QStringLiteral("below 15%"));
        QCOMPARE(control<StepperLabel>("temperaturesWarningStepper")->text(),
                 QStringLiteral(u"above 85 \u00B0C"));
        QCOMPARE(control<StepperLabel>("disksWarningStepper")->text(),
                 QStringLiteral("above 90% used"));
        auto* sensorMax = control<QCheckBox>("temperaturesAtSensorMaxToggle");
        QVERIFY(sensorMax->isChecked());
    }

    void temperaturesCanWarnAtTheThresholdAlone() {
        const Panel panel = statsPanel();
        open({panel});
        QTest::mouseClick(control<MiniSwitch>("temperaturesWarningSwitch"), Qt::LeftButton);
        auto* sensorMax = control<QCheckBox>("temperaturesAtSensorMaxToggle");
        QVERIFY(sensorMax->isEnabled());
        sensorMax->click();
        QVERIFY(!stored(panel.id).systemStats.warnings.temperaturesAtSensorMax);
        QVERIFY(!sensorMax->isChecked());
    }

    void previewTakesTheWarningColour() {
        Panel panel = statsPanel();
        panel.systemStats.rows.battery = true;
        InspectorView& inspector = open({panel});
        QVERIFY(QTest::qWaitForWindowExposed(&inspector));
        QTRY_VERIFY(previewLabels(inspector).contains(QStringLiteral("Battery")));
        QTest::mouseClick(control<MiniSwitch>("batteryWarningSwitch"), Qt::LeftButton);
        // The laptop's batteries are at 57 %: above the default 15 %, then below 60 %.
        const auto batteryRow = [&inspector]() -> StatRow {
            for (const StatsLayout::Row& row : inspector.preview().statsLayout().rows) {
                if (row.row.label == u"Battery")
                    return row.row;
            }
            return {};
        };
        QVERIFY(!batteryRow().warningColor.isValid());
        auto* stepper = control<StepperLabel>("batteryWarningStepper");
        for (int i = 0; i < 9; ++i)
            QTest::mouseClick(button(stepper, "incrementButton"), Qt::LeftButton);
        QCOMPARE(stored(panel.id).systemStats.warnings.battery.threshold, 60.0);
        QTRY_VERIFY(batteryRow().warningColor.isValid());
    }
};

QTEST_MAIN(InspectorStatsTest)
#include "tst_inspectorstats.moc"
