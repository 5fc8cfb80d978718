// SPDX-License-Identifier: GPL-3.0-or-later

// The real corkwheel binary's editor as a screen reader meets it from outside the process:
// on a session bus of the test's own with the accessibility bus and its registry, an AT-SPI
// client (atspi_client.py) walks the editor's tree on every panel type and drives it with
// key presses alone, on the X display that scripts/test.sh starts. The document the binary
// saves shows what the keys did.

#include "support/AccessibilityBus.h"
#include "support/CorkwheelProcess.h"
#include "support/DisplayTestMain.h"
#include "support/EditorOnDisplay.h"
#include "support/PrivateConfigHome.h"

#include "model/PanelType.h"

#include <QApplication>
#include <QFileInfo>
#include <QTest>

#include <memory>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

// Debian's own Python, which has python3-pyatspi, whatever another python3 first on the
// PATH may lack.
constexpr char kPython[] = "/usr/bin/python3";

// The client's verdict: its exit code, and what it wrote.
struct ClientRun {
    int exitCode = -1;
    QString report;
};

} // namespace

class AccessibilityEndToEndTest : public QObject {
    Q_OBJECT

public:
    explicit AccessibilityEndToEndTest(bool hasDisplay) : m_hasDisplay(hasDisplay) {}

private:
    bool m_hasDisplay;
    PrivateConfigHome m_configHome;
    AccessibilityBus m_bus;
    std::unique_ptr<CorkwheelProcess> m_corkwheel;

    // Corkwheel as a session with a screen reader starts it: on that session bus, with Qt's
    // accessibility on from the start (no desktop settings here to turn it on).
    void startCorkwheel(const QList<Panel>& panels) {
        m_corkwheel = std::make_unique<CorkwheelProcess>(
            panels, QStringLiteral("xcb"), nullptr,
            QStringList{QStringLiteral("DBUS_SESSION_BUS_ADDRESS=") + m_bus.sessionAddress(),
                        QStringLiteral("QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1")});
        QVERIFY(m_corkwheel->process().waitForStarted());
        QVERIFY(shownWindowNamed(panels.first().name));
    }

    // As a user does while Corkwheel runs: by starting it again. Once the editor is the
    // active window it takes the keys.
    void openEditor() {
        QCOMPARE(m_corkwheel->startAgain(), 0);
        const WId editor = shownEditor();
        QVERIFY(editor);
        QTRY_COMPARE_WITH_TIMEOUT(activeWindow(), editor, kWait);
    }

    ClientRun runClient(const QString& mode) {
        QProcess client;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), m_bus.sessionAddress());
        env.insert(QStringLiteral("AT_SPI_BUS_ADDRESS"), m_bus.address());
        client.setProcessEnvironment(env);
        client.setProcessChannelMode(QProcess::MergedChannels);
        client.start(QString::fromLatin1(kPython),
                     {QStringLiteral(CORKWHEEL_ATSPI_CLIENT), mode,
                      QString::number(m_corkwheel->process().processId())});
        ClientRun run;
        if (!client.waitForStarted(kWait))
            return run;
        // It takes its time on the bus; the test's own window events go on meanwhile.
        if (!finishWithin(client, 180000))
            run.report = QStringLiteral("the client did not finish in time\n");
        run.report += QString::fromUtf8(client.readAll());
        if (client.exitStatus() == QProcess::NormalExit)
            run.exitCode = client.exitCode();
        return run;
    }

    // One panel of each type, the text panel first: only it is on the desktop, which keeps
    // the web engine off the screen.
    static QList<Panel> everyType() {
        QList<Panel> panels;
        for (PanelType type : allPanelTypes()) {
            Panel panel = Panel::makeDefault(type);
            panel.name = QStringLiteral("My ") + displayName(type);
            panel.isEnabled = type == PanelType::Text;
            panel.frame = {1300, 700, 300, 80};
            // Nothing for the previews to run, read or load.
            panel.shellCommand.clear();
            panel.filePath.clear();
            panel.imageSource.clear();
            panel.webpageURL.clear();
            if (panel.isEnabled)
                panels.prepend(panel);
            else
                panels.append(panel);
        }
        return panels;
    }

private Q_SLOTS:
    void initTestCase() {
        if (!m_hasDisplay)
            QSKIP(kNoDisplay);
        const QString missing = missingTool(
            {QStringLiteral("xdotool"), QStringLiteral("dbus-daemon"), QString::fromLatin1(kPython),
             QString::fromLatin1(AccessibilityBus::kLauncher)});
        QVERIFY2(missing.isEmpty(), qPrintable(missing));
        QVERIFY(m_configHome.use());
        QVERIFY2(m_bus.start(), "the accessibility bus did not start");
    }

    void cleanup() { m_corkwheel.reset(); }

    // Nothing of the session is left behind: the bus, the launcher, the accessibility bus,
    // the registry, Corkwheel.
    void cleanupTestCase() {
        if (!m_hasDisplay)
            return;
        QVERIFY(!m_corkwheel);
        const QStringList before = m_bus.running();
        // The registry ran, or the client had no tree to read.
        QVERIFY2(before.contains(QStringLiteral("at-spi2-registr")), qPrintable(before.join(u' ')));
        QVERIFY2(m_bus.stop(), qPrintable(m_bus.running().join(u' ')));
    }

    void everyControlOnEveryPanelTypeIsNamedForTheScreenReader() {
        const QList<Panel> panels = everyType();
        startCorkwheel(panels);
        openEditor();
        const ClientRun run = runClient(QStringLiteral("walk"));
        QVERIFY2(run.exitCode == 0, qPrintable(run.report));
        // It went through every panel in the list.
        for (const Panel& panel : panels)
            QVERIFY2(run.report.contains(panel.name + QStringLiteral(": ")),
                     qPrintable(run.report));
    }

    void addingSwitchingOffAndSteppingTakeKeysAlone() {
        const Panel notes = Panel::makeDefault(PanelType::Text);
        Panel shown = notes;
        shown.name = QStringLiteral("Notes");
        shown.frame = {1300, 700, 300, 80};
        startCorkwheel({shown});
        const QList<Panel> before = m_corkwheel->savedPanels();
        QCOMPARE(before.size(), 1);
        openEditor();
        const ClientRun run = runClient(QStringLiteral("keyboard"));
        QVERIFY2(run.exitCode == 0, qPrintable(run.report));

        const Panel added = Panel::makeDefault(PanelType::Clock);
        QTRY_COMPARE_WITH_TIMEOUT(m_corkwheel->savedPanels().size(), 2, kWait);
        QTRY_COMPARE_WITH_TIMEOUT(m_corkwheel->savedPanels().value(1).refreshInterval,
                                  added.refreshInterval + 1, kWait);
        const QList<Panel> saved = m_corkwheel->savedPanels();
        QCOMPARE(saved.at(0), before.at(0));
        QCOMPARE(saved.at(1).type, PanelType::Clock);
        QCOMPARE(saved.at(1).name, displayName(PanelType::Clock));
        QVERIFY(!saved.at(1).isEnabled);
    }
};

CORKWHEEL_DISPLAY_TEST_MAIN(AccessibilityEndToEndTest)

#include "tst_accessibility_e2e.moc"
