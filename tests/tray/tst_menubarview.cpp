// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/PanelStore.h"
#include "settings/AppSettings.h"
#include "tray/MenuBarItem.h"
#include "tray/MenuBarView.h"

#include "support/EnglishCatalogue.h"
#include "support/MenuTesting.h"
#include "support/PanelFixtures.h"
#include "support/PrivateConfigHome.h"
#include "support/StoreFixture.h"
#include "support/SymbolTesting.h"

#include <QAccessible>
#include <QAction>
#include <QFile>
#include <QLocale>
#include <QMenu>
#include <QSignalSpy>
#include <QSystemTrayIcon>
#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

// Positions of the menu's entries, separators included.
enum Entry {
    Settings,
    FirstSeparator,
    HideAll,
    EditMode,
    SecondSeparator,
    Count,
    ThirdSeparator,
    Quit
};

QAction* entry(const MenuBarView& view, Entry which) {
    return view.menu()->actions().value(which);
}

QString countLine(const MenuBarView& view) {
    return entry(view, Count)->text();
}

QList<Panel> namedPanels(int count) {
    QList<Panel> panels;
    for (int i = 0; i < count; ++i)
        panels.append(test::textPanel(QStringLiteral("Panel %1").arg(i),
                                      PanelFrame{40.0 + i, 40.0 + i, 200, 80}));
    return panels;
}

// The store's two run-time flags, which the menu's two switches show.
enum class Flag { EditMode, PanelsHidden };

bool get(const PanelStore& store, Flag flag) {
    return flag == Flag::EditMode ? store.isEditMode() : store.panelsHidden();
}

void set(PanelStore& store, Flag flag, bool on) {
    if (flag == Flag::EditMode)
        store.setEditMode(on);
    else
        store.setPanelsHidden(on);
}

void switchesData() {
    QTest::addColumn<Entry>("item");
    QTest::addColumn<Flag>("flag");
    QTest::newRow("Edit Mode") << EditMode << Flag::EditMode;
    QTest::newRow("Hide All Panels") << HideAll << Flag::PanelsHidden;
}

QByteArray fileBytes(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

Q_DECLARE_METATYPE(Entry)
Q_DECLARE_METATYPE(Flag)

class MenuBarViewTest : public QObject {
    Q_OBJECT

private:
    PrivateConfigHome m_configHome;
    EnglishCatalogue m_english;

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(m_configHome.use());
        QVERIFY(m_english.install());
    }

    void init() { PrivateConfigHome::clearPreferences(); }

    void itemsAreInOrderWithSeparators() {
        test::StoreFixture fixture({});
        MenuBarView view(*fixture.store);
        const QList<QAction*> actions = view.menu()->actions();
        QCOMPARE(actions.size(), 8);

        QCOMPARE(actions[Settings]->text(), QStringLiteral("Settings\u2026"));
        QVERIFY(actions[FirstSeparator]->isSeparator());
        QCOMPARE(actions[HideAll]->text(), QStringLiteral("Hide All Panels"));
        QCOMPARE(actions[EditMode]->text(), QStringLiteral("Edit Mode"));
        QVERIFY(actions[SecondSeparator]->isSeparator());
        QCOMPARE(actions[Count]->text(), QStringLiteral("0 panels"));
        QVERIFY(actions[ThirdSeparator]->isSeparator());
        QCOMPARE(actions[Quit]->text(), QStringLiteral("Quit Corkwheel"));

        for (Entry item : {Settings, HideAll, EditMode, Count, Quit})
            QVERIFY2(!actions[item]->isSeparator(), qPrintable(actions[item]->text()));
    }

    void itemsCarryTheirSymbols() {
        test::StoreFixture fixture({});
        MenuBarView view(*fixture.store);
        QVERIFY(test::sameImage(entry(view, Settings)->icon(), QStringLiteral("gearshape")));
        QVERIFY(test::sameImage(entry(view, HideAll)->icon(), QStringLiteral("eye.slash")));
        QVERIFY(test::sameImage(entry(view, EditMode)->icon(), QStringLiteral("hand.draw")));
        QVERIFY(entry(view, Quit)->icon().isNull());
    }

    void onlyTheTwoSwitchesCarryCheckMarks() {
        test::StoreFixture fixture({});
        MenuBarView view(*fixture.store);
        QVERIFY(entry(view, HideAll)->isCheckable());
        QVERIFY(entry(view, EditMode)->isCheckable());
        QVERIFY(!entry(view, HideAll)->isChecked());
        QVERIFY(!entry(view, EditMode)->isChecked());
        QVERIFY(!entry(view, Settings)->isCheckable());
        QVERIFY(!entry(view, Count)->isCheckable());
        QVERIFY(!entry(view, Quit)->isCheckable());
    }

    // As a screen reader reads the menu: each item by its text, the switches with their
    // state, the count as information that cannot be chosen.
    void screenReaderReadsEachItemWithItsState() {
        test::StoreFixture fixture({});
        MenuBarView view(*fixture.store);
        fixture.store->setPanelsHidden(true);
        QAccessibleInterface* menu = QAccessible::queryAccessibleInterface(view.menu());
        QCOMPARE(menu->childCount(), 8);
        for (Entry item : {Settings, HideAll, EditMode, Count, Quit}) {
            QAccessibleInterface* child = menu->child(item);
            QCOMPARE(child->role(), QAccessible::MenuItem);
            QCOMPARE(child->text(QAccessible::Name), entry(view, item)->text());
        }
        QVERIFY(menu->child(HideAll)->state().checkable);
        QVERIFY(menu->child(HideAll)->state().checked);
        QVERIFY(menu->child(EditMode)->state().checkable);
        QVERIFY(!menu->child(EditMode)->state().checked);
        QVERIFY(menu->child(Count)->state().disabled);
        QVERIFY(!menu->child(Quit)->state().disabled);
        QCOMPARE(menu->child(FirstSeparator)->role(), QAccessible::Separator);
    }

    void escapeClosesTheMenu() {
        test::StoreFixture fixture({});
        MenuBarView view(*fixture.store);
        test::openMenu(*view.menu());
        QTest::keyClick(view.menu(), Qt::Key_Down);
        QCOMPARE(view.menu()->activeAction(), entry(view, Settings));
        QTest::keyClick(view.menu(), Qt::Key_Escape);
        QTRY_VERIFY(!view.menu()->isVisible());
    }

    void quitHasTheCtrlQShortcut() {
        test::StoreFixture fixture({});
        MenuBarView view(*fixture.store);
        QCOMPARE(entry(view, Quit)->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Q));
    }

    void onePanelReadsOnePanel() {
        test::StoreFixture fixture(namedPanels(1));
        MenuBarView view(*fixture.store);
        QCOMPARE(countLine(view), QStringLiteral("1 panel"));
    }

    void noPanelsReadsZeroPanels() {
        test::StoreFixture fixture({});
        MenuBarView view(*fixture.store);
        QCOMPARE(countLine(view), QStringLiteral("0 panels"));
    }

    void twoPanelsReadTwoPanels() {
        test::StoreFixture fixture(namedPanels(2));
        MenuBarView view(*fixture.store);
        QCOMPARE(countLine(view), QStringLiteral("2 panels"));
    }

    void disabledPanelsAreCounted() {
        QList<Panel> panels = namedPanels(3);
        panels[0].isEnabled = false;
        panels[2].isEnabled = false;
        test::StoreFixture fixture(panels);
        MenuBarView view(*fixture.store);
        QCOMPARE(countLine(view), QStringLiteral("3 panels"));
    }

    void countFollowsAddingAndRemoving() {
        test::StoreFixture fixture({});
        PanelStore& store = *fixture.store;
        MenuBarView view(store);

        store.addPanel(PanelType::Clock);
        QCOMPARE(countLine(view), QStringLiteral("1 panel"));
        store.addPanel(PanelType::Shell);
        QCOMPARE(countLine(view), QStringLiteral("2 panels"));
        store.removePanel(store.panels().first().id);
        QCOMPARE(countLine(view), QStringLiteral("1 panel"));
        store.removePanel(store.panels().first().id);
        QCOMPARE(countLine(view), QStringLiteral("0 panels"));
    }

    void countIsAWholeNumberInTheUsersLocale() {
        const QLocale before;
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        test::StoreFixture fixture(namedPanels(1234));
        MenuBarView view(*fixture.store);
        const QString line = countLine(view);
        QLocale::setDefault(before);
        QCOMPARE(line, QStringLiteral("1.234 panels"));
    }

    void countLineIsDimmedInformation() {
        test::StoreFixture fixture(namedPanels(1));
        MenuBarView view(*fixture.store);
        // Shown as secondary text; choosing it does nothing.
        QVERIFY(!entry(view, Count)->isEnabled());
    }

    void switchesWorkWithoutAnyPanel() {
        test::StoreFixture fixture({});
        PanelStore& store = *fixture.store;
        MenuBarView view(store);
        for (Entry item : {Settings, HideAll, EditMode, Quit})
            QVERIFY2(entry(view, item)->isEnabled(), qPrintable(entry(view, item)->text()));

        entry(view, HideAll)->trigger();
        QVERIFY(store.panelsHidden());
        entry(view, EditMode)->trigger();
        QVERIFY(store.isEditMode());
    }

    void switchCheckFollowsTheStore_data() { switchesData(); }
    void switchCheckFollowsTheStore() {
        QFETCH(Entry, item);
        QFETCH(Flag, flag);
        test::StoreFixture fixture(namedPanels(1));
        PanelStore& store = *fixture.store;
        MenuBarView view(store);

        // As the editor's toolbar does.
        set(store, flag, true);
        QVERIFY(entry(view, item)->isChecked());
        set(store, flag, false);
        QVERIFY(!entry(view, item)->isChecked());
    }

    void choosingASwitchFlipsTheStoreFlag_data() { switchesData(); }
    void choosingASwitchFlipsTheStoreFlag() {
        QFETCH(Entry, item);
        QFETCH(Flag, flag);
        test::StoreFixture fixture(namedPanels(1));
        PanelStore& store = *fixture.store;
        MenuBarView view(store);

        entry(view, item)->trigger();
        QVERIFY(get(store, flag));
        QVERIFY(entry(view, item)->isChecked());

        // Turned off elsewhere, then on again here.
        set(store, flag, false);
        QVERIFY(!entry(view, item)->isChecked());
        entry(view, item)->trigger();
        QVERIFY(get(store, flag));
        QVERIFY(entry(view, item)->isChecked());

        entry(view, item)->trigger();
        QVERIFY(!get(store, flag));
        QVERIFY(!entry(view, item)->isChecked());
    }

    void aViewMadeLaterShowsTheFlagsAsTheyAre() {
        test::StoreFixture fixture(namedPanels(1));
        PanelStore& store = *fixture.store;
        store.setEditMode(true);
        store.setPanelsHidden(true);
        MenuBarView view(store);
        QVERIFY(entry(view, EditMode)->isChecked());
        QVERIFY(entry(view, HideAll)->isChecked());
    }

    void togglesNeverChangeTheDocument() {
        test::StoreFixture fixture(namedPanels(2));
        PanelStore& store = *fixture.store;
        const QByteArray before = fileBytes(fixture.documentPath());
        QVERIFY(!before.isEmpty());
        MenuBarView view(store);
        QSignalSpy written(&store, &PanelStore::documentWritten);
        QSignalSpy panelsChanged(&store, &PanelStore::panelsChanged);

        entry(view, HideAll)->trigger();
        entry(view, EditMode)->trigger();
        entry(view, EditMode)->trigger();
        entry(view, HideAll)->trigger();
        entry(view, EditMode)->trigger();
        QTest::qWait(PanelStore::kSaveDelayMs + 300);

        QCOMPARE(written.count(), 0);
        QCOMPARE(panelsChanged.count(), 0);
        QCOMPARE(fileBytes(fixture.documentPath()), before);

        // Whereas a change to a panel is written.
        Panel renamed = store.panels().at(0);
        renamed.name = QStringLiteral("Renamed");
        store.update(renamed);
        QTRY_COMPARE(written.count(), 1);
        QVERIFY(fileBytes(fixture.documentPath()).contains("Renamed"));
    }

    void settingsAndQuitEachAskForTheirOwnAction_data() {
        QTest::addColumn<Entry>("item");
        QTest::addColumn<int>("settingsRequests");
        QTest::addColumn<int>("quitRequests");
        QTest::newRow("Settings…") << Settings << 1 << 0;
        QTest::newRow("Quit Corkwheel") << Quit << 0 << 1;
    }
    void settingsAndQuitEachAskForTheirOwnAction() {
        QFETCH(Entry, item);
        QFETCH(int, settingsRequests);
        QFETCH(int, quitRequests);
        test::StoreFixture fixture({});
        MenuBarView view(*fixture.store);
        QSignalSpy settings(&view, &MenuBarView::settingsRequested);
        QSignalSpy quit(&view, &MenuBarView::quitRequested);
        entry(view, item)->trigger();
        QCOMPARE(settings.count(), settingsRequests);
        QCOMPARE(quit.count(), quitRequests);
    }

    void openMenuShowsTheCurrentState() {
        test::StoreFixture fixture(namedPanels(1));
        PanelStore& store = *fixture.store;
        MenuBarView view(store);
        store.addPanel(PanelType::Clock);
        store.setEditMode(true);

        view.menu()->popup(QPoint(100, 100));
        QTRY_VERIFY(view.menu()->isVisible());
        QCOMPARE(countLine(view), QStringLiteral("2 panels"));
        QVERIFY(entry(view, EditMode)->isChecked());
        QVERIFY(!entry(view, HideAll)->isChecked());

        // Changes while the menu is open show at once.
        store.setPanelsHidden(true);
        QVERIFY(entry(view, HideAll)->isChecked());
        view.menu()->close();
    }

    void trayIconIsShownWhileThePreferenceIsOn() {
        test::StoreFixture fixture({});
        MenuBarView view(*fixture.store);
        AppSettings settings;
        QVERIFY(settings.showMenuBarItem());
        MenuBarItem item(settings, view);
        QVERIFY(item.isShown());

        settings.setShowMenuBarItem(false);
        QVERIFY(!item.isShown());
        settings.setShowMenuBarItem(true);
        QVERIFY(item.isShown());
    }

    void trayIconStartsHiddenWhenThePreferenceIsOff() {
        {
            AppSettings earlier;
            earlier.setShowMenuBarItem(false);
        }
        test::StoreFixture fixture({});
        MenuBarView view(*fixture.store);
        AppSettings settings;
        QVERIFY(!settings.showMenuBarItem());
        MenuBarItem item(settings, view);
        QVERIFY(!item.isShown());

        settings.setShowMenuBarItem(true);
        QVERIFY(item.isShown());
    }

    void trayIconIsCorkwheelWithItsSymbolAndMenu() {
        test::StoreFixture fixture({});
        MenuBarView view(*fixture.store);
        AppSettings settings;
        MenuBarItem item(settings, view);
        auto* trayIcon = item.findChild<QSystemTrayIcon*>();
        QVERIFY(trayIcon);
        QCOMPARE(trayIcon->toolTip(), QStringLiteral("Corkwheel"));
        QVERIFY(!trayIcon->icon().isNull());
        QCOMPARE(trayIcon->contextMenu(), view.menu());
    }

    void leftClickOpensTheMenu() {
        test::StoreFixture fixture({});
        MenuBarView view(*fixture.store);
        AppSettings settings;
        MenuBarItem item(settings, view);
        auto* trayIcon = item.findChild<QSystemTrayIcon*>();
        QVERIFY(trayIcon);
        QVERIFY(!view.menu()->isVisible());

        Q_EMIT trayIcon->activated(QSystemTrayIcon::Trigger);
        QTRY_VERIFY(view.menu()->isVisible());
        view.menu()->close();
    }
};

QTEST_MAIN(MenuBarViewTest)
#include "tst_menubarview.moc"
