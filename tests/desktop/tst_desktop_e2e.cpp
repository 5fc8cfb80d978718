// Panel windows on a real X display with a window manager and a compositor, as
// scripts/test.sh starts them (Xvfb, openbox, picom). The first tests run the corkwheel
// binary; the others run the store and the windows manager inside this process, so they
// can switch edit mode, which the application offers no outside channel for. Everything is
// checked from outside, the way the window system sees it: xwininfo, xprop and xdotool.

#include "PanelFixtures.h"

#include "desktop/DesktopPanelController.h"
#include "desktop/DesktopPanelWindow.h"
#include "desktop/DesktopWindowsManager.h"
#include "desktop/PanelResizeHandle.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QProcess>
#include <QRegularExpression>
#include <QScreen>
#include <QStandardPaths>
#include <QTest>
#include <QWidget>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

constexpr int kWait = 5000;

// Runs an X tool to the end while this process keeps handling its own window events.
QString run(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForStarted(kWait))
        return {};
    QElapsedTimer timer;
    timer.start();
    while (process.state() != QProcess::NotRunning && timer.elapsed() < 20000)
        QTest::qWait(10);
    return QString::fromUtf8(process.readAllStandardOutput());
}

QString xdotool(const QStringList& arguments) {
    return run(QStringLiteral("xdotool"), arguments);
}

// Asks the window manager to show the desktop, or to stop showing it, as a taskbar's
// "show desktop" button does. A key binding would depend on the keyboard state.
void showDesktop(bool on) {
    run(QStringLiteral("wmctrl"),
        {QStringLiteral("-k"), on ? QStringLiteral("on") : QStringLiteral("off")});
}

QString hex(WId window) {
    return QStringLiteral("0x%1").arg(window, 0, 16);
}

QString windowInfo(WId window) {
    return run(QStringLiteral("xwininfo"), {QStringLiteral("-id"), hex(window)});
}

int infoValue(const QString& info, const QString& label) {
    const QRegularExpression pattern(QRegularExpression::escape(label) +
                                     QStringLiteral(":\\s+(-?\\d+)"));
    const auto match = pattern.match(info);
    return match.hasMatch() ? match.captured(1).toInt() : -1;
}

// Where the window really is on the screen, frame offsets of the window manager included.
QRect screenGeometry(WId window) {
    const QString info = windowInfo(window);
    return {infoValue(info, QStringLiteral("Absolute upper-left X")),
            infoValue(info, QStringLiteral("Absolute upper-left Y")),
            infoValue(info, QStringLiteral("Width")), infoValue(info, QStringLiteral("Height"))};
}

bool isViewable(WId window) {
    return windowInfo(window).contains(QStringLiteral("Map State: IsViewable"));
}

QString xprop(const QString& target, const QString& name) {
    return run(QStringLiteral("xprop"),
               {target == QStringLiteral("root") ? QStringLiteral("-root") : QStringLiteral("-id"),
                target, name})
        .replace(QLatin1Char('\n'), QLatin1Char(' '));
}

QStringList atoms(WId window, const QString& name) {
    const QString line = xprop(hex(window), name);
    const qsizetype equals = line.indexOf(QLatin1Char('='));
    if (equals < 0)
        return {};
    QStringList values = line.mid(equals + 1).split(QLatin1Char(','));
    for (QString& value : values)
        value = value.trimmed();
    return values;
}

bool windowManagerSupports(const QString& atom) {
    return xprop(QStringLiteral("root"), QStringLiteral("_NET_SUPPORTED")).contains(atom);
}

bool isShowingDesktop() {
    return xprop(QStringLiteral("root"), QStringLiteral("_NET_SHOWING_DESKTOP"))
        .contains(QStringLiteral("= 1"));
}

QList<WId> windowsNamed(const QString& name) {
    QList<WId> windows;
    const QString found = xdotool({QStringLiteral("search"), QStringLiteral("--name"),
                                   QLatin1Char('^') + name + QLatin1Char('$')});
    for (const QString& line : found.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        windows.append(line.trimmed().toULongLong());
    return windows;
}

void click(QPoint at) {
    xdotool({QStringLiteral("mousemove"), QStringLiteral("--sync"), QString::number(at.x()),
             QString::number(at.y()), QStringLiteral("click"), QStringLiteral("1")});
}

// Presses at `from`, moves in small steps to `to` and releases there.
void drag(QPoint from, QPoint to) {
    QStringList arguments = {QStringLiteral("mousemove"), QStringLiteral("--sync"),
                             QString::number(from.x()),   QString::number(from.y()),
                             QStringLiteral("mousedown"), QStringLiteral("1")};
    constexpr int kSteps = 8;
    for (int step = 1; step <= kSteps; ++step) {
        const QPoint at = from + (to - from) * step / kSteps;
        arguments << QStringLiteral("sleep") << QStringLiteral("0.03")
                  << QStringLiteral("mousemove") << QStringLiteral("--sync")
                  << QString::number(at.x()) << QString::number(at.y());
    }
    arguments << QStringLiteral("sleep") << QStringLiteral("0.1") << QStringLiteral("mouseup")
              << QStringLiteral("1");
    xdotool(arguments);
}

// What a desktop environment's own desktop window is: a full-screen window of the desktop
// type, below everything else. It records the clicks that reach it.
class DesktopStandIn : public QWidget {
public:
    DesktopStandIn() {
        setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
        setGeometry(QGuiApplication::primaryScreen()->geometry());
        run(QStringLiteral("xprop"),
            {QStringLiteral("-id"), hex(winId()), QStringLiteral("-f"),
             QStringLiteral("_NET_WM_WINDOW_TYPE"), QStringLiteral("32a"), QStringLiteral("-set"),
             QStringLiteral("_NET_WM_WINDOW_TYPE"), QStringLiteral("_NET_WM_WINDOW_TYPE_DESKTOP")});
        show();
    }

    QList<QPoint> presses;

protected:
    void mousePressEvent(QMouseEvent* event) override {
        presses.append(event->globalPosition().toPoint());
    }
};

} // namespace

class DesktopE2ETest : public QObject {
    Q_OBJECT

public:
    explicit DesktopE2ETest(bool hasDisplay) : m_hasDisplay(hasDisplay) {}

private:
    bool m_hasDisplay;
    std::unique_ptr<QTemporaryDir> m_home;
    std::unique_ptr<QProcess> m_corkwheel;
    std::unique_ptr<StoreFixture> m_fixture;
    std::unique_ptr<DesktopWindowsManager> m_manager;

    Panel m_alpha = textPanel(QStringLiteral("E2E Alpha"), {100, 120, 300, 80});
    Panel m_beta = textPanel(QStringLiteral("E2E Beta"), {600, 300, 360, 200});
    Panel m_off = textPanel(QStringLiteral("E2E Off"), {100, 500, 240, 60}, false);

    // The corkwheel binary with its own XDG folders and a document holding `panels`.
    void startCorkwheel(const QList<Panel>& panels) {
        m_home = std::make_unique<QTemporaryDir>();
        const QDir home(m_home->path());
        home.mkpath(QStringLiteral("data/Corkwheel"));
        home.mkpath(QStringLiteral("runtime"));
        QFile::setPermissions(home.filePath(QStringLiteral("runtime")),
                              QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                  QFileDevice::ExeOwner);
        QFile document(home.filePath(QStringLiteral("data/Corkwheel/panels.json")));
        QVERIFY(document.open(QIODevice::WriteOnly));
        document.write(PanelDocument::encode(panels).value());
        document.close();

        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        env.insert(QStringLiteral("XDG_DATA_HOME"), home.filePath(QStringLiteral("data")));
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), home.filePath(QStringLiteral("config")));
        env.insert(QStringLiteral("XDG_RUNTIME_DIR"), home.filePath(QStringLiteral("runtime")));
        m_corkwheel = std::make_unique<QProcess>();
        m_corkwheel->setProcessEnvironment(env);
        m_corkwheel->setProgram(QStringLiteral(CORKWHEEL_BINARY));
        m_corkwheel->start();
        QVERIFY(m_corkwheel->waitForStarted());
    }

    // The X window of a panel shown by the binary, once it is mapped; 0 when none comes.
    static WId shownWindow(const Panel& panel) {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < kWait) {
            const QList<WId> windows = windowsNamed(panel.name);
            if (!windows.isEmpty() && isViewable(windows.first()))
                return windows.first();
            QTest::qWait(50);
        }
        return 0;
    }

    // The store and the windows manager in this process, as the application has them.
    void startInProcess(const QList<Panel>& panels) {
        m_fixture = std::make_unique<StoreFixture>(panels);
        m_manager = std::make_unique<DesktopWindowsManager>(*m_fixture->store);
    }

    PanelStore& store() { return *m_fixture->store; }

    WId windowOf(const Panel& panel) const {
        return m_manager->controller(panel.id)->window()->winId();
    }

    void waitUntilViewable(WId window, bool viewable) {
        QTRY_COMPARE_WITH_TIMEOUT(isViewable(window), viewable, kWait);
    }

    PanelFrame savedFrame(const Panel& panel) const {
        for (const Panel& saved : m_fixture->savedPanels()) {
            if (saved.id == panel.id)
                return saved.frame;
        }
        return {};
    }

private Q_SLOTS:
    void initTestCase() {
        if (!m_hasDisplay) {
            QSKIP("DISPLAY is not set: these tests need an X display with a window manager and "
                  "a compositor; scripts/test.sh starts one (Xvfb, openbox, picom)");
        }
        QVERIFY2(!QStandardPaths::findExecutable(QStringLiteral("xdotool")).isEmpty(),
                 "xdotool is missing: scripts/test.sh installs it");
        QVERIFY2(!QStandardPaths::findExecutable(QStringLiteral("wmctrl")).isEmpty(),
                 "wmctrl is missing: scripts/test.sh installs it");
        QVERIFY2(!xprop(QStringLiteral("root"), QStringLiteral("_NET_SUPPORTING_WM_CHECK"))
                      .contains(QStringLiteral("not found")),
                 "no EWMH window manager runs on this display");
    }

    void cleanup() {
        // Whatever a test left behind, the next one starts with the windows shown.
        if (isShowingDesktop())
            showDesktop(false);
        QTRY_VERIFY_WITH_TIMEOUT(!isShowingDesktop(), kWait);
        if (m_corkwheel) {
            m_corkwheel->terminate();
            if (!m_corkwheel->waitForFinished(kWait))
                m_corkwheel->kill();
            m_corkwheel.reset();
        }
        m_manager.reset();
        m_fixture.reset();
        m_home.reset();
    }

    void corkwheelShowsEachEnabledPanelAtItsFrame() {
        startCorkwheel({m_alpha, m_beta, m_off});
        const WId alpha = shownWindow(m_alpha);
        const WId beta = shownWindow(m_beta);
        QVERIFY(alpha && beta);
        QCOMPARE(screenGeometry(alpha), QRect(100, 120, 300, 80));
        QCOMPARE(screenGeometry(beta), QRect(600, 300, 360, 200));
        const QList<WId> off = windowsNamed(m_off.name);
        for (WId window : off)
            QTRY_VERIFY_WITH_TIMEOUT(!isViewable(window), kWait);
    }

    void pinnedPanelIsBelowOthersOnEveryWorkspaceAndOutOfTaskbar() {
        startCorkwheel({m_alpha});
        const WId window = shownWindow(m_alpha);
        QVERIFY(window);
        const QStringList state = atoms(window, QStringLiteral("_NET_WM_STATE"));
        QVERIFY2(state.contains(QStringLiteral("_NET_WM_STATE_BELOW")),
                 qPrintable(state.join(u' ')));
        QVERIFY(state.contains(QStringLiteral("_NET_WM_STATE_SKIP_TASKBAR")));
        QVERIFY(state.contains(QStringLiteral("_NET_WM_STATE_SKIP_PAGER")));
        QVERIFY(!state.contains(QStringLiteral("_NET_WM_STATE_ABOVE")));
        // Openbox does without the sticky state: a window on desktop 0xFFFFFFFF is on all.
        if (windowManagerSupports(QStringLiteral("_NET_WM_STATE_STICKY")))
            QVERIFY(state.contains(QStringLiteral("_NET_WM_STATE_STICKY")));
        QVERIFY(xprop(hex(window), QStringLiteral("_NET_WM_DESKTOP"))
                    .contains(QStringLiteral("= 4294967295")));
        QCOMPARE(atoms(window, QStringLiteral("_NET_WM_WINDOW_TYPE")).first(),
                 QStringLiteral("_NET_WM_WINDOW_TYPE_SPLASH"));
    }

    void ordinaryWindowOpenedLaterStaysAbovePinnedPanel() {
        startCorkwheel({m_alpha});
        const WId panel = shownWindow(m_alpha);
        QVERIFY(panel);
        QWidget ordinary;
        ordinary.setWindowTitle(QStringLiteral("E2E Ordinary"));
        ordinary.setGeometry(50, 50, 600, 400);
        ordinary.show();
        QVERIFY(QTest::qWaitForWindowExposed(&ordinary));
        QTRY_VERIFY_WITH_TIMEOUT(
            [&] {
                const QString stacking =
                    xprop(QStringLiteral("root"), QStringLiteral("_NET_CLIENT_LIST_STACKING"));
                const qsizetype panelAt = stacking.indexOf(hex(panel));
                const qsizetype ordinaryAt = stacking.indexOf(hex(ordinary.winId()));
                return panelAt >= 0 && ordinaryAt > panelAt;
            }(),
            kWait);
    }

    void clickOnPinnedPanelReachesWindowUnderneath() {
        DesktopStandIn desktop;
        QVERIFY(QTest::qWaitForWindowExposed(&desktop));
        startCorkwheel({m_alpha});
        QVERIFY(shownWindow(m_alpha));
        click({250, 160});
        QTRY_COMPARE_WITH_TIMEOUT(desktop.presses, QList<QPoint>{QPoint(250, 160)}, kWait);
    }

    void showDesktopLeavesPanelsVisible() {
        startCorkwheel({m_alpha});
        const WId window = shownWindow(m_alpha);
        QVERIFY(window);
        showDesktop(true);
        QTRY_VERIFY_WITH_TIMEOUT(isShowingDesktop(), kWait);
        QTest::qWait(300);
        QVERIFY(isViewable(window));
    }

    void editModeKeepsTheSameWindowAndLiftsIt() {
        startInProcess({m_alpha});
        const WId window = windowOf(m_alpha);
        waitUntilViewable(window, true);
        store().setEditMode(true);
        QCOMPARE(windowOf(m_alpha), window);
        QTRY_VERIFY_WITH_TIMEOUT(atoms(window, QStringLiteral("_NET_WM_STATE"))
                                     .contains(QStringLiteral("_NET_WM_STATE_ABOVE")),
                                 kWait);
        QVERIFY(!atoms(window, QStringLiteral("_NET_WM_STATE"))
                     .contains(QStringLiteral("_NET_WM_STATE_BELOW")));
        QVERIFY(isViewable(window));

        store().setEditMode(false);
        QCOMPARE(windowOf(m_alpha), window);
        QTRY_VERIFY_WITH_TIMEOUT(atoms(window, QStringLiteral("_NET_WM_STATE"))
                                     .contains(QStringLiteral("_NET_WM_STATE_BELOW")),
                                 kWait);
        QVERIFY(isViewable(window));
        QCOMPARE(screenGeometry(window), QRect(100, 120, 300, 80));
        QCOMPARE(atoms(window, QStringLiteral("_NET_WM_WINDOW_TYPE")).first(),
                 QStringLiteral("_NET_WM_WINDOW_TYPE_SPLASH"));
    }

    void clickReachesPanelOnlyInEditMode() {
        DesktopStandIn desktop;
        QVERIFY(QTest::qWaitForWindowExposed(&desktop));
        startInProcess({m_alpha});
        waitUntilViewable(windowOf(m_alpha), true);
        click({250, 170});
        QTRY_COMPARE_WITH_TIMEOUT(desktop.presses.size(), 1, kWait);

        store().setEditMode(true);
        QTest::qWait(300);
        click({250, 170});
        QTest::qWait(500);
        QCOMPARE(desktop.presses.size(), 1);
    }

    void titleBarDragMovesPanelAndSavesItsFrame() {
        startInProcess({m_alpha});
        store().setEditMode(true);
        const WId window = windowOf(m_alpha);
        waitUntilViewable(window, true);
        QTest::qWait(300);
        drag({160, 133}, {310, 233});
        const PanelFrame moved{250, 220, 300, 80};
        QTRY_COMPARE_WITH_TIMEOUT(store().panels().first().frame, moved, kWait);
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(window), QRect(250, 220, 300, 80), kWait);
        QTRY_COMPARE_WITH_TIMEOUT(savedFrame(m_alpha), moved, kWait);
    }

    void resizeDragStopsAtMinimumSize() {
        startInProcess({m_beta});
        store().setEditMode(true);
        const WId window = windowOf(m_beta);
        waitUntilViewable(window, true);
        QTest::qWait(300);
        const int handle = PanelResizeHandle::kSize / 2;
        drag({960 - handle, 500 - handle}, {20, 20});
        const PanelFrame smallest{600, 300, 120, 50};
        QTRY_COMPARE_WITH_TIMEOUT(store().panels().first().frame, smallest, kWait);
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(window), QRect(600, 300, 120, 50), kWait);
        QTRY_COMPARE_WITH_TIMEOUT(savedFrame(m_beta), smallest, kWait);
    }

    void disabledAndHiddenPanelsAreUnmapped() {
        startInProcess({m_alpha, m_beta, m_off});
        const WId alpha = windowOf(m_alpha);
        const WId beta = windowOf(m_beta);
        const WId off = windowOf(m_off);
        waitUntilViewable(alpha, true);
        waitUntilViewable(beta, true);
        waitUntilViewable(off, false);

        Panel disabled = m_beta;
        disabled.isEnabled = false;
        store().update(disabled);
        waitUntilViewable(beta, false);

        store().setPanelsHidden(true);
        waitUntilViewable(alpha, false);

        store().setPanelsHidden(false);
        waitUntilViewable(alpha, true);
        QTest::qWait(300);
        QVERIFY(!isViewable(beta));
        QVERIFY(!isViewable(off));

        store().update(m_beta);
        waitUntilViewable(beta, true);
        QCOMPARE(windowOf(m_beta), beta);
        QCOMPARE(screenGeometry(beta), QRect(600, 300, 360, 200));
        QVERIFY(atoms(beta, QStringLiteral("_NET_WM_STATE"))
                    .contains(QStringLiteral("_NET_WM_STATE_SKIP_TASKBAR")));
    }
};

int main(int argc, char* argv[]) {
    const bool hasDisplay = !qEnvironmentVariableIsEmpty("DISPLAY");
    if (!hasDisplay)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    DesktopE2ETest test(hasDisplay);
    return QTest::qExec(&test, argc, argv);
}

#include "tst_desktop_e2e.moc"
