// SPDX-License-Identifier: GPL-3.0-or-later

// The command line's actions on the real corkwheel binary running on an X display with a window
// manager (scripts/test.sh starts Xvfb, openbox and picom), reached through the local socket
// and through the session bus, and checked the way the window system sees them; and the
// signals that end it.

#include "support/CommandLineRun.h"
#include "support/DisplayTestMain.h"
#include "support/EditorOnDisplay.h"
#include "support/OtherUser.h"
#include "support/PanelFixtures.h"
#include "support/PrivateSessionBus.h"
#include "support/ScreenPanels.h"

#include "desktop/DesktopPanelHostView.h"

#include <QApplication>
#include <QTest>

#include <cerrno>
#include <memory>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace corkwheel;
using namespace corkwheel::test;

class CommandLineEndToEndTest : public QObject {
    Q_OBJECT

public:
    explicit CommandLineEndToEndTest(bool hasDisplay) : m_hasDisplay(hasDisplay) {}

private:
    bool m_hasDisplay;
    QByteArray m_sessionBus;
    std::unique_ptr<PrivateSessionBus> m_bus;
    std::unique_ptr<CorkwheelProcess> m_corkwheel;
    WId m_panelWindow = 0;
    Panel m_panel = textPanel(QStringLiteral("E2E Command Line"), {1300, 700, 300, 80});

    // Corkwheel on the display with one panel, reachable over the bus only (its socket is
    // gone) or over the socket only (there is no bus).
    void startCorkwheel(bool overBus) {
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        if (overBus) {
            m_bus = std::make_unique<PrivateSessionBus>();
            QVERIFY2(m_bus->start(), "dbus-daemon did not start: scripts/test.sh installs it");
            qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus->address());
        }
        m_corkwheel = std::make_unique<CorkwheelProcess>(QList<Panel>{m_panel});
        QVERIFY(m_corkwheel->process().waitForStarted());
        m_panelWindow = shownWindowNamed(m_panel.name);
        QVERIFY(m_panelWindow);
        if (overBus)
            QVERIFY(
                QFile::remove(homeOf(*m_corkwheel) + QStringLiteral("/runtime/corkwheel.socket")));
    }

    void run(const QString& option) {
        const CommandLineRun result =
            runCorkwheel({option}, sessionEnvironment(homeOf(*m_corkwheel)));
        QVERIFY2(result.standardError.isEmpty(), qPrintable(result.standardError));
        QCOMPARE(result.exitCode, 0);
    }

    QStringList panelState() const { return atoms(m_panelWindow, QStringLiteral("_NET_WM_STATE")); }

    // A method of the running Corkwheel called with gdbus on the session bus, as the README
    // shows it, the names spelled out as scripts spell them; gdbus's exit status.
    static int callOverBus(const QString& method, const QStringList& arguments) {
        QProcess gdbus;
        gdbus.start(
            QStringLiteral("gdbus"),
            QStringList{
                QStringLiteral("call"), QStringLiteral("--session"), QStringLiteral("--dest"),
                QStringLiteral("io.github.corkwheel.Corkwheel"), QStringLiteral("--object-path"),
                QStringLiteral("/io/github/corkwheel/Corkwheel"), QStringLiteral("--method"),
                QStringLiteral("org.freedesktop.Application.") + method} +
                arguments);
        if (!gdbus.waitForFinished(kWait) || gdbus.exitStatus() != QProcess::NormalExit)
            return -1;
        return gdbus.exitCode();
    }

    static int activateAction(const QString& action) {
        return callOverBus(QStringLiteral("ActivateAction"),
                           {action, QStringLiteral("[]"), QStringLiteral("{}")});
    }

    static void addTransports() {
        QTest::addColumn<bool>("overBus");
        QTest::newRow("socket") << false;
        QTest::newRow("session bus") << true;
    }

    // Corkwheel with `panels` and no session bus, as an ordinary user: as root, which has
    // the permissions an ordinary user lacks, the binary and whoever signals it would go
    // untested as users run them, so a test run as root (as CI runs) starts it as `user`.
    void startAsOrdinaryUser(const QList<Panel>& panels, const OtherUser* user) {
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        m_corkwheel = std::make_unique<CorkwheelProcess>(panels, QStringLiteral("xcb"), user);
        QVERIFY(m_corkwheel->process().waitForStarted());
        m_panelWindow = shownWindowNamed(panels.first().name);
        QVERIFY2(m_panelWindow, "no panel shown: as another user the binary needs a display "
                                "that lets other local users connect, as Xvfb without -auth does");
        const uid_t expected = user ? user->uid() : ::getuid();
        QCOMPARE(userOf(m_corkwheel->process().processId()), expected);
        QVERIFY(expected != 0);
    }

    // The real user id of the process `pid`, as /proc tells it; -1 when it is gone.
    static uid_t userOf(qint64 pid) {
        QFile status(QStringLiteral("/proc/%1/status").arg(pid));
        if (!status.open(QIODevice::ReadOnly))
            return static_cast<uid_t>(-1);
        const QList<QByteArray> lines = status.readAll().split('\n');
        for (const QByteArray& line : lines) {
            if (line.startsWith("Uid:"))
                return line.mid(4).simplified().split(' ').value(0).toUInt();
        }
        return static_cast<uid_t>(-1);
    }

    // Sends `signal` to the binary from a process of `user` (of the test's own user when
    // none): 0 when it was sent, else kill()'s error.
    int signalCorkwheel(int signal, const OtherUser* user) {
        const auto pid = static_cast<pid_t>(m_corkwheel->process().processId());
        if (!user)
            return ::kill(pid, signal) == 0 ? 0 : errno;
        const pid_t child = ::fork();
        if (child == 0) {
            if (!user->become())
                ::_exit(255);
            ::_exit(::kill(pid, signal) == 0 ? 0 : errno);
        }
        int status = 0;
        if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status))
            return -1;
        return WEXITSTATUS(status);
    }

    // Ends the binary with `signal` as `user` and checks that it ended cleanly, with status 0
    // and nothing from a sanitizer, and took its windows with it.
    void endWithSignal(int signal, const OtherUser* user, const QString& shownPanel) {
        QCOMPARE(signalCorkwheel(signal, user), 0);
        QVERIFY(m_corkwheel->process().waitForFinished(kWait));
        QCOMPARE(m_corkwheel->endingProblem(), QString());
        QCOMPARE(m_corkwheel->process().exitCode(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(windowsNamed(shownPanel).isEmpty(), kWait);
    }

    QByteArray documentBytes() const {
        QFile document(m_corkwheel->documentPath());
        return document.open(QIODevice::ReadOnly) ? document.readAll() : QByteArray();
    }

private Q_SLOTS:
    void initTestCase() {
        if (!m_hasDisplay)
            QSKIP(kNoDisplay);
        const QString missing =
            missingTool({QStringLiteral("xdotool"), QStringLiteral("dbus-daemon")});
        QVERIFY2(missing.isEmpty(), qPrintable(missing));
        m_sessionBus = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    }

    void cleanup() {
        m_corkwheel.reset();
        m_bus.reset();
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_sessionBus);
    }

    void settingsOpensTheEditor_data() { addTransports(); }
    void settingsOpensTheEditor() {
        QFETCH(bool, overBus);
        startCorkwheel(overBus);
        run(QStringLiteral("--settings"));
        QVERIFY(shownEditor());
        QCOMPARE(m_corkwheel->process().state(), QProcess::Running);
    }

    void editModeLiftsThePanelsAboveWindowsAndBack_data() { addTransports(); }
    void editModeLiftsThePanelsAboveWindowsAndBack() {
        QFETCH(bool, overBus);
        startCorkwheel(overBus);
        QTRY_VERIFY_WITH_TIMEOUT(panelState().contains(QStringLiteral("_NET_WM_STATE_BELOW")),
                                 kWait);
        run(QStringLiteral("--edit-mode"));
        QTRY_VERIFY_WITH_TIMEOUT(panelState().contains(QStringLiteral("_NET_WM_STATE_ABOVE")),
                                 kWait);
        run(QStringLiteral("--edit-mode"));
        QTRY_VERIFY_WITH_TIMEOUT(panelState().contains(QStringLiteral("_NET_WM_STATE_BELOW")),
                                 kWait);
    }

    void hideAllHidesThePanelsAndShowsThemAgain_data() { addTransports(); }
    void hideAllHidesThePanelsAndShowsThemAgain() {
        QFETCH(bool, overBus);
        startCorkwheel(overBus);
        run(QStringLiteral("--hide-all"));
        QTRY_VERIFY_WITH_TIMEOUT(!isViewable(m_panelWindow), kWait);
        run(QStringLiteral("--hide-all"));
        QTRY_VERIFY_WITH_TIMEOUT(isViewable(m_panelWindow), kWait);
    }

    void quitEndsCorkwheel_data() { addTransports(); }
    void quitEndsCorkwheel() {
        QFETCH(bool, overBus);
        startCorkwheel(overBus);
        run(QStringLiteral("--quit"));
        QVERIFY(m_corkwheel->process().waitForFinished(kWait));
        QCOMPARE(m_corkwheel->process().exitStatus(), QProcess::NormalExit);
        QCOMPARE(m_corkwheel->process().exitCode(), 0);
    }

    // Every end-to-end test starts the binary through the same helper, which fails the test
    // when the binary crashed, ended with a status but 0 or a sanitizer reported; a clean end
    // on SIGTERM, as at the end of a session, is no problem.
    void crashOfTheBinaryIsReportedAndACleanEndIsNot() {
        startCorkwheel(false);
        m_corkwheel->process().terminate();
        QVERIFY(m_corkwheel->process().waitForFinished(kWait));
        QCOMPARE(m_corkwheel->endingProblem(), QString());
        m_corkwheel.reset();
        QTRY_VERIFY_WITH_TIMEOUT(windowsNamed(m_panel.name).isEmpty(), kWait);

        startCorkwheel(false);
        QVERIFY(::kill(static_cast<pid_t>(m_corkwheel->process().processId()), SIGSEGV) == 0);
        QVERIFY(m_corkwheel->process().waitForFinished(kWait));
        const QString problem = m_corkwheel->endingProblem();
        QVERIFY2(problem.startsWith(QStringLiteral("corkwheel ")), qPrintable(problem));
    }

    void endingSignalFromTheUserEndsCorkwheelCleanlyAndKeepsTheDocument_data() {
        QTest::addColumn<int>("signal");
        QTest::newRow("SIGTERM, as at logout") << SIGTERM;
        QTest::newRow("SIGINT, as Ctrl+C") << SIGINT;
        QTest::newRow("SIGHUP, as a closed terminal") << SIGHUP;
    }

    // Ended with nothing changed, the document is the same file byte for byte; ended right
    // after a panel was moved, before the document would have been written in the normal
    // course, the move is in it. Either way every panel decodes from it.
    void endingSignalFromTheUserEndsCorkwheelCleanlyAndKeepsTheDocument() {
        QFETCH(int, signal);
        std::unique_ptr<OtherUser> user;
        if (::geteuid() == 0) {
            const QString missing = missingTool({QStringLiteral("setpriv")});
            QVERIFY2(missing.isEmpty(), qPrintable(missing));
            user = std::make_unique<OtherUser>();
            QVERIFY2(user->exists(), "useradd could not make a user");
        }
        const QList<Panel> panels = {
            m_panel, textPanel(QStringLiteral("E2E Second"), {1300, 850, 300, 80}),
            textPanel(QStringLiteral("E2E Disabled"), {100, 850, 300, 80}, false)};

        startAsOrdinaryUser(panels, user.get());
        if (QTest::currentTestFailed())
            return;
        const QByteArray written = documentBytes();
        QCOMPARE(m_corkwheel->savedPanels(), panels);
        endWithSignal(signal, user.get(), m_panel.name);
        if (QTest::currentTestFailed())
            return;
        QCOMPARE(documentBytes(), written);
        QCOMPARE(m_corkwheel->savedPanels(), panels);

        startAsOrdinaryUser(panels, user.get());
        if (QTest::currentTestFailed())
            return;
        QCOMPARE(m_corkwheel->startAgain({QStringLiteral("--edit-mode")}), 0);
        const QRect start = rectOf(m_panel.frame);
        const QPoint titleBar =
            start.topLeft() + QPoint(60, DesktopPanelHostView::kTitleBarHeight / 2);
        // In edit mode, taking the mouse.
        const QPoint bareDesktop(1800, 1000);
        QTRY_VERIFY_WITH_TIMEOUT(windowUnderPointer(titleBar) != windowUnderPointer(bareDesktop),
                                 kWait);
        const QRect moved = start.translated(-600, -400);
        drag(titleBar, titleBar + moved.topLeft() - start.topLeft());
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(m_panelWindow), moved, kWait);
        endWithSignal(signal, user.get(), m_panel.name);
        if (QTest::currentTestFailed())
            return;
        const QList<Panel> saved = m_corkwheel->savedPanels();
        QCOMPARE(saved.size(), panels.size());
        QCOMPARE(saved.at(0).id, m_panel.id);
        QCOMPARE(rectOf(saved.at(0).frame), moved);
        QCOMPARE(saved.mid(1), panels.mid(1));
    }

    void busInterfaceAnswersAsTheReadmeShows() {
        startCorkwheel(true);
        QCOMPARE(activateAction(QStringLiteral("hide-all")), 0);
        QTRY_VERIFY_WITH_TIMEOUT(!isViewable(m_panelWindow), kWait);
        QCOMPARE(activateAction(QStringLiteral("hide-all")), 0);
        QTRY_VERIFY_WITH_TIMEOUT(isViewable(m_panelWindow), kWait);

        QCOMPARE(activateAction(QStringLiteral("edit-mode")), 0);
        QTRY_VERIFY_WITH_TIMEOUT(panelState().contains(QStringLiteral("_NET_WM_STATE_ABOVE")),
                                 kWait);
        // An action Corkwheel does not have is refused, and changes nothing.
        QVERIFY(activateAction(QStringLiteral("no-such-action")) != 0);
        QCOMPARE(activateAction(QStringLiteral("edit-mode")), 0);
        QTRY_VERIFY_WITH_TIMEOUT(panelState().contains(QStringLiteral("_NET_WM_STATE_BELOW")),
                                 kWait);

        QCOMPARE(callOverBus(QStringLiteral("Activate"), {QStringLiteral("{}")}), 0);
        QVERIFY(shownEditor());

        QCOMPARE(activateAction(QStringLiteral("quit")), 0);
        QVERIFY(m_corkwheel->process().waitForFinished(kWait));
        QCOMPARE(m_corkwheel->endingProblem(), QString());
    }

    void settingsActionOverTheBusOpensTheEditor() {
        startCorkwheel(true);
        QCOMPARE(activateAction(QStringLiteral("settings")), 0);
        QVERIFY(shownEditor());
    }

    void settingsWithNoneRunningStartsCorkwheelWithTheEditorOpen() {
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        // A session without Corkwheel: its folders, with nothing running in them.
        m_corkwheel = std::make_unique<CorkwheelProcess>(QList<Panel>{m_panel});
        QVERIFY(m_corkwheel->process().waitForStarted());
        QVERIFY(shownWindowNamed(m_panel.name));
        m_corkwheel->process().terminate();
        QVERIFY(m_corkwheel->process().waitForFinished(kWait));
        QTRY_VERIFY_WITH_TIMEOUT(windowsNamed(m_panel.name).isEmpty(), kWait);

        QProcess started;
        started.setProcessEnvironment(sessionEnvironment(homeOf(*m_corkwheel)));
        started.start(QStringLiteral(CORKWHEEL_BINARY), {QStringLiteral("--settings")});
        QVERIFY(started.waitForStarted());
        QVERIFY(shownEditor());
        QVERIFY(shownWindowNamed(m_panel.name));
        QCOMPARE(started.state(), QProcess::Running);
        started.terminate();
        QVERIFY(started.waitForFinished(kWait));
    }
};

CORKWHEEL_DISPLAY_TEST_MAIN(CommandLineEndToEndTest)

#include "tst_commandline_e2e.moc"
