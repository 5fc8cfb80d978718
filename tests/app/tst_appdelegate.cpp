// SPDX-License-Identifier: GPL-3.0-or-later

// The application's own lifetime rules: the editor opens on request and closing it leaves
// Corkwheel running.

#include "support/MenuTesting.h"
#include "support/RecordingDesktopPlatform.h"

#include "app/AppDelegate.h"
#include "app/TaskbarDockPolicy.h"
#include "editor/EditorWindow.h"
#include "settings/AppSettings.h"
#include "tray/MenuBarItem.h"
#include "tray/MenuBarView.h"

#include <QAction>
#include <QMenu>
#include <QToolButton>

#include <QApplication>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

QString onOff(bool on) {
    return on ? QStringLiteral("on") : QStringLiteral("off");
}

} // namespace

class AppDelegateTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_home;

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(m_home.isValid());
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_home.filePath(QStringLiteral("config"))));
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_home.filePath(QStringLiteral("data"))));
    }

    void firstLaunchShowsTheTrayItemWithARegularPolicy() {
        AppSettings settings;
        AppDelegate delegate(settings);
        delegate.applicationDidFinishLaunching();
        QVERIFY(settings.showDockIcon());
        QVERIFY(settings.showMenuBarItem());
        QVERIFY(delegate.menuBarItem().isShown());
        QVERIFY(delegate.dockPolicy().isRegular());
    }

    void editModeInTheTrayMenuAndTheEditorToolbarStayInStep_data() {
        QTest::addColumn<bool>("onInTheMenu");
        QTest::newRow("on in the menu, off in the toolbar") << true;
        QTest::newRow("on in the toolbar, off in the menu") << false;
    }

    // With the editor and the tray menu open at once, both show the store's one flag at
    // every step, whichever of the two switched it.
    void editModeInTheTrayMenuAndTheEditorToolbarStayInStep() {
        QFETCH(bool, onInTheMenu);
        AppSettings settings;
        AppDelegate delegate(settings);
        delegate.applicationDidFinishLaunching();
        delegate.openSettingsWindow();
        EditorWindow* editor = delegate.editorWindow();
        QVERIFY(QTest::qWaitForWindowExposed(editor));
        QMenu* menu = delegate.menuBarView().menu();
        QAction* inMenu = actionNamed(*menu, QStringLiteral("Edit Mode"));
        QVERIFY(inMenu);
        QAction* inToolbar = editor->editModeAction();
        // What the store holds and the two places show, with the menu open.
        const auto seen = [&] {
            openMenu(*menu);
            return QStringList{onOff(delegate.store().isEditMode()), onOff(inMenu->isChecked()),
                               onOff(inToolbar->isChecked())};
        };
        const auto allOf = [](bool on) { return QStringList(3, onOff(on)); };
        const std::function<void()> switchInMenu = [&] { chooseInMenu(*menu, inMenu); };
        const std::function<void()> switchInToolbar = [&] {
            QTest::mouseClick(editor->buttonFor(inToolbar), Qt::LeftButton);
        };
        QCOMPARE(seen(), allOf(false));

        (onInTheMenu ? switchInMenu : switchInToolbar)();
        QCOMPARE(seen(), allOf(true));
        QVERIFY(editor->isVisible());
        (onInTheMenu ? switchInToolbar : switchInMenu)();
        QCOMPARE(seen(), allOf(false));
        menu->close();
    }

    void editorIsNotOpenedAtLaunch() {
        AppSettings settings;
        AppDelegate delegate(settings);
        delegate.applicationDidFinishLaunching();
        QVERIFY(!delegate.editorWindow());
        QVERIFY(delegate.windowsManager());
    }

    void reopeningWithTheEditorClosedOpensIt() {
        AppSettings settings;
        AppDelegate delegate(settings);
        delegate.applicationDidFinishLaunching();
        delegate.openSettingsWindow();
        QVERIFY(delegate.editorWindow());
        QVERIFY(delegate.editorWindow()->isVisible());
        QVERIFY(QTest::qWaitForWindowExposed(delegate.editorWindow()));

        delegate.editorWindow()->close();
        QTRY_VERIFY(!delegate.editorWindow());
        delegate.openSettingsWindow();
        QVERIFY(delegate.editorWindow());
        QVERIFY(delegate.editorWindow()->isVisible());
    }

    void openingTwiceKeepsOneEditor() {
        AppSettings settings;
        AppDelegate delegate(settings);
        delegate.openSettingsWindow();
        EditorWindow* first = delegate.editorWindow();
        delegate.openSettingsWindow();
        QCOMPARE(delegate.editorWindow(), first);
    }

    void closingTheEditorDoesNotQuit() {
        QApplication::setQuitOnLastWindowClosed(true);
        AppSettings settings;
        AppDelegate delegate(settings);
        delegate.applicationDidFinishLaunching();
        QSignalSpy lastClosed(qApp, &QGuiApplication::lastWindowClosed);
        delegate.openSettingsWindow();
        QVERIFY(QTest::qWaitForWindowExposed(delegate.editorWindow()));
        delegate.editorWindow()->close();
        QTRY_VERIFY(!delegate.editorWindow());
        QTest::qWait(50);
        QCOMPARE(lastClosed.count(), 0);
        // The panels are still there to show.
        QCOMPARE(delegate.store().panels().size(), 3);
    }

    void settingsFromTheTrayMenuOpenTheEditor() {
        AppSettings settings;
        AppDelegate delegate(settings);
        delegate.applicationDidFinishLaunching();
        Q_EMIT delegate.menuBarView().settingsRequested();
        QVERIFY(delegate.editorWindow());
        QVERIFY(delegate.editorWindow()->isVisible());
    }

    void dockPolicyListsTheEditorInTheTaskbarOnlyWhenRegular() {
        RecordingDesktopPlatform platform;
        TaskbarDockPolicy policy(platform);
        policy.setRegular(false);
        QWidget editor;
        // A window that opens later takes the policy as it stands.
        policy.setWindow(&editor);
        QVERIFY(!platform.state(&editor).listedInTaskbar);
        policy.setRegular(true);
        QVERIFY(platform.state(&editor).listedInTaskbar);
        QVERIFY(policy.isRegular());
    }
};

QTEST_MAIN(AppDelegateTest)
#include "tst_appdelegate.moc"
