// SPDX-License-Identifier: GPL-3.0-or-later

// The application's own lifetime rules: the editor opens on request and closing it leaves
// Corkwheel running.

#include "app/AppDelegate.h"
#include "editor/EditorWindow.h"
#include "editor/TaskbarDockPolicy.h"
#include "settings/AppSettings.h"
#include "tray/MenuBarItem.h"
#include "tray/MenuBarView.h"

#include <QAction>
#include <QMenu>

#include <QApplication>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace corkwheel;

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

    void editModeInTheTrayMenuAndTheEditorToolbarStayInStep() {
        AppSettings settings;
        AppDelegate delegate(settings);
        delegate.applicationDidFinishLaunching();
        delegate.openSettingsWindow();
        QAction* inMenu = nullptr;
        for (QAction* action : delegate.menuBarView().menu()->actions()) {
            if (action->text() == QStringLiteral("Edit Mode"))
                inMenu = action;
        }
        QVERIFY(inMenu);
        QAction* inToolbar = delegate.editorWindow()->editModeAction();

        inMenu->trigger();
        QVERIFY(delegate.store().isEditMode());
        QVERIFY(inToolbar->isChecked());
        inToolbar->trigger();
        QVERIFY(!delegate.store().isEditMode());
        QVERIFY(!inMenu->isChecked());
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
};

QTEST_MAIN(AppDelegateTest)
#include "tst_appdelegate.moc"
