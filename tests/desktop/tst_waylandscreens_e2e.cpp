// SPDX-License-Identifier: GPL-3.0-or-later

// Layer-shell panels on a Wayland desktop of two outputs side by side: sway, headless, which
// scripts/in-wayland-desktop.sh starts with one output; the test adds the second before any
// panel is shown, unplugs it and plugs one in again, as a user does with a monitor. A
// panel's frame is measured from the main output's corner whatever output it is on.
// Everything is checked the way a user sees it: the pixels of both outputs, taken with
// grim, and the pointer, moved with a virtual device of sway's.
//
// The same checks run under KWin, Plasma's compositor, which scripts/in-kwin-desktop.sh
// starts with both outputs; the test moves the second, switches it off and on again with
// kscreen-doctor, as Plasma's display settings do. KWin takes no screenshots without a GPU,
// so there what is seen is read from the windows KWin stacks on its outputs
// (support/KWinScripting.h), and the pointer is KWin's fake input.

#include "support/CorkwheelProcess.h"
#include "support/InProcessDesktop.h"
#include "support/KWinScripting.h"
#include "support/PanelFixtures.h"
#include "support/ScreenPanels.h"
#include "support/ScreenPixels.h"
#include "support/StoreFixture.h"
#include "support/WaylandPointer.h"

#include "desktop/DesktopPanelHostView.h"
#include "desktop/DesktopWindowsManager.h"
#include "platform/DesktopPlatform.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QScreen>
#include <QSet>
#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

// The first output's background and size (scripts/lib/wayland-desktop.sh).
constexpr QColor kMainColor(0x33, 0x66, 0x99);
constexpr QSize kOutputSize(1280, 800);
// The second output: as large, right of the first, another colour.
constexpr QColor kSecondColor(0x99, 0x33, 0x33);
const QRect kSecondOutput(QPoint(1280, 0), kOutputSize);

// Halfway down a panel's title bar, in edit mode.
constexpr int kBarMiddle = DesktopPanelHostView::kTitleBarHeight / 2;

// Which desktop the test runs under: sway unless KWin is on the session bus.
bool underKWin() {
    static const bool kwin = qEnvironmentVariableIsEmpty("SWAYSOCK") &&
                             QDBusConnection::sessionBus().interface()->isServiceRegistered(
                                 QStringLiteral("org.kde.KWin"));
    return kwin;
}

// What the outputs show at one moment: under sway their pixels, under KWin the windows it
// stacks on them, the topmost one at a place being the one seen there.
class SeenOutputs {
public:
    static SeenOutputs now() {
        SeenOutputs seen;
        if (underKWin()) {
            seen.m_windows = KWinScripting::windows();
            seen.m_outputs = KWinScripting::screens();
        } else {
            seen.m_screen = screenshot();
        }
        return seen;
    }

    bool panelAt(QPoint at) const {
        if (!underKWin())
            return isColor(m_screen.pixelColor(at), kPanelColor);
        const auto window = windowAt(at);
        // A layer surface, which has no title: the panels are this desktop's only ones.
        return window && window->caption.isEmpty();
    }

    // Whether the bare background of `output` is seen at `at`, which lies on it.
    bool backgroundOfAt(const QRect& output, QPoint at) const {
        if (!underKWin())
            return isColor(m_screen.pixelColor(at),
                           output.topLeft() == QPoint() ? kMainColor : kSecondColor);
        return m_outputs.contains(output) && output.contains(at) && !windowAt(at);
    }

private:
    std::optional<KWinWindow> windowAt(QPoint at) const {
        for (auto window = m_windows.crbegin(); window != m_windows.crend(); ++window) {
            if (window->frame.contains(at))
                return *window;
        }
        return std::nullopt;
    }

    QImage m_screen;
    QList<KWinWindow> m_windows;
    QList<QRect> m_outputs;
};

bool panelIsSeenAt(QPoint at) {
    return SeenOutputs::now().panelAt(at);
}

const QRect kMainOutput(QPoint(), kOutputSize);

QString swaymsg(const QStringList& arguments) {
    return run(QStringLiteral("swaymsg"), arguments);
}

QSet<QString> outputNames() {
    QSet<QString> names;
    const QJsonArray outputs =
        QJsonDocument::fromJson(
            swaymsg({QStringLiteral("-r"), QStringLiteral("-t"), QStringLiteral("get_outputs")})
                .toUtf8())
            .array();
    for (const QJsonValue& output : outputs)
        names.insert(output.toObject().value(QStringLiteral("name")).toString());
    return names;
}

// Qt's screens follow sway's outputs: this process is a client of sway's too.
bool qtSeesOutputAt(const QRect& geometry) {
    const QList<QScreen*> screens = QGuiApplication::screens();
    return std::any_of(screens.cbegin(), screens.cend(),
                       [&](const QScreen* screen) { return screen->geometry() == geometry; });
}

// KWin's second virtual output, which it makes at its start.
const QString kKWinSecondOutput = QStringLiteral("Virtual-1");

// Changes KWin's outputs as Plasma's display settings do, through the same library.
void kscreenDoctor(const QStringList& settings) {
    run(QStringLiteral("kscreen-doctor"), settings);
}

void moveOutput(const QString& name, QPoint to) {
    if (underKWin()) {
        kscreenDoctor(
            {QStringLiteral("output.%1.position.%2,%3").arg(name).arg(to.x()).arg(to.y())});
        return;
    }
    swaymsg({QStringLiteral("output"), name, QStringLiteral("position"), QString::number(to.x()),
             QString::number(to.y())});
}

// The output gone, as when its monitor is unplugged.
void unplugOutput(const QString& name) {
    if (underKWin())
        kscreenDoctor({QStringLiteral("output.%1.disable").arg(name)});
    else
        swaymsg({QStringLiteral("output"), name, QStringLiteral("unplug")});
}

// How wide the outputs are together.
int layoutWidth() {
    if (!underKWin())
        return screenshot().width();
    QRect layout;
    for (const QRect& output : KWinScripting::screens())
        layout = layout.united(output);
    return layout.width();
}

// A second output where the second output goes: a monitor plugged in. Under sway a new
// headless output, named as sway numbers them; under KWin, whose virtual outputs are all
// made at its start, its second one switched on again. Returns its name; empty when none
// was made.
QString plugInSecondOutput() {
    if (underKWin()) {
        kscreenDoctor({QStringLiteral("output.%1.enable").arg(kKWinSecondOutput),
                       QStringLiteral("output.%1.position.%2,%3")
                           .arg(kKWinSecondOutput)
                           .arg(kSecondOutput.x())
                           .arg(kSecondOutput.y())});
        return kKWinSecondOutput;
    }
    const QSet<QString> before = outputNames();
    swaymsg({QStringLiteral("create_output")});
    const QSet<QString> added = outputNames() - before;
    if (added.size() != 1)
        return {};
    const QString name = *added.cbegin();
    swaymsg({QStringLiteral("output"), name, QStringLiteral("resolution"),
             QStringLiteral("%1x%2").arg(kOutputSize.width()).arg(kOutputSize.height()),
             QStringLiteral("position"), QString::number(kSecondOutput.x()),
             QString::number(kSecondOutput.y()), QStringLiteral("bg"), kSecondColor.name(),
             QStringLiteral("solid_color")});
    return name;
}

} // namespace

class WaylandScreensEndToEndTest : public QObject, public InProcessDesktop {
    Q_OBJECT

private:
    WaylandPointer m_pointer;
    QString m_secondOutput;

private Q_SLOTS:
    void initTestCase() {
        QCOMPARE(QGuiApplication::platformName(), QStringLiteral("wayland"));
        if (underKWin()) {
            const QString missing = missingTool({QStringLiteral("kscreen-doctor")});
            QVERIFY2(missing.isEmpty(), qPrintable(missing));
            m_secondOutput = kKWinSecondOutput;
            QCOMPARE(KWinScripting::screens(), QList<QRect>({kMainOutput, kSecondOutput}));
            QTRY_VERIFY_WITH_TIMEOUT(qtSeesOutputAt(kSecondOutput), kWait);
            QVERIFY2(m_pointer.plugIn(QStringLiteral(CORKWHEEL_POINTER_DEVICE),
                                      {kSecondOutput.right() + 1, kOutputSize.height()}),
                     "KWin takes no virtual pointer");
            return;
        }
        QVERIFY2(!qEnvironmentVariableIsEmpty("SWAYSOCK"),
                 "SWAYSOCK is not set: these tests run under sway, which "
                 "scripts/in-wayland-desktop.sh starts, or KWin, which "
                 "scripts/in-kwin-desktop.sh starts");
        const QString missing = missingTool({QStringLiteral("grim"), QStringLiteral("swaymsg")});
        QVERIFY2(missing.isEmpty(), qPrintable(missing));
        QCOMPARE(QGuiApplication::platformName(), QStringLiteral("wayland"));
        QTRY_VERIFY_WITH_TIMEOUT(isColor(screenPixel({5, 5}), kMainColor), kWait);
        m_secondOutput = plugInSecondOutput();
        QVERIFY2(!m_secondOutput.isEmpty(), "sway made no second output");
        QTRY_VERIFY_WITH_TIMEOUT(
            isColor(screenPixel(kSecondOutput.topLeft() + QPoint(5, 5)), kSecondColor), kWait);
        QTRY_VERIFY_WITH_TIMEOUT(qtSeesOutputAt(kSecondOutput), kWait);
        QVERIFY2(m_pointer.plugIn(QStringLiteral(CORKWHEEL_POINTER_DEVICE),
                                  {kSecondOutput.right() + 1, kOutputSize.height()}),
                 "the compositor takes no virtual pointer");
    }

    void cleanup() {
        m_manager.reset();
        m_fixture.reset();
        moveOutput(m_secondOutput, kSecondOutput.topLeft());
        QTRY_VERIFY_WITH_TIMEOUT(qtSeesOutputAt(kSecondOutput), kWait);
    }

    // 120 pixels into the second output, not that output's corner further on.
    void binaryShowsAPanelOnTheSecondOutputAtItsFrame() {
        const Panel onMain = filledPanel(QStringLiteral("E2E Main"), {100, 100, 300, 80});
        const Panel onSecond = filledPanel(QStringLiteral("E2E Second"), {1400, 100, 300, 80});
        CorkwheelProcess corkwheel({onMain, onSecond}, QString());
        QVERIFY(corkwheel.process().waitForStarted());
        const QRect second = rectOf(onSecond.frame);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(second)), kWait * 2);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(rectOf(onMain.frame))), kWait);
        const SeenOutputs seen = SeenOutputs::now();
        const QPoint middle = second.center();
        const int halfWidth = second.width() / 2;
        QVERIFY(seen.backgroundOfAt(kSecondOutput, middle - QPoint(halfWidth + 4, 0)));
        QVERIFY(seen.panelAt(middle + QPoint(halfWidth - 4, 0)));
        QVERIFY(seen.backgroundOfAt(kSecondOutput, middle + QPoint(halfWidth + 4, 0)));
        QVERIFY(seen.backgroundOfAt(kSecondOutput, middle - QPoint(0, second.height() / 2 + 4)));
    }

    // A layer surface is on one output, its margins measured from that output's corner: a
    // panel across both is on the output that holds most of it, and is seen whole, at its
    // frame, over both.
    void panelAcrossBothOutputsIsSeenWholeAtItsFrame() {
        const Panel moreOnMain = filledPanel(QStringLiteral("E2E Left"), {1100, 300, 300, 80});
        const Panel moreOnSecond = filledPanel(QStringLiteral("E2E Right"), {1200, 500, 300, 80});
        startInProcess({moreOnMain, moreOnSecond});
        for (const Panel& panel : {moreOnMain, moreOnSecond}) {
            const QRect frame = rectOf(panel.frame);
            QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(frame)), kWait);
            const SeenOutputs seen = SeenOutputs::now();
            const int middle = frame.center().y();
            QVERIFY(seen.backgroundOfAt(kMainOutput, {frame.left() - 4, middle}));
            QVERIFY(seen.panelAt({frame.left() + 4, middle}));
            QVERIFY(seen.panelAt({frame.right() - 4, middle}));
            QVERIFY(seen.backgroundOfAt(kSecondOutput, {frame.right() + 4, middle}));
        }
    }

    // The second output lower down: a panel whose centre is on that output's corner, while
    // most of it is on the main output, is on the main output, at its frame.
    void panelIsOnTheOutputHoldingMostOfItNotTheOneUnderItsCentre() {
        const QRect lower = kSecondOutput.translated(0, 400);
        moveOutput(m_secondOutput, lower.topLeft());
        QTRY_VERIFY_WITH_TIMEOUT(qtSeesOutputAt(lower), kWait);
        const Panel panel = filledPanel(QStringLiteral("E2E Corner"), {1140, 310, 300, 200});
        const QRect frame = rectOf(panel.frame);
        QVERIFY(lower.contains(frame.center()));
        startInProcess({panel});
        // Its lower right corner is on the second output, most of it on the main one.
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(frame)), kWait);
        const SeenOutputs seen = SeenOutputs::now();
        const QPoint onMain = frame.topLeft() + QPoint(100, 100);
        QVERIFY(seen.panelAt(onMain));
        QVERIFY(seen.backgroundOfAt(kMainOutput, onMain - QPoint(104, 0)));
        QVERIFY(seen.backgroundOfAt(kMainOutput, onMain - QPoint(0, 104)));
    }

    // Dragged by its title bar in edit mode from the main output to the second one, the
    // panel stays there, and its frame is saved measured from the main output's corner; it
    // is there again when Corkwheel starts again.
    void dragCarriesAPanelToTheSecondOutputAndSavesIt() {
        const Panel mover = filledPanel(QStringLiteral("E2E Mover"), {700, 300, 300, 80});
        startInProcess({mover});
        store().setEditMode(true);
        const QRect start = rectOf(mover.frame);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(start)), kWait);
        const QPoint titleBar = start.topLeft() + QPoint(60, kBarMiddle);
        m_pointer.drag(titleBar, titleBar + QPoint(800, 150));
        const QRect moved = start.translated(800, 150);
        QTRY_COMPARE_WITH_TIMEOUT(rectOf(savedFrame(mover)), moved, kWait);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(moved)), kWait);
        QVERIFY(!panelIsSeenAt(sampleOf(start)));

        // Pinned again, without its title bar, it stays on the second output.
        store().setEditMode(false);
        const QPoint barEnd = moved.topLeft() + QPoint(250, kBarMiddle);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(barEnd), kWait);
        QVERIFY(panelIsSeenAt(sampleOf(moved)));

        const QList<Panel> saved = m_fixture->savedPanels();
        m_manager.reset();
        QTRY_VERIFY_WITH_TIMEOUT(!panelIsSeenAt(sampleOf(moved)), kWait);
        startInProcess(saved);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(moved)), kWait);
        QVERIFY(panelIsSeenAt(barEnd));
    }

    // Last, as it unplugs the second output and plugs in another in its place.
    void panelOfAnUnpluggedOutputComesOntoTheMainOneAndGoesBack() {
        const Panel away = filledPanel(QStringLiteral("E2E Away"), {1400, 100, 300, 80});
        startInProcess({away});
        const QRect frame = rectOf(away.frame);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(frame)), kWait);

        unplugOutput(m_secondOutput);
        // Inside the main output, as far right as it fits, at the same height.
        const QRect inside(kOutputSize.width() - frame.width(), frame.y(), frame.width(),
                           frame.height());
        QTRY_COMPARE_WITH_TIMEOUT(layoutWidth(), kOutputSize.width(), kWait);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(inside)), kWait);
        QCOMPARE(store().panels().first().frame, away.frame);
        QCOMPARE(savedFrame(away), away.frame);

        m_secondOutput = plugInSecondOutput();
        QVERIFY2(!m_secondOutput.isEmpty(), "sway made no second output");
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(frame)), kWait);
        QTRY_VERIFY_WITH_TIMEOUT(SeenOutputs::now().backgroundOfAt(kMainOutput, sampleOf(inside)),
                                 kWait);
        QCOMPARE(store().panels().first().frame, away.frame);
    }
};

QTEST_MAIN(WaylandScreensEndToEndTest)
#include "tst_waylandscreens_e2e.moc"
