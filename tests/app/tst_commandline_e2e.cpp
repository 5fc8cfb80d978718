// SPDX-License-Identifier: GPL-3.0-or-later

// The command line's actions on the real corkwheel binary running on an X display with a window
// manager (scripts/test.sh starts Xvfb, openbox and picom), reached through the local socket
// and through the session bus, and checked the way the window system sees them.

#include "support/CommandLineRun.h"
#include "support/EditorOnDisplay.h"
#include "support/PanelFixtures.h"
#include "support/PrivateSessionBus.h"

#include <QApplication>
#include <QTest>

#include <memory>

#include <signal.h>

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

int main(int argc, char* argv[]) {
    const bool hasDisplay = !qEnvironmentVariableIsEmpty("DISPLAY");
    if (!hasDisplay)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    CommandLineEndToEndTest test(hasDisplay);
    return QTest::qExec(&test, argc, argv);
}

#include "tst_commandline_e2e.moc"
