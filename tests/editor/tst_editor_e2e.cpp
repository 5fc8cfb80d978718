// SPDX-License-Identifier: GPL-3.0-or-later

// The editor of the real corkwheel binary on an X display with a window manager and a
// compositor (scripts/test.sh starts Xvfb, openbox and picom), driven with xdotool as a
// user drives it.

#include "support/EditorOnDisplay.h"
#include "support/PrivateConfigHome.h"
#include "support/StoreFixture.h"

#include "app/TaskbarDockPolicy.h"
#include "editor/InspectorView.h"
#include "model/PanelStore.h"
#include "platform/DesktopPlatform.h"
#include "settings/AppSettings.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QToolButton>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

void typeText(const QString& text) {
    xdotool({QStringLiteral("type"), QStringLiteral("--delay"), QStringLiteral("20"), text});
}

void pressKeys(const QStringList& keys) {
    xdotool(QStringList{QStringLiteral("key"), QStringLiteral("--delay"), QStringLiteral("100")} +
            keys);
}

// A system tray on the display, as a desktop panel offers one.
class SystemTray {
public:
    SystemTray() {
        m_process.start(QStringLiteral("trayer"),
                        {QStringLiteral("--edge"), QStringLiteral("bottom"),
                         QStringLiteral("--align"), QStringLiteral("right"),
                         QStringLiteral("--widthtype"), QStringLiteral("request"),
                         QStringLiteral("--height"), QStringLiteral("32"),
                         QStringLiteral("--SetDockType"), QStringLiteral("true")});
    }
    ~SystemTray() {
        m_process.kill();
        m_process.waitForFinished(kWait);
    }

    bool isRunning() const { return m_process.state() == QProcess::Running; }

private:
    QProcess m_process;
};

// The tray's panel, which holds the one icon docked in it, once it is shown.
QRect trayIconGeometry() {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < kWait) {
        const QString found = xdotool(
            {QStringLiteral("search"), QStringLiteral("--class"), QStringLiteral("^trayer$")});
        for (const QString& line : found.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
            const QRect panel = screenGeometry(line.trimmed().toULongLong());
            if (panel.width() > 1 && panel.height() > 1 && isViewable(line.trimmed().toULongLong()))
                return panel;
        }
        QTest::qWait(100);
    }
    return {};
}

} // namespace

class EditorEndToEndTest : public QObject {
    Q_OBJECT

public:
    explicit EditorEndToEndTest(bool hasDisplay) : m_hasDisplay(hasDisplay) {}

private:
    bool m_hasDisplay;
    PrivateConfigHome m_configHome;
    std::unique_ptr<CorkwheelProcess> m_corkwheel;

    Panel m_alpha = textPanel(QStringLiteral("E2E Alpha"), {1300, 700, 300, 80});
    Panel m_beta = textPanel(QStringLiteral("E2E Beta"), {1300, 850, 300, 80});

    void startCorkwheel(const QList<Panel>& panels) {
        m_corkwheel = std::make_unique<CorkwheelProcess>(panels);
        QVERIFY(m_corkwheel->process().waitForStarted());
        QVERIFY(shownWindowNamed(panels.first().name));
    }

    // Opens the editor the way a user does while Corkwheel runs: by starting it again.
    WId openEditor() {
        if (m_corkwheel->startAgain() != 0)
            return 0;
        return shownEditor();
    }

private Q_SLOTS:
    void initTestCase() {
        if (!m_hasDisplay)
            QSKIP(kNoDisplay);
        const QString missing = missingTool({QStringLiteral("xdotool")});
        QVERIFY2(missing.isEmpty(), qPrintable(missing));
        QVERIFY(m_configHome.use());
    }

    void cleanup() { m_corkwheel.reset(); }

    void secondStartOpensTheEditor() {
        startCorkwheel({m_alpha});
        QTest::qWait(300);
        QCOMPARE(shownEditor(), WId(0));
        QCOMPARE(m_corkwheel->startAgain(), 0);
        QVERIFY(shownEditor());
        QCOMPARE(m_corkwheel->process().state(), QProcess::Running);
    }

    void renamingInTheInspectorReachesTheDocument() {
        const QList<Panel> panels = {m_alpha, m_beta};
        const QPoint nameField = controlOffset(panels, [](EditorWindow& editor) -> QWidget* {
            return editor.view().inspector()->findChild<QLineEdit*>(QStringLiteral("nameField"));
        });
        QVERIFY(nameField.x() >= 0);
        startCorkwheel(panels);
        const WId editor = openEditor();
        QVERIFY(editor);
        QTest::qWait(300);

        click(screenGeometry(editor).topLeft() + nameField);
        pressKeys({QStringLiteral("ctrl+a")});
        typeText(QStringLiteral("Renamed"));
        QElapsedTimer sinceTyping;
        sinceTyping.start();
        QTRY_COMPARE_WITH_TIMEOUT(m_corkwheel->savedPanels().value(0).name,
                                  QStringLiteral("Renamed"), kWait);
        // Written once the typing has paused for the save delay, not at every key.
        QVERIFY2(sinceTyping.elapsed() >= PanelStore::kSaveDelayMs - 100,
                 qPrintable(QString::number(sinceTyping.elapsed())));
        QCOMPARE(m_corkwheel->savedPanels().value(1).name, m_beta.name);
    }

    void editModeTurnedOnInTheEditorMakesPanelsTakeTheMouse() {
        DesktopStandIn desktop;
        QVERIFY(QTest::qWaitForWindowExposed(&desktop));
        const QList<Panel> panels = {m_alpha};
        const QPoint editModeButton = controlOffset(panels, [](EditorWindow& editor) -> QWidget* {
            return editor.buttonFor(editor.editModeAction());
        });
        startCorkwheel(panels);
        const QPoint onPanel(1450, 750);
        click(onPanel);
        QTRY_COMPARE_WITH_TIMEOUT(desktop.presses.size(), 1, kWait);

        const WId editor = openEditor();
        QVERIFY(editor);
        QTest::qWait(300);
        click(screenGeometry(editor).topLeft() + editModeButton);
        QTest::qWait(500);
        click(onPanel);
        QTest::qWait(500);
        QCOMPARE(desktop.presses.size(), 1);
    }

    void secondPressOnAppOptionsClosesThePopover() {
        StoreFixture fixture({m_alpha});
        AppSettings settings;
        EditorWindow editor(*fixture.store, settings, clockOnlyServices());
        editor.show();
        QVERIFY(QTest::qWaitForWindowExposed(&editor));
        QTest::qWait(300);
        QToolButton* button = editor.buttonFor(editor.appOptionsAction());
        const QPoint onButton = button->mapToGlobal(button->rect().center());
        click(onButton);
        QTRY_VERIFY_WITH_TIMEOUT(editor.showingAppOptions(), kWait);
        QTest::qWait(300);
        // The popover takes this press, closes, and must not hand it on to the button.
        click(onButton);
        QTest::qWait(500);
        QVERIFY(!editor.showingAppOptions());
    }

    void dockIconOffLeavesTheEditorOutOfTaskbarAndPager() {
        const std::unique_ptr<DesktopPlatform> platform = DesktopPlatform::create();
        TaskbarDockPolicy policy(*platform);
        QWidget editor;
        editor.setWindowTitle(QStringLiteral("E2E Editor"));
        editor.resize(400, 300);
        // Before the window is mapped, and after.
        policy.setRegular(false);
        policy.setWindow(&editor);
        editor.show();
        QVERIFY(QTest::qWaitForWindowExposed(&editor));
        const auto state = [&] { return atoms(editor.winId(), QStringLiteral("_NET_WM_STATE")); };
        QTRY_VERIFY_WITH_TIMEOUT(state().contains(QStringLiteral("_NET_WM_STATE_SKIP_TASKBAR")),
                                 kWait);
        QVERIFY(state().contains(QStringLiteral("_NET_WM_STATE_SKIP_PAGER")));

        policy.setRegular(true);
        QTRY_VERIFY_WITH_TIMEOUT(!state().contains(QStringLiteral("_NET_WM_STATE_SKIP_TASKBAR")),
                                 kWait);
        QVERIFY(!state().contains(QStringLiteral("_NET_WM_STATE_SKIP_PAGER")));

        policy.setRegular(false);
        QTRY_VERIFY_WITH_TIMEOUT(state().contains(QStringLiteral("_NET_WM_STATE_SKIP_TASKBAR")),
                                 kWait);
    }

    void quittingFromTheTrayMenuEndsTheProcess() {
        SystemTray tray;
        QTRY_VERIFY_WITH_TIMEOUT(tray.isRunning(), kWait);
        QTest::qWait(500);
        startCorkwheel({m_alpha});
        const QRect icon = trayIconGeometry();
        QVERIFY2(!icon.isEmpty(), "no icon docked in the system tray");
        QTest::qWait(300);
        xdotool({QStringLiteral("mousemove"), QStringLiteral("--sync"),
                 QString::number(icon.center().x()), QString::number(icon.center().y()),
                 QStringLiteral("click"), QStringLiteral("3")});
        QTest::qWait(500);
        // "Quit Corkwheel" is the menu's last item.
        pressKeys({QStringLiteral("Up"), QStringLiteral("Return")});
        QTRY_COMPARE_WITH_TIMEOUT(m_corkwheel->process().state(), QProcess::NotRunning, kWait);
        QCOMPARE(m_corkwheel->process().exitStatus(), QProcess::NormalExit);
        QCOMPARE(m_corkwheel->process().exitCode(), 0);
    }
};

int main(int argc, char* argv[]) {
    const bool hasDisplay = !qEnvironmentVariableIsEmpty("DISPLAY");
    if (!hasDisplay)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    EditorEndToEndTest test(hasDisplay);
    return QTest::qExec(&test, argc, argv);
}

#include "tst_editor_e2e.moc"
