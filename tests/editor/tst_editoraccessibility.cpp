// SPDX-License-Identifier: GPL-3.0-or-later

// The editor as Qt describes it to a screen reader: every control named for what it
// changes, in the role that says how to use it, with its state; the list's rows named by
// their panels and holding their switches, the steppers spin controls with a value and a
// range. Read in process, through the interfaces the screen reader bridge reads.

#include "support/EditorFixture.h"
#include "support/PanelFixtures.h"
#include "support/PrivateConfigHome.h"
#include "support/SidebarHarness.h"

#include "editor/AppOptionsPopover.h"
#include "editor/ColorWell.h"
#include "editor/MiniSwitch.h"
#include "editor/PanelRow.h"
#include "editor/SidebarView.h"
#include "editor/StepperLabel.h"
#include "model/PanelLimits.h"
#include "model/PanelType.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QLineEdit>
#include <QListWidget>
#include <QToolButton>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

// Roles a user acts on; a control in one of them needs a name to be told apart.
bool isInteractiveRole(QAccessible::Role role) {
    switch (role) {
    case QAccessible::Button:
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
    case QAccessible::ComboBox:
    case QAccessible::SpinBox:
    case QAccessible::Slider:
    case QAccessible::EditableText:
    case QAccessible::ListItem:
    case QAccessible::ButtonMenu:
    case QAccessible::ButtonDropDown:
    case QAccessible::MenuItem:
    case QAccessible::Link:
        return true;
    default:
        return false;
    }
}

// Roles that say nothing of how to use a control.
bool isVagueRole(QAccessible::Role role) {
    return role == QAccessible::NoRole || role == QAccessible::Client ||
           role == QAccessible::Pane || role == QAccessible::Grouping;
}

QString describe(QAccessibleInterface* iface) {
    QObject* object = iface->object();
    return QStringLiteral("%1 %2 role %3 name \"%4\"")
        .arg(object ? QString::fromLatin1(object->metaObject()->className()) : QString(),
             object ? object->objectName() : QString())
        .arg(static_cast<int>(iface->role()))
        .arg(iface->text(QAccessible::Name));
}

// Every interface below `root`, `root` included, as a screen reader walks down to them;
// each child's parent must lead back to where it was found.
QList<QAccessibleInterface*> walk(QAccessibleInterface* root, QStringList& problems) {
    QList<QAccessibleInterface*> found{root};
    for (int i = 0; i < root->childCount(); ++i) {
        QAccessibleInterface* child = root->child(i);
        if (!child) {
            problems << describe(root) + QStringLiteral(": no child %1").arg(i);
            continue;
        }
        QAccessibleInterface* parent = child->parent();
        if (!parent || parent->object() != root->object() || root->indexOfChild(child) != i)
            problems << describe(child) + QStringLiteral(": a parent other than ") + describe(root);
        found += walk(child, problems);
    }
    return found;
}

QAccessibleInterface* interfaceOf(QObject* object) {
    return QAccessible::queryAccessibleInterface(object);
}

// What is wrong with the tree of `window` as a screen reader reads it: a control without a
// name or a role that says what it is, one the keyboard reaches that the tree does not hold,
// a child whose parent leads elsewhere.
QStringList problemsOf(QWidget& window) {
    QStringList problems;
    const QList<QAccessibleInterface*> tree = walk(interfaceOf(&window), problems);
    QSet<QObject*> objects;
    for (QAccessibleInterface* iface : tree) {
        objects.insert(iface->object());
        const QAccessible::State state = iface->state();
        if (state.invisible || !(state.focusable || isInteractiveRole(iface->role())))
            continue;
        if (iface->text(QAccessible::Name).trimmed().isEmpty())
            problems << QStringLiteral("no name: ") + describe(iface);
        if (isVagueRole(iface->role()))
            problems << QStringLiteral("no role: ") + describe(iface);
    }
    for (QWidget* control : reachableControls(window)) {
        if (!objects.contains(control))
            problems << QStringLiteral("not in the tree: ") + describe(interfaceOf(control));
    }
    return problems;
}

// The on/off property of a panel that a toggle of the editor sets.
enum class PanelFlag { Enabled, TextShadow, EachCore, CpuWarning, SensorMaximum };

bool isSet(const Panel& panel, PanelFlag flag) {
    switch (flag) {
    case PanelFlag::Enabled:
        return panel.isEnabled;
    case PanelFlag::TextShadow:
        return panel.style.showShadow;
    case PanelFlag::EachCore:
        return panel.systemStats.rows.cores;
    case PanelFlag::CpuWarning:
        return panel.systemStats.warnings.cpu.isOn;
    case PanelFlag::SensorMaximum:
        return panel.systemStats.warnings.temperaturesAtSensorMax;
    }
    return false;
}

QAccessibleInterface* rowInterface(SidebarView& sidebar, int index) {
    return interfaceOf(panelListOf(sidebar))->child(index);
}

} // namespace

Q_DECLARE_METATYPE(PanelFlag)

class EditorAccessibilityTest : public QObject {
    Q_OBJECT

    PrivateConfigHome m_configHome;
    EditorFixture m_editor;

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_configHome.use()); }
    void cleanup() { m_editor.close(); }

    void everyControlHasANameAndARole_data() { addRowPerPanelType(); }

    void everyControlHasANameAndARole() {
        QFETCH(PanelType, type);
        QVERIFY(m_editor.open(
            {panelWithEveryControl(type), silentPanel(PanelType::Clock, QStringLiteral("Two"))}));
        EditorWindow& window = m_editor.window();
        // The walk reaches the controls the keyboard does: there are some to check.
        QVERIFY(reachableControls(window).size() > 10);
        QStringList problems = problemsOf(window);
        QVERIFY2(problems.isEmpty(), qPrintable(u'\n' + problems.join(u'\n')));

        window.appOptionsAction()->trigger();
        QTRY_VERIFY(window.showingAppOptions());
        QVERIFY(reachableControls(window.appOptions()).size() == 3);
        problems = problemsOf(window.appOptions());
        QVERIFY2(problems.isEmpty(), qPrintable(u'\n' + problems.join(u'\n')));
        QCOMPARE(interfaceOf(&window.appOptions())->text(QAccessible::Name),
                 QStringLiteral("App Options"));
    }

    void listHoldsARowPerPanelNamedByItsPanel() {
        Panel unnamed = silentPanel(PanelType::File, QString());
        unnamed.isEnabled = false;
        QVERIFY(m_editor.open({silentPanel(PanelType::Clock, QStringLiteral("Morning clock")),
                               silentPanel(PanelType::Shell, QStringLiteral("Uptime")), unnamed}));
        SidebarView& sidebar = m_editor.view().sidebar();
        QAccessibleInterface* list = interfaceOf(panelListOf(sidebar));
        QCOMPARE(list->role(), QAccessible::List);
        QCOMPARE(list->text(QAccessible::Name), QStringLiteral("Panels"));
        QCOMPARE(list->childCount(), 3);
        QStringList names;
        QStringList descriptions;
        for (int i = 0; i < list->childCount(); ++i) {
            QCOMPARE(list->child(i)->role(), QAccessible::ListItem);
            names << list->child(i)->text(QAccessible::Name);
            descriptions << list->child(i)->text(QAccessible::Description);
        }
        // A panel without a name goes by its type's.
        QCOMPARE(names, (QStringList{QStringLiteral("Morning clock"), QStringLiteral("Uptime"),
                                     displayName(PanelType::File)}));
        QCOMPARE(descriptions,
                 (QStringList{displayName(PanelType::Clock), displayName(PanelType::Shell),
                              displayName(PanelType::File)}));

        // Selected and under the keyboard as the list shows it.
        QTRY_VERIFY(rowInterface(sidebar, 0)->state().selected);
        QVERIFY(!rowInterface(sidebar, 1)->state().selected);
        QTRY_VERIFY(panelListOf(sidebar)->hasFocus());
        QVERIFY(rowInterface(sidebar, 0)->state().focused);
        QCOMPARE(list->focusChild(), rowInterface(sidebar, 0));
        press(Qt::Key_Down);
        QVERIFY(rowInterface(sidebar, 1)->state().selected);
        QVERIFY(rowInterface(sidebar, 1)->state().focused);
        QVERIFY(!rowInterface(sidebar, 0)->state().selected);
        QCOMPARE(list->focusChild(), rowInterface(sidebar, 1));

        // Renamed in the store, renamed for the screen reader.
        Panel renamed = m_editor.store().panels().at(1);
        renamed.name = QStringLiteral("Load");
        m_editor.store().update(renamed);
        QCOMPARE(rowInterface(sidebar, 1)->text(QAccessible::Name), QStringLiteral("Load"));
    }

    void eachRowHoldsItsSwitchAsACheckBox() {
        QVERIFY(m_editor.open({silentPanel(PanelType::Clock, QStringLiteral("Morning clock"))}));
        SidebarView& sidebar = m_editor.view().sidebar();
        QAccessibleInterface* row = rowInterface(sidebar, 0);
        QCOMPARE(row->childCount(), 1);
        QAccessibleInterface* toggle = row->child(0);
        QCOMPARE(toggle->object(), rowsOf(sidebar).at(0)->enabledSwitch());
        QCOMPARE(toggle->role(), QAccessible::CheckBox);
        QCOMPARE(toggle->text(QAccessible::Name), QStringLiteral("Morning clock enabled"));
        QVERIFY(toggle->state().checkable);
        QVERIFY(toggle->state().checked);
        QVERIFY(toggle->state().focusable);

        Panel off = m_editor.store().panels().at(0);
        off.isEnabled = false;
        m_editor.store().update(off);
        QVERIFY(!toggle->state().checked);
    }

    // The one action a screen reader offers on a switch or a check box flips it, and the
    // panel with it.
    void toggleActionChangesThePanel_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<PanelFlag>("flag");
        QTest::newRow("row switch") << QStringLiteral("enabledSwitch") << PanelFlag::Enabled;
        QTest::newRow("enabled") << QStringLiteral("enabledToggle") << PanelFlag::Enabled;
        QTest::newRow("text shadow") << QStringLiteral("shadowToggle") << PanelFlag::TextShadow;
        QTest::newRow("each core") << QStringLiteral("coresSwitch") << PanelFlag::EachCore;
        QTest::newRow("cpu warning") << QStringLiteral("cpuWarningSwitch") << PanelFlag::CpuWarning;
        QTest::newRow("sensor maximum")
            << QStringLiteral("temperaturesAtSensorMaxToggle") << PanelFlag::SensorMaximum;
    }

    void toggleActionChangesThePanel() {
        QFETCH(QString, name);
        QFETCH(PanelFlag, flag);
        const auto isOn = [flag](const Panel& panel) { return isSet(panel, flag); };
        QVERIFY(m_editor.open({panelWithEveryControl(PanelType::SystemStats)}));
        auto* control = m_editor.window().findChild<QAbstractButton*>(name);
        QVERIFY(control);
        QAccessibleInterface* iface = interfaceOf(control);
        QCOMPARE(iface->role(), QAccessible::CheckBox);
        QVERIFY(iface->state().checkable);
        const bool before = isOn(m_editor.store().panels().at(0));
        QCOMPARE(bool(iface->state().checked), before);
        QAccessibleActionInterface* actions = iface->actionInterface();
        QVERIFY(actions);
        QCOMPARE(actions->actionNames().value(0), QAccessibleActionInterface::toggleAction());
        actions->doAction(QAccessibleActionInterface::toggleAction());
        QCOMPARE(isOn(m_editor.store().panels().at(0)), !before);
        QCOMPARE(bool(iface->state().checked), !before);
        QTRY_COMPARE(isOn(m_editor.savedPanels().value(0)), !before);
        actions->doAction(QAccessibleActionInterface::toggleAction());
        QCOMPARE(isOn(m_editor.store().panels().at(0)), before);
    }

    void stepperIsASpinControlWithItsValueAndRange() {
        Panel panel = silentPanel(PanelType::Text, QStringLiteral("One"));
        panel.refreshInterval = 5;
        QVERIFY(m_editor.open({panel}));
        QAccessibleInterface* stepper =
            interfaceOf(m_editor.control<StepperLabel>("refreshStepper"));
        QCOMPARE(stepper->role(), QAccessible::SpinBox);
        QCOMPARE(stepper->text(QAccessible::Name), QStringLiteral("Refresh interval"));
        QCOMPARE(stepper->text(QAccessible::Value), QStringLiteral("Refresh every 5s"));
        QVERIFY(stepper->state().focusable);
        QAccessibleValueInterface* value = stepper->valueInterface();
        QVERIFY(value);
        QCOMPARE(value->currentValue().toDouble(), 5.0);
        QCOMPARE(value->minimumValue().toDouble(), PanelLimits::kSteppedRefreshInterval.lowest);
        QCOMPARE(value->maximumValue().toDouble(), PanelLimits::kSteppedRefreshInterval.highest);
        QCOMPARE(value->minimumStepSize().toDouble(), 1.0);

        // Its buttons say which way they step it.
        QCOMPARE(stepper->childCount(), 2);
        QCOMPARE(stepper->child(0)->text(QAccessible::Name),
                 QStringLiteral("Decrease Refresh interval"));
        QCOMPARE(stepper->child(1)->text(QAccessible::Name),
                 QStringLiteral("Increase Refresh interval"));
        QCOMPARE(stepper->child(1)->role(), QAccessible::Button);

        // Set by the screen reader as by the user: within the range, and kept.
        value->setCurrentValue(12.0);
        QCOMPARE(m_editor.store().panels().at(0).refreshInterval, 12.0);
        QCOMPARE(stepper->text(QAccessible::Value), QStringLiteral("Refresh every 12s"));
        value->setCurrentValue(1e9);
        QCOMPARE(m_editor.store().panels().at(0).refreshInterval,
                 PanelLimits::kSteppedRefreshInterval.highest);
        value->setCurrentValue(std::numeric_limits<double>::quiet_NaN());
        QCOMPARE(m_editor.store().panels().at(0).refreshInterval,
                 PanelLimits::kSteppedRefreshInterval.highest);
    }

    void warningControlsSayWhichWarningTheySet() {
        QVERIFY(m_editor.open({panelWithEveryControl(PanelType::SystemStats)}));
        QCOMPARE(
            interfaceOf(m_editor.control<MiniSwitch>("cpuWarningSwitch"))->text(QAccessible::Name),
            QStringLiteral("Warn on CPU"));
        QCOMPARE(interfaceOf(m_editor.control<StepperLabel>("cpuWarningStepper"))
                     ->text(QAccessible::Name),
                 QStringLiteral("CPU warning threshold"));
        QCOMPARE(interfaceOf(m_editor.control<ColorWell>("cpuWarningColorWell"))
                     ->text(QAccessible::Name),
                 QStringLiteral("CPU warning color"));
    }

    void colorWellsSayWhatTheySetAndTheColour() {
        Panel panel = silentPanel(PanelType::Text, QStringLiteral("One"));
        panel.style.textColor = {1, 0, 0, 0.5};
        QVERIFY(m_editor.open({panel}));
        QAccessibleInterface* well = interfaceOf(m_editor.control<ColorWell>("textColorWell"));
        QCOMPARE(well->role(), QAccessible::Button);
        QCOMPARE(well->text(QAccessible::Name), QStringLiteral("Text Color"));
        QCOMPARE(well->text(QAccessible::Description), QStringLiteral("#FF0000, 50% opaque"));
        QCOMPARE(interfaceOf(m_editor.control<ColorWell>("backgroundColorWell"))
                     ->text(QAccessible::Name),
                 QStringLiteral("Background Color"));
        Panel changed = m_editor.store().panels().at(0);
        changed.style.textColor = {0, 0, 1, 1};
        m_editor.store().update(changed);
        QCOMPARE(well->text(QAccessible::Description), QStringLiteral("#0000FF, 100% opaque"));
    }

    void positionFieldsSayWhatTheyMeasure() {
        QVERIFY(m_editor.open({silentPanel(PanelType::Text, QStringLiteral("One"))}));
        QStringList names;
        for (const char* field : {"xField", "yField", "widthField", "heightField"})
            names << interfaceOf(m_editor.window()
                                     .findChild<QWidget*>(QLatin1String(field))
                                     ->findChild<QLineEdit*>())
                         ->text(QAccessible::Name);
        QCOMPARE(names, (QStringList{QStringLiteral("X position"), QStringLiteral("Y position"),
                                     QStringLiteral("Width"), QStringLiteral("Height")}));
    }
};

QTEST_MAIN(EditorAccessibilityTest)
#include "tst_editoraccessibility.moc"
