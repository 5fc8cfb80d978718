// SPDX-License-Identifier: GPL-3.0-or-later

// The editor of the real corkwheel binary on an X display with a window manager and a
// compositor (scripts/test.sh starts Xvfb, openbox and picom), driven with xdotool as a
// user drives it.

#include "support/DisplayTestMain.h"
#include "support/EditorOnDisplay.h"
#include "support/PrivateConfigHome.h"
#include "support/StoreFixture.h"

#include "app/TaskbarDockPolicy.h"
#include "editor/AppOptionsPopover.h"
#include "editor/InspectorView.h"
#include "platform/DesktopPlatform.h"
#include "settings/AppSettings.h"

#include <QApplication>
#include <QEvent>
#include <QLineEdit>
#include <QTest>
#include <QToolButton>

#include <algorithm>
#include <cstdlib>

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

// The windows that the process `pid` shows on the screen.
QList<WId> shownWindowsOf(qint64 pid) {
    QList<WId> windows;
    const QString found = xdotool({QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                   QStringLiteral("--pid"), QString::number(pid)});
    for (const QString& line : found.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        windows.append(line.trimmed().toULongLong());
    return windows;
}

// A window that the process `pid` shows within `waitMs` besides those `before`, a tool tip
// over the pointer aside; 0 if none.
WId newWindowOf(qint64 pid, const QList<WId>& before, int waitMs) {
    WId found = 0;
    const auto isNew = [&before](WId window) {
        return !before.contains(window) &&
               !atoms(window, QStringLiteral("_NET_WM_WINDOW_TYPE"))
                    .contains(QStringLiteral("_NET_WM_WINDOW_TYPE_TOOLTIP"));
    };
    [[maybe_unused]] const bool shown = QTest::qWaitFor(
        [&] {
            const QList<WId> windows = shownWindowsOf(pid);
            const auto match = std::find_if(windows.cbegin(), windows.cend(), isNew);
            found = match == windows.cend() ? 0 : *match;
            return found != 0;
        },
        waitMs);
    return found;
}

// Counts how often the widget it watches is shown.
class ShowCounter : public QObject {
public:
    explicit ShowCounter(QWidget& watched) { watched.installEventFilter(this); }
    int shows = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Show)
            ++shows;
        return false;
    }
};

// Whether a menu at `rect` opened at `point`: from the point's row, up or down, across its
// column (a menu that would pass the screen's edge is moved back inside it).
bool opensAt(const QRect& rect, QPoint point) {
    constexpr int kSlack = 3;
    const bool row = std::abs(rect.top() - point.y()) <= kSlack ||
                     std::abs(rect.bottom() + 1 - point.y()) <= kSlack;
    return row && point.x() >= rect.left() && point.x() <= rect.right() + 1;
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

    // Opens the editor the way a user does while Corkwheel runs: by starting it again; once
    // it is the active window, it takes the user's clicks and keys.
    WId openEditor() {
        if (m_corkwheel->startAgain() != 0)
            return 0;
        const WId editor = shownEditor();
        const bool active =
            editor && QTest::qWaitFor([editor] { return activeWindow() == editor; });
        return active ? editor : 0;
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

        click(screenGeometry(editor).topLeft() + nameField);
        pressKeys({QStringLiteral("ctrl+a")});
        typeText(QStringLiteral("Renamed"));
        QElapsedTimer sinceTyping;
        sinceTyping.start();
        QTRY_COMPARE_WITH_TIMEOUT(m_corkwheel->savedPanels().value(0).name,
                                  QStringLiteral("Renamed"), kWait);
        // Written once the typing has paused for the save delay, not at every key.
        QVERIFY2(sinceTyping.elapsed() >= 400 - 100,
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
        click(screenGeometry(editor).topLeft() + editModeButton);
        QTRY_VERIFY_WITH_TIMEOUT(windowUnderPointer(onPanel) != desktop.winId(), kWait);
        click(onPanel);
        // A click beside the panel still reaches the desktop, after the one on the panel:
        // once it has arrived, the panel's click would have too.
        const QPoint besidePanel(1450, 1000);
        click(besidePanel);
        QTRY_COMPARE_WITH_TIMEOUT(desktop.presses.size(), 2, kWait);
        QCOMPARE(desktop.presses.last(), besidePanel);
    }

    void secondPressOnAppOptionsClosesThePopover() {
        StoreFixture fixture({m_alpha});
        AppSettings settings;
        EditorWindow editor(*fixture.store, settings, clockOnlyServices());
        editor.show();
        QVERIFY(QTest::qWaitForWindowActive(&editor));
        const ShowCounter popover(editor.appOptions());
        QToolButton* button = editor.buttonFor(editor.appOptionsAction());
        const QPoint onButton = button->mapToGlobal(button->rect().center());
        click(onButton);
        QTRY_VERIFY_WITH_TIMEOUT(editor.showingAppOptions(), kWait);
        QVERIFY(QTest::qWaitForWindowExposed(&editor.appOptions()));
        // The popover takes this press, closes, and must not hand it on to the button, which
        // would open it again.
        click(onButton);
        QTRY_VERIFY_WITH_TIMEOUT(!editor.showingAppOptions(), kWait);
        // Gone from the screen too, as a user sees it before pressing again; until then the
        // popover may still hold the pointer.
        QTRY_VERIFY_WITH_TIMEOUT(!isViewable(editor.appOptions().winId()), kWait);
        // The next press opens it: had the press before reached the button too, this one
        // would close what it opened, and the popover would have been shown three times.
        click(onButton);
        QTRY_VERIFY_WITH_TIMEOUT(editor.showingAppOptions(), kWait);
        QCOMPARE(popover.shows, 2);
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
        startCorkwheel({m_alpha});
        const QRect icon = trayIconGeometry();
        QVERIFY2(!icon.isEmpty(), "no icon docked in the system tray");
        // The icon may be docked a moment before it takes clicks; a user clicks again then.
        const qint64 pid = m_corkwheel->process().processId();
        const QList<WId> before = shownWindowsOf(pid);
        WId menu = 0;
        for (int attempt = 0; attempt < 5 && !menu; ++attempt) {
            xdotool(pointerTo(icon.center()) << QStringLiteral("click") << QStringLiteral("3"));
            menu = newWindowOf(pid, before, 1000);
        }
        QVERIFY2(menu, "no menu opened");
        // The menu opens at the pointer, and takes the keys once it is there.
        const QRect shown = screenGeometry(menu);
        QVERIFY2(opensAt(shown, icon.center()),
                 qPrintable(QStringLiteral("menu at %1,%2 %3x%4, pointer at %5,%6")
                                .arg(shown.x())
                                .arg(shown.y())
                                .arg(shown.width())
                                .arg(shown.height())
                                .arg(icon.center().x())
                                .arg(icon.center().y())));
        // "Quit Corkwheel" is the menu's last item.
        pressKeys({QStringLiteral("Up"), QStringLiteral("Return")});
        QTRY_COMPARE_WITH_TIMEOUT(m_corkwheel->process().state(), QProcess::NotRunning, kWait);
        QCOMPARE(m_corkwheel->process().exitStatus(), QProcess::NormalExit);
        QCOMPARE(m_corkwheel->process().exitCode(), 0);
    }
};

CORKWHEEL_DISPLAY_TEST_MAIN(EditorEndToEndTest)

#include "tst_editor_e2e.moc"
