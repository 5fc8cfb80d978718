// SPDX-License-Identifier: GPL-3.0-or-later

// Panel windows in a GNOME Shell session on Wayland: the shell headless, with its Xwayland
// and the desktop icons and tray icon extensions that Ubuntu has on, which
// scripts/in-gnome-desktop.sh starts and runs this test in as the session's user. Mutter
// offers no layer surfaces, so the corkwheel binary must choose XWayland itself; its panels
// are X11 windows there. Everything is checked as a user sees it, through the shell
// (support/GnomeShell.h): its screenshots, its windows' stacking and what its pointer is over;
// the pointer and keyboard are virtual devices of the shell's, which reach X11 and Wayland
// windows and the top bar alike. GNOME has no "show desktop": the Overview and the
// application grid are its nearest moments.
//
// Run with --wayland-window, the test's executable shows a native Wayland window instead,
// maximised and filled with the ordinary windows' colour, for as long as it runs.

#include "support/EditorOnDisplay.h"
#include "support/GnomeShell.h"
#include "support/OrdinaryWindow.h"
#include "support/PanelFixtures.h"
#include "support/ScreenPanels.h"
#include "support/XDisplayTools.h"

#include "desktop/DesktopPanelHostView.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QMouseEvent>
#include <QTest>
#include <QWidget>

#include <algorithm>
#include <memory>
#include <utility>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

// The virtual monitor (scripts/lib/gnome-desktop.sh).
constexpr QSize kScreenSize(1280, 800);

// Nowhere near a panel, an ordinary window or a desktop icon: the bare desktop.
constexpr QPoint kEmptyDesktop(900, 650);

// Halfway down a panel's title bar, in edit mode.
constexpr int kBarMiddle = DesktopPanelHostView::kTitleBarHeight / 2;

const QString kWaylandWindowOption = QStringLiteral("--wayland-window");
const QString kWaylandWindowTitle = QStringLiteral("E2E Wayland");
const QString kIconsExtension = QStringLiteral("ding@rastersoft.com");

constexpr int kAltKey = 0xffe9;
constexpr int kTabKey = 0xff09;
constexpr int kEscapeKey = 0xff1b;

bool panelIsSeenIn(const QImage& screen, QPoint at) {
    return isColor(screen.pixelColor(at), kPanelColor);
}

bool panelIsSeenAt(QPoint at) {
    return isColor(GnomeShell::pixel(at), kPanelColor);
}

bool windowIsSeenAt(QPoint at) {
    return isColor(GnomeShell::pixel(at), kWindowColor);
}

// A native Wayland window, maximised: this executable run with --wayland-window.
class WaylandWindow {
public:
    WaylandWindow() {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("wayland"));
        m_process.setProcessEnvironment(env);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QCoreApplication::applicationFilePath(), {kWaylandWindowOption});
    }

    ~WaylandWindow() {
        m_process.terminate();
        if (!m_process.waitForFinished(kWait))
            m_process.kill();
        m_process.waitForFinished(kWait);
    }

    // Once the shell shows it, as a native Wayland window.
    bool isShown() const {
        const auto window = GnomeShell::window(kWaylandWindowTitle);
        return window && window->isWayland;
    }

private:
    QProcess m_process;
};

int runWaylandWindow(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "wayland");
    QApplication app(argc, argv);
    QWidget window;
    window.setWindowTitle(kWaylandWindowTitle);
    window.setAutoFillBackground(true);
    QPalette filled = window.palette();
    filled.setColor(QPalette::Window, kWindowColor);
    window.setPalette(filled);
    window.showMaximized();
    return app.exec();
}

// Switches the shell to workspace `index` (from 0), as its keyboard shortcuts do, and waits
// until it shows it.
bool showWorkspace(int index) {
    GnomeShell::eval(QStringLiteral("Main.wm.actionMoveWorkspace("
                                    "global.workspace_manager.get_workspace_by_index(%1))")
                         .arg(index));
    return QTest::qWaitFor(
        [index] {
            return GnomeShell::isTrue(
                QStringLiteral("global.workspace_manager.get_active_workspace_index() === %1")
                    .arg(index));
        },
        kWait);
}

bool setExtensionEnabled(const QString& uuid, bool enabled) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.gnome.Shell"), QStringLiteral("/org/gnome/Shell"),
        QStringLiteral("org.gnome.Shell.Extensions"),
        enabled ? QStringLiteral("EnableExtension") : QStringLiteral("DisableExtension"));
    call.setArguments({uuid});
    const QDBusMessage reply = QDBusConnection::sessionBus().call(call, QDBus::Block, kWait);
    return reply.type() == QDBusMessage::ReplyMessage;
}

bool iconsWindowIsShown() {
    for (const ShellWindow& window : GnomeShell::windows()) {
        if (window.isIconsWindow && window.frame == QRect(QPoint(), kScreenSize))
            return true;
    }
    return false;
}

// Corkwheel's icon in the top bar, as the tray icon extension shows it.
struct TrayIcon {
    // Whether the extension has the icon at all.
    bool exists = false;
    QRect box;
    bool isShown = false;
    bool menuIsOpen = false;
    struct Item {
        QString label;
        QRect box;
        bool isEnabled = false;
        bool isChecked = false;
    };
    QList<Item> items;

    std::optional<Item> item(const QString& label) const {
        for (const Item& item : items) {
            if (item.label == label)
                return item;
        }
        return std::nullopt;
    }
};

QRect boxOf(const QJsonObject& object) {
    return QRectF(object.value(QStringLiteral("x")).toDouble(),
                  object.value(QStringLiteral("y")).toDouble(),
                  object.value(QStringLiteral("width")).toDouble(),
                  object.value(QStringLiteral("height")).toDouble())
        .toRect();
}

TrayIcon trayIcon() {
    const QJsonValue found =
        GnomeShell::eval(QStringLiteral("global.corkwheelTest.trayIcon('Corkwheel')"))
            .value_or(QJsonValue());
    if (!found.isObject())
        return {};
    const QJsonObject object = found.toObject();
    TrayIcon icon{true,
                  boxOf(object),
                  object.value(QStringLiteral("shown")).toBool(),
                  object.value(QStringLiteral("open")).toBool(),
                  {}};
    for (const QJsonValue& value : object.value(QStringLiteral("items")).toArray()) {
        const QJsonObject item = value.toObject();
        icon.items.append({item.value(QStringLiteral("label")).toString(), boxOf(item),
                           item.value(QStringLiteral("enabled")).toBool(),
                           item.value(QStringLiteral("checked")).toBool()});
    }
    return icon;
}

} // namespace

class GnomeEndToEndTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<CorkwheelProcess> m_corkwheel;
    std::unique_ptr<OrdinaryWindow> m_ordinary;

    Panel m_alpha = filledPanel(QStringLiteral("E2E Alpha"), {100, 100, 300, 80});
    Panel m_beta = filledPanel(QStringLiteral("E2E Beta"), {100, 400, 300, 80});
    Panel m_off = filledPanel(QStringLiteral("E2E Off"), {100, 600, 240, 60}, false);

    // Starts the binary, letting it choose its platform, and returns the X window of `shown`
    // once it is mapped: 0 when it never is, as when the binary chose Wayland.
    WId startCorkwheel(const QList<Panel>& panels, const Panel& shown) {
        m_corkwheel = std::make_unique<CorkwheelProcess>(panels, QString());
        if (!m_corkwheel->process().waitForStarted())
            return 0;
        return shownWindowNamed(shown.name);
    }

    // Opens an ordinary X11 window around `panel`, kept until the test ends, and checks that
    // it hides the panel.
    void openWindowOver(const QRect& panel) {
        m_ordinary =
            std::make_unique<OrdinaryWindow>(kOrdinaryTitle, panel.adjusted(-40, -40, 40, 40));
        QVERIFY(QTest::qWaitForWindowExposed(m_ordinary.get()));
        QTRY_VERIFY_WITH_TIMEOUT(windowIsSeenAt(sampleOf(panel)), kWait);
    }

    // Opens the tray icon's menu with a click on the icon, as a user does, and returns it
    // once its items are laid out; one that does not exist when the menu did not open.
    TrayIcon openTrayMenu() {
        TrayIcon icon = trayIcon();
        // The icon takes clicks once its menu has come over the bus and the top bar has made
        // room for it: the same twice in a row.
        const auto iconLaidOut = [&] {
            const TrayIcon before = std::exchange(icon, trayIcon());
            return icon.isShown && !icon.items.isEmpty() && !icon.box.isEmpty() &&
                   icon.box == before.box;
        };
        if (!QTest::qWaitFor(iconLaidOut, kWait))
            return {};
        if (!icon.menuIsOpen)
            GnomeShell::click(icon.box.center());
        // Open, with every item given its place: the same twice in a row.
        const auto menuLaidOut = [&] {
            const TrayIcon before = std::exchange(icon, trayIcon());
            const QList<QRect> boxes = boxesOf(icon);
            return icon.menuIsOpen && before.menuIsOpen && boxes == boxesOf(before) &&
                   std::none_of(boxes.cbegin(), boxes.cend(),
                                [](const QRect& box) { return box.isEmpty(); });
        };
        if (!QTest::qWaitFor(menuLaidOut, kWait))
            return {};
        return icon;
    }

    static QList<QRect> boxesOf(const TrayIcon& icon) {
        QList<QRect> boxes;
        for (const TrayIcon::Item& item : icon.items)
            boxes.append(item.box);
        return boxes;
    }

    // Clicks the item of the tray icon's menu and waits for the menu to close.
    void chooseInTray(const QString& label) {
        const TrayIcon icon = openTrayMenu();
        QVERIFY2(icon.item(label), qPrintable(label));
        GnomeShell::click(icon.item(label)->box.center());
        QTRY_VERIFY_WITH_TIMEOUT(!trayIcon().menuIsOpen, kWait);
    }

    // Whether the menu, opened, shows the item checked; it is closed again with Escape.
    bool trayItemIsChecked(const QString& label) {
        if (!openTrayMenu().menuIsOpen)
            return false;
        // The extension asks for the items' state as the menu opens.
        const bool checked = QTest::qWaitFor(
            [&] {
                const auto item = trayIcon().item(label);
                return item && item->isChecked;
            },
            kWait);
        GnomeShell::pressKeys({kEscapeKey});
        if (!QTest::qWaitFor([] { return !trayIcon().menuIsOpen; }, kWait))
            return false;
        return checked;
    }

private Q_SLOTS:
    void initTestCase() {
        QVERIFY2(QDBusConnection::sessionBus().interface()->isServiceRegistered(
                     QStringLiteral("org.gnome.Shell")),
                 "no GNOME Shell on the session bus: scripts/in-gnome-desktop.sh starts one");
        QVERIFY2(GnomeShell::prepare(), "the shell does not evaluate JavaScript (unsafe mode)");
        QCOMPARE(QGuiApplication::platformName(), QStringLiteral("xcb"));
        QCOMPARE(GnomeShell::screenshot().size(), kScreenSize);
        // The Overview, which the shell starts in, is closed.
        QVERIFY(GnomeShell::isTrue(QStringLiteral("!Main.overview.visible")));
        QTRY_VERIFY_WITH_TIMEOUT(iconsWindowIsShown(), kWait);
        QTRY_VERIFY_WITH_TIMEOUT(
            GnomeShell::windowAt(kEmptyDesktop).value_or(ShellWindow()).isIconsWindow, kWait);
    }

    void cleanup() {
        GnomeShell::eval(QStringLiteral("Main.overview.hide()"));
        QTRY_VERIFY_WITH_TIMEOUT(GnomeShell::isTrue(QStringLiteral("!Main.overview.visible")),
                                 kWait);
        QVERIFY(showWorkspace(0));
        if (!iconsWindowIsShown()) {
            QVERIFY(setExtensionEnabled(kIconsExtension, true));
            QTRY_VERIFY_WITH_TIMEOUT(iconsWindowIsShown(), kWait * 2);
        }
        m_ordinary.reset();
        m_corkwheel.reset();
        // The icon of the binary that ended leaves the top bar, where the next one's comes.
        QTRY_VERIFY_WITH_TIMEOUT(!trayIcon().exists, kWait);
    }

    // The binary chooses XWayland itself; its panels are X11 windows at their frames, kept
    // below (mutter's bottom layer), on every workspace, and a disabled one is not shown.
    // The desktop icons extension's window lies over them, see-through where it has no icon.
    void eachEnabledPanelIsShownAtItsFrameThroughXWayland() {
        const WId alpha = startCorkwheel({m_alpha, m_beta, m_off}, m_alpha);
        const WId beta = shownWindowNamed(m_beta.name);
        QVERIFY2(alpha && beta, "no X11 window of the panels: did corkwheel choose XWayland?");
        QCOMPARE(screenGeometry(alpha), rectOf(m_alpha.frame));
        QCOMPARE(screenGeometry(beta), rectOf(m_beta.frame));
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(rectOf(m_alpha.frame))), kWait);
        const QImage screen = GnomeShell::screenshot();
        for (const Panel& panel : {m_alpha, m_beta}) {
            const QRect frame = rectOf(panel.frame);
            QVERIFY(panelIsSeenIn(screen, sampleOf(frame)));
            // Its edges are where the frame says.
            const QPoint middle = frame.center();
            QVERIFY(panelIsSeenIn(screen, {frame.left() + 4, middle.y()}));
            QVERIFY(!panelIsSeenIn(screen, {frame.left() - 4, middle.y()}));
            QVERIFY(panelIsSeenIn(screen, {frame.right() - 4, middle.y()}));
            QVERIFY(!panelIsSeenIn(screen, {frame.right() + 4, middle.y()}));
            QVERIFY(!panelIsSeenIn(screen, {middle.x(), frame.top() - 4}));
            QVERIFY(!panelIsSeenIn(screen, {middle.x(), frame.bottom() + 4}));
            const auto window = GnomeShell::window(panel.name);
            QVERIFY(window);
            QCOMPARE(window->frame, frame);
            QVERIFY(!window->isWayland);
            QCOMPARE(window->layer, 1);
        }
        QVERIFY(!panelIsSeenIn(screen, sampleOf(rectOf(m_off.frame))));
        for (WId window : windowsNamed(m_off.name))
            QVERIFY(!isViewable(window));
        // Mutter stacks the icons' window over the panels; a press on a panel is the icons'.
        const auto above = GnomeShell::windowAt(sampleOf(rectOf(m_alpha.frame)));
        QVERIFY(above);
        QVERIFY(above->isIconsWindow);
    }

    void ordinaryWindowsOpenedOverAPanelCoverIt() {
        QVERIFY(startCorkwheel({m_alpha}, m_alpha));
        const QPoint sample = sampleOf(rectOf(m_alpha.frame));
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sample), kWait);
        openWindowOver(rectOf(m_alpha.frame));
        if (QTest::currentTestFailed())
            return;
        m_ordinary->hide();
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sample), kWait);
        const WaylandWindow wayland;
        QTRY_VERIFY_WITH_TIMEOUT(wayland.isShown(), kWait);
        QTRY_VERIFY_WITH_TIMEOUT(windowIsSeenAt(sample), kWait);
    }

    void panelStaysShownOnAnotherWorkspace() {
        QVERIFY(startCorkwheel({m_alpha}, m_alpha));
        // An ordinary window stays on the first workspace, and is seen to go with it.
        const QRect leftBehind(700, 300, 300, 200);
        OrdinaryWindow left(QStringLiteral("E2E Left Behind"), leftBehind);
        QTRY_VERIFY_WITH_TIMEOUT(windowIsSeenAt(leftBehind.center()), kWait);
        QVERIFY(showWorkspace(1));
        QTRY_VERIFY_WITH_TIMEOUT(!windowIsSeenAt(leftBehind.center()), kWait);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(rectOf(m_alpha.frame))), kWait);
        QCOMPARE(GnomeShell::window(m_alpha.name).value_or(ShellWindow()).frame,
                 rectOf(m_alpha.frame));
    }

    // The Overview and the application grid take over the whole screen; once they are left,
    // the panel is back at its frame, still below the window over it.
    void panelIsBackUnmovedAfterTheOverviewAndTheApplicationGrid() {
        const WId window = startCorkwheel({m_alpha}, m_alpha);
        QVERIFY(window);
        const QRect panel = rectOf(m_alpha.frame);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(panel)), kWait);
        const QRect uncoveredHalf(panel.topLeft(), QSize(panel.width() / 2, panel.height()));
        m_ordinary = std::make_unique<OrdinaryWindow>(
            kOrdinaryTitle,
            QRect(panel.center().x(), panel.top() - 40, panel.width(), panel.height() + 80));
        const QPoint covered = sampleOf(panel);
        const QPoint uncovered(uncoveredHalf.center().x(), covered.y());
        QTRY_VERIFY_WITH_TIMEOUT(windowIsSeenAt(covered), kWait);

        // The Overview, then the application grid, each told by the state of the grid's button
        // in the dash.
        const QList<std::pair<QString, QString>> moments = {
            {QStringLiteral("Main.overview.show()"),
             QStringLiteral("!Main.overview.dash.showAppsButton.checked")},
            {QStringLiteral("Main.overview.showApps()"),
             QStringLiteral("Main.overview.dash.showAppsButton.checked")}};
        for (const auto& [show, shown] : moments) {
            GnomeShell::eval(show);
            QTRY_VERIFY2_WITH_TIMEOUT(
                GnomeShell::isTrue(QStringLiteral("Main.overview.visible && "
                                                  "!Main.overview.animationInProgress && ") +
                                   shown),
                qPrintable(show), kWait);
            // The Overview's own pictures replace the desktop at the panel's place.
            QTRY_VERIFY_WITH_TIMEOUT(!panelIsSeenAt(uncovered), kWait);
            GnomeShell::eval(QStringLiteral("Main.overview.hide()"));
            QTRY_VERIFY_WITH_TIMEOUT(GnomeShell::isTrue(QStringLiteral("!Main.overview.visible")),
                                     kWait);
            QTRY_VERIFY2_WITH_TIMEOUT(panelIsSeenAt(uncovered), qPrintable(show), kWait);
            QVERIFY(windowIsSeenAt(covered));
            QCOMPARE(screenGeometry(window), panel);
            QCOMPARE(GnomeShell::window(m_alpha.name).value_or(ShellWindow()).frame, panel);
        }
        QCOMPARE(rectOf(m_corkwheel->savedPanels().value(0).frame), panel);
    }

    // A pinned panel takes no input: the pointer over it is over what lies beneath. With the
    // icons' window over it that is the icons' window anyway; so it is also checked without
    // the desktop icons extension (GNOME as it comes), over a window of the desktop type,
    // which mutter keeps under the panel, and which then receives the press.
    void pointerOverAPinnedPanelIsOverTheDesktopBeneath() {
        QVERIFY(startCorkwheel({m_alpha}, m_alpha));
        const QPoint sample = sampleOf(rectOf(m_alpha.frame));
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sample), kWait);
        const auto icons = GnomeShell::windowAt(kEmptyDesktop);
        QVERIFY(icons && icons->isIconsWindow);
        QCOMPARE(GnomeShell::windowAt(sample).value_or(ShellWindow()).title, icons->title);
        // A click on the bare desktop leaves the panel shown.
        GnomeShell::click(kEmptyDesktop);
        QTRY_VERIFY_WITH_TIMEOUT(GnomeShell::window(icons->title).value_or(ShellWindow()).isFocused,
                                 kWait);
        QVERIFY(panelIsSeenAt(sample));

        QVERIFY(setExtensionEnabled(kIconsExtension, false));
        QTRY_VERIFY_WITH_TIMEOUT(!iconsWindowIsShown(), kWait);
        DesktopStandIn desktop;
        desktop.setWindowTitle(QStringLiteral("E2E Desktop"));
        QTRY_VERIFY_WITH_TIMEOUT(GnomeShell::window(desktop.windowTitle()).has_value(), kWait);
        QCOMPARE(GnomeShell::window(desktop.windowTitle())->layer, 0);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sample), kWait);
        QTRY_COMPARE_WITH_TIMEOUT(GnomeShell::windowAt(sample).value_or(ShellWindow()).title,
                                  desktop.windowTitle(), kWait);
        GnomeShell::click(sample);
        QTRY_COMPARE_WITH_TIMEOUT(desktop.presses.size(), 1, kWait);
        QCOMPARE(desktop.presses.first(), sample);
        QVERIFY(panelIsSeenAt(sample));
    }

    // Alt+Tab goes back and forth between an X11 and a Wayland window, every press seen to
    // switch, and never to the panel, which the switcher leaves out.
    void panelIsLeftOutOfTheSwitcher() {
        QVERIFY(startCorkwheel({m_alpha}, m_alpha));
        const auto panel = GnomeShell::window(m_alpha.name);
        QVERIFY(panel);
        QVERIFY(panel->isSkippedByTaskbar);
        OrdinaryWindow x11(QStringLiteral("E2E X11"), {700, 100, 300, 200});
        const WaylandWindow wayland;
        QTRY_VERIFY_WITH_TIMEOUT(wayland.isShown(), kWait);
        const auto titles = [] {
            QStringList titles;
            for (const ShellWindow& window : GnomeShell::switcherWindows())
                titles.append(window.title);
            return titles;
        };
        QTRY_VERIFY2_WITH_TIMEOUT(titles().contains(x11.windowTitle()) &&
                                      titles().contains(kWaylandWindowTitle),
                                  qPrintable(titles().join(u',')), kWait);
        QVERIFY2(!titles().contains(m_alpha.name), qPrintable(titles().join(u',')));

        const auto focused = [] {
            for (const ShellWindow& window : GnomeShell::windows()) {
                if (window.isFocused)
                    return window.title;
            }
            return QString();
        };
        QTRY_COMPARE_WITH_TIMEOUT(focused(), kWaylandWindowTitle, kWait);
        for (const QString& next : {x11.windowTitle(), kWaylandWindowTitle, x11.windowTitle()}) {
            GnomeShell::pressKeys({kAltKey, kTabKey});
            QTRY_COMPARE_WITH_TIMEOUT(focused(), next, kWait);
        }
    }

    // The icon shows in the top bar and its menu lists Corkwheel's items; "Settings…" opens
    // the editor.
    void trayIconShowsTheMenuAndSettingsOpensTheEditor() {
        QVERIFY(!trayIcon().exists);
        QVERIFY(startCorkwheel({m_alpha}, m_alpha));
        TrayIcon icon;
        QTRY_VERIFY_WITH_TIMEOUT((icon = trayIcon()).isShown, kWait);
        // The icon is drawn: light on the dark top bar.
        const QImage screen = GnomeShell::screenshot();
        int light = 0;
        for (int x = icon.box.left(); x <= icon.box.right(); ++x) {
            for (int y = icon.box.top(); y <= icon.box.bottom(); ++y)
                light += qGray(screen.pixel(x, y)) > 160;
        }
        QVERIFY2(light > 20, qPrintable(QString::number(light)));

        icon = openTrayMenu();
        QVERIFY(icon.menuIsOpen);
        QStringList labels;
        for (const TrayIcon::Item& item : icon.items)
            labels.append(item.label.isEmpty() ? QStringLiteral("-") : item.label);
        QCOMPARE(labels,
                 QStringList({QStringLiteral("Settings…"), QStringLiteral("-"),
                              QStringLiteral("Hide All Panels"), QStringLiteral("Edit Mode"),
                              QStringLiteral("-"), QStringLiteral("1 panel"), QStringLiteral("-"),
                              QStringLiteral("Quit Corkwheel")}));
        QVERIFY(!icon.item(QStringLiteral("1 panel"))->isEnabled);
        QVERIFY(!GnomeShell::window(QStringLiteral("Corkwheel")));
        chooseInTray(QStringLiteral("Settings…"));
        QVERIFY(shownEditor());
    }

    // Edit mode, chosen in the tray, lifts the panel above the window over it; a drag of its
    // title bar moves it and is saved; chosen again, the panel is back below the window, at
    // its new place.
    void editModeFromTheTrayLiftsDragsAndPinsAgain() {
        const WId window = startCorkwheel({m_alpha}, m_alpha);
        QVERIFY(window);
        const QRect start = rectOf(m_alpha.frame);
        const QRect moved = start.translated(40, 300);
        m_ordinary = std::make_unique<OrdinaryWindow>(
            kOrdinaryTitle, start.united(moved).adjusted(-40, -40, 40, 40));
        QTRY_VERIFY_WITH_TIMEOUT(windowIsSeenAt(sampleOf(start)), kWait);

        chooseInTray(QStringLiteral("Edit Mode"));
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(start)), kWait);
        QVERIFY(trayItemIsChecked(QStringLiteral("Edit Mode")));
        const QPoint titleBar = start.topLeft() + QPoint(60, kBarMiddle);
        QTRY_COMPARE_WITH_TIMEOUT(GnomeShell::windowAt(titleBar).value_or(ShellWindow()).title,
                                  m_alpha.name, kWait);
        QVERIFY(GnomeShell::drag(titleBar, titleBar + (moved.topLeft() - start.topLeft())));
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(window), moved, kWait);
        QTRY_COMPARE_WITH_TIMEOUT(rectOf(m_corkwheel->savedPanels().value(0).frame), moved, kWait);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(moved)), kWait);
        QVERIFY(m_ordinary->presses.isEmpty());

        chooseInTray(QStringLiteral("Edit Mode"));
        QTRY_VERIFY_WITH_TIMEOUT(windowIsSeenAt(sampleOf(moved)), kWait);
        QCOMPARE(screenGeometry(window), moved);
        QCOMPARE(GnomeShell::window(m_alpha.name).value_or(ShellWindow()).layer, 1);
        // The window, over it again, gets the press at its place.
        GnomeShell::click(sampleOf(moved));
        QTRY_COMPARE_WITH_TIMEOUT(m_ordinary->presses.size(), 1, kWait);
        QCOMPARE(rectOf(m_corkwheel->savedPanels().value(0).frame), moved);
    }

    // Hidden from the tray, the panel goes; shown again, it is drawn where no window covers
    // it and stays below the window that covers its other half.
    void hideAllPanelsFromTheTrayHidesThemAndShowsThemBelow() {
        const WId window = startCorkwheel({m_alpha}, m_alpha);
        QVERIFY(window);
        const QRect panel = rectOf(m_alpha.frame);
        m_ordinary = std::make_unique<OrdinaryWindow>(
            kOrdinaryTitle,
            QRect(panel.center().x(), panel.top() - 40, panel.width(), panel.height() + 80));
        const QPoint covered = sampleOf(panel);
        const QPoint uncovered(panel.left() + panel.width() / 4, covered.y());
        QTRY_VERIFY_WITH_TIMEOUT(windowIsSeenAt(covered), kWait);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(uncovered), kWait);

        chooseInTray(QStringLiteral("Hide All Panels"));
        QTRY_VERIFY_WITH_TIMEOUT(!isViewable(window), kWait);
        QTRY_VERIFY_WITH_TIMEOUT(!panelIsSeenAt(uncovered), kWait);
        QVERIFY(trayItemIsChecked(QStringLiteral("Hide All Panels")));
        chooseInTray(QStringLiteral("Hide All Panels"));
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(uncovered), kWait);
        QVERIFY(windowIsSeenAt(covered));
        QCOMPARE(screenGeometry(window), panel);
    }

    void quitFromTheTrayEndsCorkwheel() {
        QVERIFY(startCorkwheel({m_alpha}, m_alpha));
        chooseInTray(QStringLiteral("Quit Corkwheel"));
        QTRY_COMPARE_WITH_TIMEOUT(m_corkwheel->process().state(), QProcess::NotRunning, kWait);
        QCOMPARE(m_corkwheel->process().exitStatus(), QProcess::NormalExit);
        QCOMPARE(m_corkwheel->process().exitCode(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(!trayIcon().exists, kWait);
        QTRY_VERIFY_WITH_TIMEOUT(!panelIsSeenAt(sampleOf(rectOf(m_alpha.frame))), kWait);
    }
};

int main(int argc, char* argv[]) {
    if (argc > 1 && QString::fromLocal8Bit(argv[1]) == kWaylandWindowOption)
        return runWaylandWindow(argc, argv);
    QApplication app(argc, argv);
    GnomeEndToEndTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_gnome_e2e.moc"
