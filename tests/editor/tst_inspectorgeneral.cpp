// SPDX-License-Identifier: GPL-3.0-or-later

// The inspector's General section: the panel's name, whether it is shown, and its refresh
// interval.

#include "support/InspectorTesting.h"

#include "editor/InspectorView.h"
#include "editor/StepperLabel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include <limits>

using namespace corkwheel;
using namespace corkwheel::test;

class InspectorGeneralTest : public QObject, private InspectorFixture {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { close(); }

    void generalRowsShowThePanel() {
        Panel panel = textPanel(QStringLiteral("Notes"), kInspectorFrame, false);
        make({panel});
        QCOMPARE(control<QLineEdit>("nameField")->text(), QStringLiteral("Notes"));
        QCOMPARE(rowLabel(control<QLineEdit>("nameField")), QStringLiteral("Name"));
        QCOMPARE(control<QCheckBox>("enabledToggle")->text(), QStringLiteral("Enabled"));
        QVERIFY(!control<QCheckBox>("enabledToggle")->isChecked());
        // The name heads the inspector, over the form.
        const auto* title = control<QLabel>("inspectorTitle");
        QVERIFY(title->isVisibleTo(m_inspector.get()));
        QCOMPARE(title->text(), QStringLiteral("Notes"));
        QVERIFY(title->mapTo(m_inspector.get(), QPoint()).y() <
                control<QLineEdit>("nameField")->mapTo(m_inspector.get(), QPoint()).y());
        Panel renamed = panel;
        renamed.name = QStringLiteral("Notes for today");
        store().update(renamed);
        QCOMPARE(title->text(), QStringLiteral("Notes for today"));
        // The type is chosen when a panel is added; the only pickers here are the style's.
        QStringList pickers;
        for (QComboBox* picker : m_inspector->findChildren<QComboBox*>())
            pickers << picker->objectName();
        pickers.sort();
        QCOMPARE(pickers,
                 QStringList({QStringLiteral("alignmentPicker"), QStringLiteral("fontPicker")}));
    }

    void fractionalRefreshIntervalIsLabelledTruncated_data() {
        QTest::addColumn<double>("interval");
        QTest::addColumn<QString>("label");
        QTest::newRow("two and a half seconds") << 2.5 << QStringLiteral("Refresh every 2s");
        QTest::newRow("five whole seconds") << 5.0 << QStringLiteral("Refresh every 5s");
        QTest::newRow("just under an hour") << 3599.9 << QStringLiteral("Refresh every 3599s");
    }

    void fractionalRefreshIntervalIsLabelledTruncated() {
        QFETCH(double, interval);
        QFETCH(QString, label);
        Panel panel = textPanel(QStringLiteral("Notes"), kInspectorFrame);
        panel.refreshInterval = interval;
        make({panel});
        QCOMPARE(control<StepperLabel>("refreshStepper")->text(), label);
    }

    void stepperNumbersAreCutTowardZero() {
        QCOMPARE(checkedWholeNumber(2.9), Q_INT64_C(2));
        QCOMPARE(checkedWholeNumber(-2.9), Q_INT64_C(-2));
        QCOMPARE(checkedWholeNumber(0.0), Q_INT64_C(0));
        QCOMPARE(checkedWholeNumber(9.0e18), Q_INT64_C(9000000000000000000));
        QCOMPARE(checkedWholeNumber(-9223372036854775808.0), std::numeric_limits<qint64>::min());
        QCOMPARE(stepperLabelText(QStringLiteral("Size: %1 pt"), 12.99),
                 QStringLiteral("Size: 12 pt"));
    }

    void refreshStepperStepsByOneWithinItsRange() {
        Panel panel = textPanel(QStringLiteral("Notes"), kInspectorFrame);
        panel.refreshInterval = 5;
        make({panel});
        auto* stepper = control<StepperLabel>("refreshStepper");
        QTest::mouseClick(button(stepper, "incrementButton"), Qt::LeftButton);
        QCOMPARE(stored(panel.id).refreshInterval, 6.0);
        QCOMPARE(stepper->text(), QStringLiteral("Refresh every 6s"));
        QTest::mouseClick(button(stepper, "decrementButton"), Qt::LeftButton);
        QTest::mouseClick(button(stepper, "decrementButton"), Qt::LeftButton);
        QCOMPARE(stored(panel.id).refreshInterval, 4.0);

        panel = stored(panel.id);
        panel.refreshInterval = 1;
        store().update(panel);
        QVERIFY(!button(stepper, "decrementButton")->isEnabled());
        QTest::mouseClick(button(stepper, "decrementButton"), Qt::LeftButton);
        QCOMPARE(stored(panel.id).refreshInterval, 1.0);

        panel.refreshInterval = 3600;
        store().update(panel);
        QVERIFY(!button(stepper, "incrementButton")->isEnabled());
        QTest::mouseClick(button(stepper, "incrementButton"), Qt::LeftButton);
        QCOMPARE(stored(panel.id).refreshInterval, 3600.0);
        QTest::mouseClick(button(stepper, "decrementButton"), Qt::LeftButton);
        QCOMPARE(stored(panel.id).refreshInterval, 3599.0);
        QCOMPARE(stepper->text(), QStringLiteral("Refresh every 3599s"));
    }

    void editingTheNameReachesTheStoreAndTheDocument() {
        Panel panel = textPanel(QStringLiteral("Notes"), kInspectorFrame);
        open({panel});
        QSignalSpy writes(&store(), &PanelStore::documentWritten);
        auto* name = control<QLineEdit>("nameField");
        name->setFocus();
        QTest::keyClick(name, Qt::Key_End);
        QTest::keyClicks(name, QStringLiteral(" 2"));
        QCOMPARE(stored(panel.id).name, QStringLiteral("Notes 2"));
        QCOMPARE(control<QLabel>("inspectorTitle")->text(), QStringLiteral("Notes 2"));
        QCOMPARE(m_fixture->savedPanels().first().name, QStringLiteral("Notes"));
        QTRY_COMPARE(m_fixture->savedPanels().first().name, QStringLiteral("Notes 2"));
        // Both keystrokes went out in one write.
        QCOMPARE(writes.count(), 1);
    }
};

QTEST_MAIN(InspectorGeneralTest)
#include "tst_inspectorgeneral.moc"
