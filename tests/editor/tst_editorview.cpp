// SPDX-License-Identifier: GPL-3.0-or-later

// The editor window as a user meets it: which panel it shows, the placard, the toolbar's
// switches and the app options, on the offscreen platform.

#include "support/PanelFixtures.h"
#include "support/PrivateConfigHome.h"
#include "support/SidebarHarness.h"
#include "support/StoreFixture.h"
#include "support/SymbolTesting.h"

#include "editor/AppOptionsPopover.h"
#include "editor/EditorView.h"
#include "editor/EditorWindow.h"
#include "editor/EmptyStatePlacard.h"
#include "editor/InspectorView.h"
#include "editor/SidebarView.h"
#include "render/Symbols.h"
#include "settings/AppSettings.h"
#include "settings/StartAtLogin.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QHelpEvent>
#include <QLabel>
#include <QSignalBlocker>
#include <QSplitter>
#include <QTest>
#include <QToolButton>
#include <QToolTip>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

Panel named(const QString& name) {
    return textPanel(name, {100, 100, 200, 80});
}

} // namespace

class EditorViewTest : public QObject {
    Q_OBJECT

private:
    PrivateConfigHome m_configHome;
    std::unique_ptr<StoreFixture> m_fixture;
    std::unique_ptr<AppSettings> m_settings;
    std::unique_ptr<EditorWindow> m_window;

    PanelStore& store() { return *m_fixture->store; }

    // The editor, opened on a document holding `panels`, as the user first sees it.
    EditorWindow& open(const QList<Panel>& panels) {
        makeEditor(panels);
        m_window->show();
        [[maybe_unused]] const bool exposed = QTest::qWaitForWindowExposed(m_window.get());
        QCoreApplication::processEvents();
        return *m_window;
    }

    EditorWindow& makeEditor(const QList<Panel>& panels) {
        m_fixture = std::make_unique<StoreFixture>(panels);
        m_settings = std::make_unique<AppSettings>();
        m_window = std::make_unique<EditorWindow>(store(), *m_settings, clockOnlyServices());
        return *m_window;
    }

    EditorView& view() { return m_window->view(); }

    QString placardTitle() {
        auto* placard = view().findChild<EmptyStatePlacard*>();
        return placard && placard->isVisible() ? placard->title() : QString();
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_configHome.use()); }

    void cleanup() {
        m_window.reset();
        m_settings.reset();
        m_fixture.reset();
        QFile::remove(StartAtLogin::entryPath());
        PrivateConfigHome::clearPreferences();
    }

    void windowIsTitledCorkwheelAt900By560() {
        EditorWindow& window = open({named(QStringLiteral("One"))});
        QCOMPARE(window.windowTitle(), QStringLiteral("Corkwheel"));
        QCOMPARE(window.size(), QSize(900, 560));
    }

    void openingSelectsTheFirstPanel() {
        const Panel first = named(QStringLiteral("First"));
        open({first, named(QStringLiteral("Second"))});
        QTRY_COMPARE(view().selection(), first.id);
        QVERIFY(view().inspector());
        QCOMPARE(view().inspector()->panelID(), first.id);
        QCOMPARE(view().sidebar().selection(), first.id);
        QVERIFY(!view().showsPlacard());
    }

    void emptyDocumentShowsPlacardUntilAPanelIsAdded() {
        open({});
        QCoreApplication::processEvents();
        QVERIFY(view().selection().isNull());
        QVERIFY(view().showsPlacard());
        QCOMPARE(placardTitle(), QStringLiteral("No Panel Selected"));
        auto* placard = view().findChild<EmptyStatePlacard*>();
        QCOMPARE(placard->description(),
                 QStringLiteral("Choose a panel from the sidebar, or add a new one."));

        store().addPanel(PanelType::Clock);
        const QUuid added = store().panels().first().id;
        QCOMPARE(view().selection(), added);
        QVERIFY(!view().showsPlacard());
        QCOMPARE(view().inspector()->panelID(), added);
    }

    void addingWhileAPanelIsSelectedKeepsTheSelection() {
        const Panel first = named(QStringLiteral("First"));
        const Panel second = named(QStringLiteral("Second"));
        open({first, second});
        view().select(second.id);
        InspectorView* inspector = view().inspector();
        store().addPanel(PanelType::Shell);
        QCOMPARE(store().panels().size(), 3);
        QCOMPARE(view().selection(), second.id);
        QCOMPARE(view().inspector(), inspector);
    }

    void deletingTheSelectedPanelShowsPlacardAndKeepsTheStaleSelection() {
        const Panel first = named(QStringLiteral("First"));
        const Panel second = named(QStringLiteral("Second"));
        open({first, second});
        view().select(second.id);
        store().removePanel(second.id);
        QVERIFY(view().showsPlacard());
        QCOMPARE(placardTitle(), QStringLiteral("No Panel Selected"));
        QVERIFY(!view().inspector());
        // Not moved to the neighbour, even after more changes of the list.
        QCOMPARE(view().selection(), second.id);
        store().addPanel(PanelType::Text);
        QCOMPARE(view().selection(), second.id);
        QVERIFY(view().showsPlacard());

        // Picking another row shows it again.
        view().select(first.id);
        QVERIFY(!view().showsPlacard());
        QCOMPARE(view().inspector()->panelID(), first.id);
    }

    void deletingTheSelectedRowThroughItsContextMenuShowsNoPanelSelected() {
        const Panel first = named(QStringLiteral("First"));
        const Panel second = named(QStringLiteral("Second"));
        EditorWindow& window = open({first, second});
        clickOn(window, rowsOf(view().sidebar()).at(1));
        QCOMPARE(view().selection(), second.id);

        chooseOnPopup(QStringLiteral("Delete"));
        clickOn(window, rowsOf(view().sidebar()).at(1), Qt::RightButton);
        QCOMPARE(store().panels(), QList<Panel>{first});
        QVERIFY(!view().inspector());
        QCOMPARE(placardTitle(), QStringLiteral("No Panel Selected"));
    }

    void choosingATypeWhileAPanelIsSelectedKeepsTheSelection() {
        const Panel first = named(QStringLiteral("First"));
        EditorWindow& window = open({first, named(QStringLiteral("Second"))});
        QTRY_COMPARE(view().selection(), first.id);
        chooseOnPopup(QStringLiteral("Shell Command"));
        clickOn(window, addButtonOf(view().sidebar()));
        QTRY_COMPARE(store().panels().size(), 3);
        QCOMPARE(view().selection(), first.id);
        QCOMPARE(view().inspector()->panelID(), first.id);
    }

    void choosingATypeWithNothingSelectedShowsTheNewPanel() {
        EditorWindow& window = open({});
        QCOMPARE(placardTitle(), QStringLiteral("No Panel Selected"));
        chooseOnPopup(QStringLiteral("Clock"));
        clickOn(window, addButtonOf(view().sidebar()));
        QTRY_COMPARE(store().panels().size(), 1);
        const QUuid added = store().panels().first().id;
        QCOMPARE(view().selection(), added);
        QCOMPARE(view().sidebar().selection(), added);
        QVERIFY(!view().showsPlacard());
        QCOMPARE(view().inspector()->panelID(), added);
    }

    void changedIdsWhileNothingIsSelectedSelectTheFirstNewPanel() {
        const Panel old = named(QStringLiteral("Old"));
        const Panel kept = named(QStringLiteral("Kept"));
        makeEditor({old, kept});
        // Not shown yet, so nothing is selected when the list changes.
        QVERIFY(view().selection().isNull());
        store().removePanel(old.id);
        QCOMPARE(view().selection(), kept.id);
    }

    // As a document read again would: every panel is new, announced as one change.
    void allIdsChangedAtOnceWhileNothingIsSelectedSelectTheFirstNewPanel() {
        const Panel old = named(QStringLiteral("Old"));
        const Panel older = named(QStringLiteral("Older"));
        makeEditor({old, older});
        QVERIFY(view().selection().isNull());
        {
            const QSignalBlocker oneChange(&store());
            store().removePanel(old.id);
            store().removePanel(older.id);
            store().addPanel(PanelType::Clock);
            store().addPanel(PanelType::Shell);
        }
        const QList<Panel> fresh = store().panels();
        QCOMPARE(fresh.size(), 2);
        QVERIFY(fresh[0].id != old.id && fresh[0].id != older.id);
        QVERIFY(view().selection().isNull());
        Q_EMIT store().panelsChanged();
        QCOMPARE(view().selection(), fresh[0].id);
        QCOMPARE(view().sidebar().selection(), fresh[0].id);
        QCOMPARE(view().inspector()->panelID(), fresh[0].id);
        QVERIFY(!view().showsPlacard());
    }

    void changeOfAPanelKeepsTheSameInspector() {
        const Panel first = named(QStringLiteral("First"));
        open({first});
        QTRY_VERIFY(view().inspector());
        InspectorView* inspector = view().inspector();
        Panel renamed = store().panels().first();
        renamed.name = QStringLiteral("Renamed");
        store().update(renamed);
        QCOMPARE(view().inspector(), inspector);
    }

    void rowPickedInTheSidebarShowsItsInspector() {
        const Panel first = named(QStringLiteral("First"));
        const Panel second = named(QStringLiteral("Second"));
        open({first, second});
        QTRY_COMPARE(view().selection(), first.id);
        Q_EMIT view().sidebar().selectionChanged(second.id);
        QCOMPARE(view().selection(), second.id);
        QCOMPARE(view().inspector()->panelID(), second.id);
    }

    void windowIsNeverSmallerThan760By480AndSidebarNeverNarrowerThan220() {
        EditorWindow& window = open({named(QStringLiteral("One"))});
        QCOMPARE(view().minimumSize(), QSize(760, 480));
        window.resize(300, 200);
        QCoreApplication::processEvents();
        QVERIFY(view().width() >= 760);
        QVERIFY(view().height() >= 480);
        auto* split = view().findChild<QSplitter*>(QStringLiteral("editorSplit"));
        split->setSizes({10, 2000});
        QVERIFY(view().sidebar().width() >= 220);
    }

    void editModeButtonAndStoreStayInStep() {
        EditorWindow& window = open({named(QStringLiteral("One"))});
        QAction* editMode = window.editModeAction();
        QCOMPARE(editMode->text(), QStringLiteral("Edit Mode"));
        QCOMPARE(editMode->toolTip(),
                 QStringLiteral("Drag and resize panels directly on the desktop"));
        QVERIFY(!editMode->isChecked());
        QVERIFY(sameImage(editMode->icon(), QStringLiteral("hand.draw")));

        QTest::mouseClick(window.buttonFor(editMode), Qt::LeftButton);
        QVERIFY(store().isEditMode());
        QVERIFY(sameImage(editMode->icon(), QStringLiteral("hand.draw.fill")));

        store().setEditMode(false);
        QVERIFY(!editMode->isChecked());
        QVERIFY(sameImage(editMode->icon(), QStringLiteral("hand.draw")));
    }

    void hideAllButtonAndStoreStayInStepWithoutHoverHelp() {
        EditorWindow& window = open({named(QStringLiteral("One"))});
        QAction* hideAll = window.hideAllAction();
        QCOMPARE(hideAll->text(), QStringLiteral("Hide All"));
        QVERIFY(sameImage(hideAll->icon(), QStringLiteral("eye")));
        QTest::mouseClick(window.buttonFor(hideAll), Qt::LeftButton);
        QVERIFY(store().panelsHidden());
        QVERIFY(hideAll->isChecked());
        QVERIFY(sameImage(hideAll->icon(), QStringLiteral("eye.slash.fill")));
        store().setPanelsHidden(false);
        QVERIFY(!hideAll->isChecked());

        // A hover over the button shows nothing: the tool-tip event is swallowed, though the
        // button has a tip of its own to show, and the same hover shows the edit-mode
        // button's tip at once.
        const auto hover = [](QToolButton* button) {
            QHelpEvent event(QEvent::ToolTip, QPoint(5, 5), button->mapToGlobal(QPoint(5, 5)));
            QApplication::sendEvent(button, &event);
        };
        QToolButton* button = window.buttonFor(hideAll);
        QVERIFY(!button->toolTip().isEmpty());
        hover(button);
        QVERIFY(!QToolTip::isVisible());
        hover(window.buttonFor(window.editModeAction()));
        QVERIFY(QToolTip::isVisible());
        QCOMPARE(QToolTip::text(), window.editModeAction()->toolTip());
        QToolTip::hideText();
    }

    void appOptionsButtonOpensThePopoverAndASecondPressClosesIt() {
        EditorWindow& window = open({named(QStringLiteral("One"))});
        QAction* options = window.appOptionsAction();
        QCOMPARE(options->text(), QStringLiteral("App Options"));
        QCOMPARE(options->toolTip(), QStringLiteral("Dock icon and menu bar options"));
        QVERIFY(!window.showingAppOptions());
        options->trigger();
        QVERIFY(window.showingAppOptions());
        options->trigger();
        QVERIFY(!window.showingAppOptions());

        // With the mouse, through the window system as a user clicks: the press that closes
        // the popover must not open it again.
        QToolButton* button = window.buttonFor(options);
        const QPoint onButton = button->mapTo(&window, button->rect().center());
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, onButton);
        QTRY_VERIFY(window.showingAppOptions());
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, onButton);
        QTest::qWait(50);
        QVERIFY(!window.showingAppOptions());

        // A click elsewhere closes it too.
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, onButton);
        QTRY_VERIFY(window.showingAppOptions());
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, QPoint(600, 400));
        QTRY_VERIFY(!window.showingAppOptions());
    }

    void appOptionsShowTheirTextsInOrder() {
        EditorWindow& window = open({named(QStringLiteral("One"))});
        window.appOptionsAction()->trigger();
        AppOptionsPopover& popover = window.appOptions();
        QCOMPARE(popover.dockIconBox()->text(), QStringLiteral("Show Dock icon"));
        QCOMPARE(popover.menuBarItemBox()->text(), QStringLiteral("Show menu bar item"));
        auto* note = popover.findChild<QLabel*>(QStringLiteral("appOptionsNote"));
        QCOMPARE(note->text(),
                 QStringLiteral("At least one stays visible so you can always reach Settings."));
        QCOMPARE(note->width(), 260);
        QVERIFY(popover.dockIconBox()->y() < popover.menuBarItemBox()->y());
        QVERIFY(popover.menuBarItemBox()->y() < note->y());
        QVERIFY(popover.dockIconBox()->isChecked());
        QVERIFY(popover.menuBarItemBox()->isChecked());
    }

    void turningDockIconOffWhileMenuItemIsOffLeavesOneOn() {
        EditorWindow& window = open({named(QStringLiteral("One"))});
        window.appOptionsAction()->trigger();
        AppOptionsPopover& popover = window.appOptions();
        popover.menuBarItemBox()->click();
        QVERIFY(!m_settings->showMenuBarItem());
        popover.dockIconBox()->click();
        QVERIFY(!m_settings->showDockIcon());
        QVERIFY(m_settings->showMenuBarItem());
        QVERIFY(!popover.dockIconBox()->isChecked());
        QVERIFY(popover.menuBarItemBox()->isChecked());
    }

    void startAtLoginSitsBelowTheNoteAndWritesTheAutostartEntry() {
        EditorWindow& window = open({named(QStringLiteral("One"))});
        window.appOptionsAction()->trigger();
        AppOptionsPopover& popover = window.appOptions();
        QCheckBox* startAtLogin = popover.startAtLoginBox();
        QCOMPARE(startAtLogin->text(), QStringLiteral("Start at login"));
        auto* note = popover.findChild<QLabel*>(QStringLiteral("appOptionsNote"));
        QVERIFY(startAtLogin->y() > note->y());
        QVERIFY(!startAtLogin->isChecked());

        startAtLogin->click();
        QVERIFY(QFile::exists(StartAtLogin::entryPath()));
        QVERIFY(startAtLogin->isChecked());
        startAtLogin->click();
        QVERIFY(!QFile::exists(StartAtLogin::entryPath()));
        QVERIFY(!startAtLogin->isChecked());
    }

    void autostartEntryRemovedByHandShowsWhenTheOptionsOpenAgain() {
        EditorWindow& window = open({named(QStringLiteral("One"))});
        window.appOptionsAction()->trigger();
        window.appOptions().startAtLoginBox()->click();
        QVERIFY(window.appOptions().startAtLoginBox()->isChecked());
        window.appOptionsAction()->trigger();
        QVERIFY(!window.showingAppOptions());

        QVERIFY(QFile::remove(StartAtLogin::entryPath()));
        window.appOptionsAction()->trigger();
        QVERIFY(!window.appOptions().startAtLoginBox()->isChecked());
    }
};

QTEST_MAIN(EditorViewTest)
#include "tst_editorview.moc"
