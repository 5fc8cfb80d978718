// SPDX-License-Identifier: GPL-3.0-or-later

// The editor without a mouse: Tab and Shift+Tab through every control in the order they are
// shown, Space on switches, the arrows on steppers, Return on buttons and colour wells,
// Delete on a row of the list and Escape on the popups, with a ring on whichever control
// has the keyboard. On the offscreen platform, with the keys sent where the keyboard's go.

#include "support/EditorFixture.h"
#include "support/PanelFixtures.h"
#include "support/PrivateConfigHome.h"
#include "support/SidebarHarness.h"
#include "support/ViewTesting.h"

#include "editor/AppOptionsPopover.h"
#include "editor/ColorWell.h"
#include "editor/MiniSwitch.h"
#include "editor/PanelRow.h"
#include "editor/SidebarView.h"
#include "editor/StepperLabel.h"
#include "model/PanelType.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QToolBar>
#include <QToolButton>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

QRect windowRect(QWidget* widget) {
    return QRect(widget->mapTo(widget->window(), QPoint(0, 0)), widget->size());
}

// Whether the eye reads `next` after `previous`: to its right on the same line, or on a
// line below it.
bool readsAfter(QWidget* previous, QWidget* next) {
    const QRect before = windowRect(previous);
    const QRect after = windowRect(next);
    const bool sameLine =
        (after.center().y() >= before.top() && after.center().y() <= before.bottom()) ||
        (before.center().y() >= after.top() && before.center().y() <= after.bottom());
    return sameLine ? after.left() > before.left() : after.center().y() > before.center().y();
}

QString describe(const QWidget* widget) {
    return QStringLiteral("%1 %2 \"%3\"")
        .arg(QString::fromLatin1(widget->metaObject()->className()), widget->objectName(),
             widget->accessibleName());
}

QString describe(const QList<QWidget*>& widgets) {
    QStringList lines;
    for (const QWidget* widget : widgets)
        lines << describe(widget);
    return u'\n' + lines.join(u'\n');
}

// The widgets that take the keyboard, one after the other, as `key` is pressed until the
// keyboard is back where it started; at most `limit` of them.
QList<QWidget*> focusCycle(Qt::KeyboardModifiers modifiers, int limit = 200) {
    QWidget* start = QApplication::focusWidget();
    QList<QWidget*> visited{start};
    for (int i = 0; i < limit; ++i) {
        press(Qt::Key_Tab, modifiers);
        QWidget* now = QApplication::focusWidget();
        if (!now || now == start)
            break;
        visited << now;
    }
    return visited;
}

// The pixels of `widget` as they are shown, over what lies beneath it (a selection
// highlight, say), wherever a scroll area has it now.
QImage around(QWidget* widget) {
    QWidget* host = widget->window();
    for (QWidget* parent = widget->parentWidget(); parent; parent = parent->parentWidget()) {
        auto* area = qobject_cast<QAbstractScrollArea*>(parent->parentWidget());
        if (area && area->viewport() == parent) {
            // A form's whole content, scrolled out of view or not; a list's rows as shown.
            auto* form = qobject_cast<QScrollArea*>(area);
            host = form ? form->widget() : parent;
            break;
        }
    }
    return host->grab(QRect(widget->mapTo(host, QPoint(0, 0)), widget->size())).toImage();
}

// The pixels that differ clearly between two pictures of the same place.
int changedPixels(const QImage& before, const QImage& after) {
    constexpr int kClearly = 80;
    int changed = 0;
    for (int y = 0; y < std::min(before.height(), after.height()); ++y) {
        for (int x = 0; x < std::min(before.width(), after.width()); ++x) {
            const QColor a = before.pixelColor(x, y);
            const QColor b = after.pixelColor(x, y);
            const int difference =
                std::max({std::abs(a.red() - b.red()), std::abs(a.green() - b.green()),
                          std::abs(a.blue() - b.blue())});
            if (difference > kClearly)
                ++changed;
        }
    }
    return changed;
}

// A ring round `widget`, or round the text of a check box, changes at least its two ends.
int ringPixels(const QWidget* widget) {
    return 2 * widget->height();
}

} // namespace

class EditorKeyboardTest : public QObject {
    Q_OBJECT

    PrivateConfigHome m_configHome;
    EditorFixture m_editor;

    // Presses Tab until `widget` has the keyboard; false when it never does.
    bool tabTo(QWidget* widget) {
        for (int i = 0; i < 200 && QApplication::focusWidget() != widget; ++i)
            press(Qt::Key_Tab);
        return QApplication::focusWidget() == widget;
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_configHome.use()); }
    void cleanup() { m_editor.close(); }

    void keyboardStartsInThePanelList() {
        QVERIFY(m_editor.open({silentPanel(PanelType::Text, QStringLiteral("One"))}));
        QTRY_COMPARE(QApplication::focusWidget(), panelListOf(m_editor.view().sidebar()));
    }

    void tabReachesEveryControlInTheOrderShown_data() { addRowPerPanelType(); }

    // From the list: the rows' switches and "Add Panel" below it, the inspector's controls
    // top to bottom, then the toolbar's buttons, and round to the list again.
    void tabReachesEveryControlInTheOrderShown() {
        QFETCH(PanelType, type);
        QVERIFY(m_editor.open(
            {panelWithEveryControl(type), silentPanel(PanelType::Text, QStringLiteral("Second"))}));
        EditorWindow& window = m_editor.window();
        QListWidget* list = panelListOf(m_editor.view().sidebar());
        QTRY_COMPARE(QApplication::focusWidget(), list);

        const QList<QWidget*> cycle = focusCycle(Qt::NoModifier);
        QCOMPARE(QApplication::focusWidget(), list);
        // Each control once, and none left out.
        QList<QWidget*> expected = reachableControls(window);
        QList<QWidget*> visited = cycle;
        std::sort(expected.begin(), expected.end());
        std::sort(visited.begin(), visited.end());
        QVERIFY2(visited == expected, qPrintable(QStringLiteral("visited:") + describe(cycle) +
                                                 QStringLiteral("\nall:") + describe(expected)));

        // The sidebar's, then the inspector's, then the toolbar's, each in reading order.
        const QWidget* sidebar = &m_editor.view().sidebar();
        const QWidget* inspector = m_editor.view().inspector();
        const QWidget* toolbar = window.findChild<QToolBar*>();
        const auto part = [&](const QWidget* widget) {
            return sidebar->isAncestorOf(widget)     ? 0
                   : inspector->isAncestorOf(widget) ? 1
                   : toolbar->isAncestorOf(widget)   ? 2
                                                     : 3;
        };
        QCOMPARE(part(cycle.first()), 0);
        for (int i = 1; i < cycle.size(); ++i) {
            QWidget* previous = cycle.at(i - 1);
            QWidget* next = cycle.at(i);
            const QString step = describe(previous) + QStringLiteral(" then ") + describe(next);
            QVERIFY2(part(next) >= part(previous) && part(next) < 3, qPrintable(step));
            if (part(next) == part(previous))
                QVERIFY2(readsAfter(previous, next), qPrintable(step));
        }

        // Shift+Tab goes the same way back.
        QList<QWidget*> backwards = focusCycle(Qt::ShiftModifier);
        std::reverse(backwards.begin() + 1, backwards.end());
        QCOMPARE(backwards, cycle);
    }

    void tabReachesTheSwitchOfANewRowAfterTheOthers() {
        QVERIFY(m_editor.open({silentPanel(PanelType::Text, QStringLiteral("One"))}));
        m_editor.store().addPanel(PanelType::Clock);
        SidebarView& sidebar = m_editor.view().sidebar();
        const QList<PanelRow*> rows = rowsOf(sidebar);
        QCOMPARE(rows.size(), 2);
        QTRY_COMPARE(QApplication::focusWidget(), panelListOf(sidebar));
        press(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), rows.at(0)->enabledSwitch());
        press(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), rows.at(1)->enabledSwitch());
        press(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), addButtonOf(sidebar));
    }

    void spaceFlipsTheSwitchOfARow() {
        QVERIFY(m_editor.open({silentPanel(PanelType::Text, QStringLiteral("One")),
                               silentPanel(PanelType::Clock, QStringLiteral("Two"))}));
        const QList<PanelRow*> rows = rowsOf(m_editor.view().sidebar());
        QVERIFY(tabTo(rows.at(1)->enabledSwitch()));
        press(Qt::Key_Space);
        QVERIFY(!m_editor.store().panels().at(1).isEnabled);
        QVERIFY(!rows.at(1)->enabledSwitch()->isChecked());
        QVERIFY(m_editor.store().panels().at(0).isEnabled);
        QTRY_VERIFY(!m_editor.savedPanels().value(1).isEnabled);
        press(Qt::Key_Space);
        QVERIFY(m_editor.store().panels().at(1).isEnabled);
        QVERIFY(rows.at(1)->enabledSwitch()->isChecked());
    }

    void arrowsStepTheStepperThatHasTheKeyboard() {
        Panel panel = silentPanel(PanelType::Text, QStringLiteral("One"));
        panel.refreshInterval = 5;
        QVERIFY(m_editor.open({panel}));
        auto* stepper = m_editor.control<StepperLabel>("refreshStepper");
        QVERIFY(tabTo(stepper));
        press(Qt::Key_Up);
        QCOMPARE(stepper->text(), QStringLiteral("Refresh every 6s"));
        QCOMPARE(m_editor.store().panels().at(0).refreshInterval, 6.0);
        press(Qt::Key_Down);
        press(Qt::Key_Down);
        QCOMPARE(stepper->text(), QStringLiteral("Refresh every 4s"));
        press(Qt::Key_PageUp);
        QCOMPARE(stepper->text(), QStringLiteral("Refresh every 14s"));
        press(Qt::Key_PageDown);
        QCOMPARE(m_editor.store().panels().at(0).refreshInterval, 4.0);
        QTRY_COMPARE(m_editor.savedPanels().value(0).refreshInterval, 4.0);
        // The keyboard stays on the stepper: the arrows do not move it.
        QCOMPARE(QApplication::focusWidget(), stepper);
    }

    void arrowsStopAtTheEndsOfTheRange() {
        Panel panel = silentPanel(PanelType::Text, QStringLiteral("One"));
        panel.style.fontSize = 9;
        QVERIFY(m_editor.open({panel}));
        auto* stepper = m_editor.control<StepperLabel>("fontSizeStepper");
        QVERIFY(tabTo(stepper));
        press(Qt::Key_Down);
        QCOMPARE(m_editor.store().panels().at(0).style.fontSize, 8.0);
        press(Qt::Key_Down);
        press(Qt::Key_PageDown);
        QCOMPARE(m_editor.store().panels().at(0).style.fontSize, 8.0);
        QCOMPARE(stepper->text(), QStringLiteral("Size: 8 pt"));
    }

    void returnOnAddPanelOpensTheTypesAndAddsTheOneChosen() {
        QVERIFY(m_editor.open({silentPanel(PanelType::Text, QStringLiteral("One"))}));
        QVERIFY(tabTo(addButtonOf(m_editor.view().sidebar())));
        const QList<PanelType> types = allPanelTypes();
        const auto wanted = static_cast<int>(types.indexOf(PanelType::Clock));
        QString chosen;
        onPopup([&](QMenu& menu) {
            for (int i = 0; i <= wanted; ++i)
                QTest::keyClick(&menu, Qt::Key_Down);
            chosen = menu.activeAction() ? menu.activeAction()->text() : QString();
            QTest::keyClick(&menu, Qt::Key_Return);
        });
        press(Qt::Key_Return);
        QTRY_COMPARE(chosen, displayName(PanelType::Clock));
        QTRY_COMPARE(m_editor.store().panels().size(), 2);
        QCOMPARE(m_editor.store().panels().at(1).type, PanelType::Clock);
    }

    void escapeClosesTheAddPanelMenuWithoutAdding() {
        QVERIFY(m_editor.open({silentPanel(PanelType::Text, QStringLiteral("One"))}));
        QVERIFY(tabTo(addButtonOf(m_editor.view().sidebar())));
        bool opened = false;
        onPopup([&](QMenu& menu) {
            opened = menu.isVisible();
            QTest::keyClick(&menu, Qt::Key_Down);
            QTest::keyClick(&menu, Qt::Key_Escape);
        });
        press(Qt::Key_Return);
        QTRY_VERIFY(opened);
        QTRY_VERIFY(!QApplication::activePopupWidget());
        QCOMPARE(m_editor.store().panels().size(), 1);
        QTRY_COMPARE(QApplication::focusWidget(), addButtonOf(m_editor.view().sidebar()));
    }

    void returnOnAColorWellOpensItsDialogAndEscapeClosesIt() {
        QVERIFY(m_editor.open({silentPanel(PanelType::Text, QStringLiteral("One"))}));
        const Panel before = m_editor.store().panels().at(0);
        auto* well = m_editor.control<ColorWell>("textColorWell");
        QVERIFY(tabTo(well));
        press(Qt::Key_Return);
        QColorDialog* dialog = nullptr;
        QTRY_VERIFY((dialog = well->findChild<QColorDialog*>()) && dialog->isVisible());
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Text Color"));
        // The window manager gives the dialog the keyboard; the offscreen platform has none.
        QTest::keyClick(dialog->focusWidget() ? dialog->focusWidget() : dialog, Qt::Key_Escape);
        QTRY_VERIFY(!well->findChild<QColorDialog*>() || !dialog->isVisible());
        QCOMPARE(m_editor.store().panels().at(0), before);
    }

    void deleteRemovesThePanelOfTheRowPickedWithTheArrows() {
        QVERIFY(m_editor.open({silentPanel(PanelType::Text, QStringLiteral("One")),
                               silentPanel(PanelType::Clock, QStringLiteral("Two")),
                               silentPanel(PanelType::File, QStringLiteral("Three"))}));
        SidebarView& sidebar = m_editor.view().sidebar();
        QTRY_COMPARE(QApplication::focusWidget(), panelListOf(sidebar));
        QTRY_COMPARE(m_editor.view().selection(), m_editor.store().panels().at(0).id);
        press(Qt::Key_Down);
        QCOMPARE(m_editor.view().selection(), m_editor.store().panels().at(1).id);
        QTRY_COMPARE(m_editor.view().inspector()->panel().name, QStringLiteral("Two"));
        press(Qt::Key_Delete);
        QCOMPARE(m_editor.store().panels().size(), 2);
        QStringList names;
        for (PanelRow* row : rowsOf(sidebar))
            names << row->panel().name;
        QCOMPARE(names, (QStringList{QStringLiteral("One"), QStringLiteral("Three")}));
        // As a click on "Delete" in the row's menu leaves it: nothing selected.
        QVERIFY(m_editor.view().showsPlacard());
        QTRY_COMPARE(m_editor.savedPanels().size(), 2);
    }

    void returnOnAToolbarButtonPressesIt() {
        QVERIFY(m_editor.open({silentPanel(PanelType::Text, QStringLiteral("One"))}));
        EditorWindow& window = m_editor.window();
        QVERIFY(tabTo(window.buttonFor(window.editModeAction())));
        press(Qt::Key_Return);
        QVERIFY(m_editor.store().isEditMode());
        QVERIFY(tabTo(window.buttonFor(window.hideAllAction())));
        press(Qt::Key_Space);
        QVERIFY(m_editor.store().panelsHidden());
    }

    void appOptionsTakeTheKeyboardAndEscapeClosesThem() {
        QVERIFY(m_editor.open({silentPanel(PanelType::Text, QStringLiteral("One"))}));
        EditorWindow& window = m_editor.window();
        QToolButton* button = window.buttonFor(window.appOptionsAction());
        QVERIFY(tabTo(button));
        press(Qt::Key_Return);
        QTRY_VERIFY(window.showingAppOptions());
        AppOptionsPopover& options = window.appOptions();
        QTRY_COMPARE(QApplication::focusWidget(), options.dockIconBox());
        // The menu bar item stays on, so the dock icon may go.
        const bool dockIcon = m_editor.settings().showDockIcon();
        press(Qt::Key_Space);
        QCOMPARE(m_editor.settings().showDockIcon(), !dockIcon);
        press(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), options.menuBarItemBox());
        press(Qt::Key_Escape);
        QTRY_VERIFY(!window.showingAppOptions());
        QTRY_COMPARE(QApplication::focusWidget(), button);
    }

    // A ring while the control has the keyboard, clear against what surrounds it, and none
    // once the keyboard has moved on.
    void focusedControlsShowARing_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("switch of the selected row") << QStringLiteral("enabledSwitch");
        QTest::newRow("stepper") << QStringLiteral("refreshStepper");
        QTest::newRow("colour well") << QStringLiteral("textColorWell");
        QTest::newRow("add panel") << QStringLiteral("addPanelButton");
        QTest::newRow("statistics row switch") << QStringLiteral("coresSwitch");
        // Qt's own controls, as its style draws them.
        QTest::newRow("name field") << QStringLiteral("nameField");
        QTest::newRow("check box") << QStringLiteral("enabledToggle");
        QTest::newRow("font picker") << QStringLiteral("fontPicker");
        QTest::newRow("opacity slider") << QStringLiteral("opacitySlider");
        QTest::newRow("toolbar button") << QStringLiteral("editModeButton");
    }

    void focusedControlsShowARing() {
        QFETCH(QString, name);
        Panel panel = silentPanel(PanelType::SystemStats, QStringLiteral("One"));
        panel.systemStats.rows.cores = true;
        QVERIFY(m_editor.open({panel}));
        auto* control = m_editor.window().findChild<QWidget*>(name);
        QVERIFY(control);
        QTRY_COMPARE(QApplication::focusWidget(), panelListOf(m_editor.view().sidebar()));
        const QImage without = around(control);
        QVERIFY(tabTo(control));
        QTRY_VERIFY2(changedPixels(without, around(control)) > ringPixels(control),
                     qPrintable(QString::number(changedPixels(without, around(control)))));
        press(Qt::Key_Tab);
        QVERIFY(QApplication::focusWidget() != control);
        QTRY_COMPARE(changedPixels(without, around(control)), 0);
    }

    void focusedListShowsARingAroundItsCurrentRow() {
        QVERIFY(m_editor.open({silentPanel(PanelType::Text, QStringLiteral("One")),
                               silentPanel(PanelType::Clock, QStringLiteral("Two"))}));
        QListWidget* list = panelListOf(m_editor.view().sidebar());
        QTRY_COMPARE(QApplication::focusWidget(), list);
        const QList<PanelRow*> rows = rowsOf(m_editor.view().sidebar());
        press(Qt::Key_Tab, Qt::ShiftModifier);
        QVERIFY(QApplication::focusWidget() != list);
        const QImage selectedOnly = around(rows.at(0));
        const QImage secondWithout = around(rows.at(1));
        QVERIFY(tabTo(list));
        QTRY_VERIFY(changedPixels(selectedOnly, around(rows.at(0))) > ringPixels(rows.at(0)));
        QCOMPARE(changedPixels(secondWithout, around(rows.at(1))), 0);
        // The ring goes with the arrows, also onto a row that is not selected: one the
        // selection left when its panel was deleted.
        press(Qt::Key_Down);
        QTRY_VERIFY(changedPixels(secondWithout, around(rows.at(1))) > 0);
        QVERIFY(rows.at(1)->isKeyboardCurrent());
        QVERIFY(!rows.at(0)->isKeyboardCurrent());
    }

    void theFormScrollsToTheControlWithTheKeyboard() {
        QVERIFY(m_editor.open({silentPanel(PanelType::SystemStats, QStringLiteral("One"))}));
        m_editor.window().resize(EditorWindow::kDefaultSize.width(), 480);
        auto* last = m_editor.window().findChild<QWidget*>(QStringLiteral("heightField"));
        QWidget* field = last->findChild<QLineEdit*>();
        const auto shown = [&] {
            QWidget* viewport = m_editor.window().findChild<QScrollArea*>()->viewport();
            const QRect inViewport(field->mapTo(viewport, QPoint(0, 0)), field->size());
            return viewport->rect().contains(inViewport);
        };
        QTRY_VERIFY(!shown());
        // Backwards from the list: past the toolbar, to the form's last field.
        QTRY_COMPARE(QApplication::focusWidget(), panelListOf(m_editor.view().sidebar()));
        for (int i = 0; i < 10 && QApplication::focusWidget() != field; ++i)
            press(Qt::Key_Tab, Qt::ShiftModifier);
        QCOMPARE(QApplication::focusWidget(), field);
        QTRY_VERIFY(shown());
    }
};

QTEST_MAIN(EditorKeyboardTest)
#include "tst_editorkeyboard.moc"
