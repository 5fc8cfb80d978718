// SPDX-License-Identifier: GPL-3.0-or-later

// Panel windows in a Plasma session on Wayland: KWin and Plasma's shell, headless, which
// scripts/in-kwin-desktop.sh starts and runs this test in as the session's user. KWin offers
// layer surfaces, so the corkwheel binary must choose Wayland itself, its panels layer
// surfaces of KWin's. Without a GPU KWin takes no screenshots, so everything is checked
// through what KWin itself knows (support/KWinScripting.h): the stacking order, each
// window's layer, frame and virtual desktops, which window is active, and what the pointer
// is over, the pointer a virtual device of KWin's (its fake input). Plasma's shell draws the
// desktop (with Qt Quick's software renderer) and keeps the tray, with whose
// StatusNotifierWatcher Corkwheel's icon registers; the test uses the icon's menu over the
// session bus, as the tray does.

#include "support/CorkwheelProcess.h"
#include "support/KWinScripting.h"
#include "support/OrdinaryWindow.h"
#include "support/PanelFixtures.h"
#include "support/ScreenPanels.h"
#include "support/WaylandPointer.h"

#include "desktop/DesktopPanelHostView.h"

#include <QApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QMouseEvent>
#include <QTest>
#include <QWidget>

#include <algorithm>
#include <memory>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

// The output (scripts/lib/kwin-desktop.sh).
constexpr QSize kScreenSize(1280, 800);

// Halfway down a panel's title bar, in edit mode.
constexpr int kBarMiddle = DesktopPanelHostView::kTitleBarHeight / 2;

// KWin's stacking layers.
constexpr int kDesktopLayer = 0;
constexpr int kBelowLayer = 1;
constexpr int kNormalLayer = 2;
constexpr int kAboveLayer = 3;

// One item of a tray icon's menu, as the tray reads it over the bus (com.canonical.dbusmenu).
struct TrayMenuItem {
    int id = 0;
    QString label;
    bool isSeparator = false;
    bool isEnabled = true;
    bool isChecked = false;
};

QDBusMessage callOnBus(const QString& service, const QString& path, const QString& interface,
                       const QString& method, const QVariantList& arguments) {
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, method);
    call.setArguments(arguments);
    return QDBusConnection::sessionBus().call(call, QDBus::Block, kWait);
}

QVariant propertyOnBus(const QString& service, const QString& path, const QString& interface,
                       const QString& property) {
    const QDBusMessage reply =
        callOnBus(service, path, QStringLiteral("org.freedesktop.DBus.Properties"),
                  QStringLiteral("Get"), {interface, property});
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return {};
    return reply.arguments().first().value<QDBusVariant>().variant();
}

// A tray icon as the watcher has it registered: a bus name and the item's object path.
struct TrayItem {
    QString service;
    QString path;

    // From the watcher's "SERVICE/PATH" (a bare service has its item at the usual path).
    static TrayItem from(const QString& registered) {
        const qsizetype slash = registered.indexOf(u'/');
        if (slash < 0)
            return {registered, QStringLiteral("/StatusNotifierItem")};
        return {registered.left(slash), registered.mid(slash)};
    }

    bool isValid() const { return !service.isEmpty(); }
};

// The menu of a tray icon.
class TrayMenu {
public:
    explicit TrayMenu(const TrayItem& item) : m_item(item.service), m_itemPath(item.path) {}

    // The object path of the menu the item names; empty when it names none.
    QString path() const {
        return propertyOnBus(m_item, m_itemPath, QStringLiteral("org.kde.StatusNotifierItem"),
                             QStringLiteral("Menu"))
            .value<QDBusObjectPath>()
            .path();
    }

    // The menu's items, in order, as the tray shows them when it opens the menu.
    QList<TrayMenuItem> items() const {
        const QString menu = path();
        if (menu.isEmpty())
            return {};
        callOnBus(m_item, menu, kInterface, QStringLiteral("AboutToShow"), {0});
        const QDBusMessage reply = callOnBus(m_item, menu, kInterface, QStringLiteral("GetLayout"),
                                             {0, -1, QStringList()});
        if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().size() != 2)
            return {};
        QList<TrayMenuItem> items;
        const QDBusArgument root = reply.arguments().at(1).value<QDBusArgument>();
        root.beginStructure();
        int id = 0;
        QVariantMap properties;
        root >> id >> properties;
        root.beginArray();
        while (!root.atEnd()) {
            QDBusVariant child;
            root >> child;
            const QDBusArgument entry = child.variant().value<QDBusArgument>();
            entry.beginStructure();
            TrayMenuItem item;
            QVariantMap shown;
            entry >> item.id >> shown;
            item.label = shown.value(QStringLiteral("label")).toString().remove(u'_');
            item.isSeparator =
                shown.value(QStringLiteral("type")).toString() == QStringLiteral("separator");
            item.isEnabled = shown.value(QStringLiteral("enabled"), true).toBool();
            item.isChecked = shown.value(QStringLiteral("toggle-state"), 0).toInt() == 1;
            items.append(item);
            entry.endStructure();
        }
        root.endArray();
        root.endStructure();
        return items;
    }

    std::optional<TrayMenuItem> item(const QString& label) const {
        for (const TrayMenuItem& item : items()) {
            if (item.label == label)
                return item;
        }
        return std::nullopt;
    }

    // The item labelled so chosen, as a click on it in the tray's menu does; false when the
    // menu has no such item.
    bool choose(const QString& label) const {
        const auto chosen = item(label);
        if (!chosen)
            return false;
        const QDBusMessage reply = callOnBus(
            m_item, path(), kInterface, QStringLiteral("Event"),
            {chosen->id, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(0)), 0u});
        return reply.type() == QDBusMessage::ReplyMessage;
    }

private:
    static inline const QString kInterface = QStringLiteral("com.canonical.dbusmenu");

    QString m_item;
    QString m_itemPath;
};

// The tray icons registered with Plasma's StatusNotifierWatcher.
QList<TrayItem> registeredTrayItems() {
    QList<TrayItem> items;
    const QStringList registered = propertyOnBus(QStringLiteral("org.kde.StatusNotifierWatcher"),
                                                 QStringLiteral("/StatusNotifierWatcher"),
                                                 QStringLiteral("org.kde.StatusNotifierWatcher"),
                                                 QStringLiteral("RegisteredStatusNotifierItems"))
                                       .toStringList();
    for (const QString& item : registered)
        items.append(TrayItem::from(item));
    return items;
}

// The window KWin has active (the one with the keyboard), as a click makes it.
std::optional<KWinWindow> activeWindow() {
    const QJsonValue found =
        KWinScripting::evaluate(QStringLiteral("describe(workspace.activeWindow)"))
            .value_or(QJsonValue());
    if (!found.isObject())
        return std::nullopt;
    return KWinWindow::from(found.toObject());
}

} // namespace

class PlasmaEndToEndTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<CorkwheelProcess> m_corkwheel;
    std::unique_ptr<OrdinaryWindow> m_ordinary;
    WaylandPointer m_pointer;

    Panel m_alpha = filledPanel(QStringLiteral("E2E Alpha"), {100, 100, 300, 80});
    Panel m_beta = filledPanel(QStringLiteral("E2E Beta"), {500, 300, 300, 80});
    Panel m_off = filledPanel(QStringLiteral("E2E Off"), {100, 600, 240, 60}, false);

    qint64 corkwheelPid() { return m_corkwheel ? m_corkwheel->process().processId() : 0; }

    // Corkwheel's layer surface, without a title, at `frame`; none when KWin has none there.
    std::optional<KWinWindow> panelAt(const QRect& frame) {
        for (const KWinWindow& window : KWinScripting::windowsOf(corkwheelPid())) {
            if (window.caption.isEmpty() && window.frame == frame)
                return window;
        }
        return std::nullopt;
    }

    int panelCount() {
        int count = 0;
        for (const KWinWindow& window : KWinScripting::windowsOf(corkwheelPid()))
            count += window.caption.isEmpty();
        return count;
    }

    // Whether the window seen at `at` is Corkwheel's panel at `frame`.
    bool panelIsSeenAt(QPoint at, const QRect& frame) {
        const auto seen = KWinScripting::windowAt(at);
        return seen && seen->pid == corkwheelPid() && seen->caption.isEmpty() &&
               seen->frame == frame;
    }

    bool ordinaryWindowIsSeenAt(QPoint at) {
        const auto seen = KWinScripting::windowAt(at);
        return seen && seen->caption == kOrdinaryTitle;
    }

    // What the pointer is over once moved to `at`: the window KWin gives its presses to.
    std::optional<KWinWindow> pointerWindowAt(QPoint at) {
        m_pointer.moveTo(at);
        return KWinScripting::windowUnderPointer();
    }

    bool pointerIsOverPanelAt(QPoint at, const QRect& frame) {
        const auto under = pointerWindowAt(at);
        return under && under->pid == corkwheelPid() && under->frame == frame;
    }

    bool pointerIsOver(QPoint at, const QString& caption) {
        const auto under = pointerWindowAt(at);
        return under && under->caption == caption;
    }

    static QString describe(const std::optional<KWinWindow>& window) {
        if (!window)
            return QStringLiteral("nothing");
        return QStringLiteral("'%1' of %2 (layer %3, %4,%5 %6x%7)")
            .arg(window->caption, window->resourceClass)
            .arg(window->layer)
            .arg(window->frame.x())
            .arg(window->frame.y())
            .arg(window->frame.width())
            .arg(window->frame.height());
    }

    QString panelFrames() {
        QStringList frames;
        for (const KWinWindow& window : KWinScripting::windowsOf(corkwheelPid()))
            frames.append(describe(window));
        return frames.join(QStringLiteral("; "));
    }

    bool pointerIsOverTheDesktop(QPoint at) {
        const auto under = pointerWindowAt(at);
        return under && under->isDesktop;
    }

    // Starts the binary, letting it choose its platform, and waits until KWin shows `shown`.
    bool startCorkwheel(const QList<Panel>& panels, const Panel& shown) {
        m_corkwheel = std::make_unique<CorkwheelProcess>(panels, QString());
        if (!m_corkwheel->process().waitForStarted())
            return false;
        return QTest::qWaitFor([&] { return panelAt(rectOf(shown.frame)).has_value(); }, kWait * 2);
    }

    // Opens an ordinary window over the whole output, kept until the test ends, and waits
    // until it is seen over `panel`.
    void openWindowOver(const QRect& panel) {
        m_ordinary = std::make_unique<OrdinaryWindow>();
        QTRY_VERIFY_WITH_TIMEOUT(ordinaryWindowIsSeenAt(sampleOf(panel)), kWait);
    }

    // Corkwheel's tray icon, once registered with the watcher; an invalid one when it never
    // is.
    TrayItem trayItem() {
        TrayItem found;
        [[maybe_unused]] const bool registered = QTest::qWaitFor(
            [&] {
                QDBusConnectionInterface* bus = QDBusConnection::sessionBus().interface();
                for (const TrayItem& item : registeredTrayItems()) {
                    if (bus->servicePid(item.service).value() == corkwheelPid()) {
                        found = item;
                        return true;
                    }
                }
                return false;
            },
            kWait);
        return found;
    }

    void chooseInTray(const QString& label) {
        const TrayItem item = trayItem();
        QVERIFY2(item.isValid(), "Corkwheel registered no tray icon");
        QVERIFY2(TrayMenu(item).choose(label), qPrintable(label));
    }

    bool trayItemIsChecked(const QString& label) {
        return TrayMenu(trayItem()).item(label).value_or(TrayMenuItem()).isChecked;
    }

private Q_SLOTS:
    void initTestCase() {
        QVERIFY2(QDBusConnection::sessionBus().interface()->isServiceRegistered(
                     QStringLiteral("org.kde.KWin")),
                 "no KWin on the session bus: scripts/in-kwin-desktop.sh starts one");
        QCOMPARE(QGuiApplication::platformName(), QStringLiteral("wayland"));
        QVERIFY2(KWinScripting::evaluate(QStringLiteral("true")).has_value(),
                 "KWin runs no scripts sent over the bus");
        QCOMPARE(KWinScripting::screens(), QList<QRect>({QRect(QPoint(), kScreenSize)}));
        QVERIFY2(m_pointer.plugIn(QStringLiteral(CORKWHEEL_POINTER_DEVICE), kScreenSize),
                 "KWin takes no virtual pointer");
        // Plasma's desktop, under everything else.
        QTRY_VERIFY_WITH_TIMEOUT(pointerIsOverTheDesktop(QPoint(640, 400)), kWait);
        QCOMPARE(pointerWindowAt(QPoint(640, 400))->resourceClass, QStringLiteral("plasmashell"));
    }

    void cleanup() {
        KWinScripting::showDesktop(false);
        QTRY_VERIFY_WITH_TIMEOUT(!KWinScripting::isShowingDesktop(), kWait);
        QVERIFY(KWinScripting::showDesktopNumber(0));
        const qint64 pid = corkwheelPid();
        m_ordinary.reset();
        m_corkwheel.reset();
        QTRY_COMPARE_WITH_TIMEOUT(KWinScripting::windowsOf(pid).size(), 0, kWait);
    }

    // The binary chooses Wayland itself; its panels are layer surfaces at their frames, in
    // the layer below ordinary windows and above the desktop, on every virtual desktop, of
    // the dock kind, which "show desktop" leaves shown; a disabled one is not shown.
    void eachEnabledPanelIsALayerSurfaceAtItsFrame() {
        QVERIFY2(startCorkwheel({m_alpha, m_beta, m_off}, m_alpha),
                 "no layer surface of the panel: did corkwheel choose Wayland?");
        QTRY_VERIFY_WITH_TIMEOUT(panelAt(rectOf(m_beta.frame)).has_value(), kWait);
        for (const Panel& panel : {m_alpha, m_beta}) {
            const QRect frame = rectOf(panel.frame);
            const auto window = panelAt(frame);
            QVERIFY(window);
            QCOMPARE(window->layer, kBelowLayer);
            QVERIFY(window->onAllDesktops);
            QVERIFY(window->isDock);
            QCOMPARE(window->output, QStringLiteral("Virtual-0"));
            QVERIFY(panelIsSeenAt(sampleOf(frame), frame));
        }
        QCOMPARE(panelCount(), 2);
        // Above the desktop, in the stacking order as in its layers.
        const QList<KWinWindow> stack = KWinScripting::windows();
        qsizetype desktopAt = -1;
        qsizetype panelsAt = -1;
        for (qsizetype index = 0; index < stack.size(); ++index) {
            if (stack.at(index).isDesktop) {
                desktopAt = index;
                QCOMPARE(stack.at(index).layer, kDesktopLayer);
            }
            if (stack.at(index).pid == corkwheelPid() && panelsAt < 0)
                panelsAt = index;
        }
        QVERIFY(desktopAt >= 0 && panelsAt > desktopAt);
        QVERIFY(!panelIsSeenAt(sampleOf(rectOf(m_off.frame)), rectOf(m_off.frame)));
        const auto bare = KWinScripting::windowAt(sampleOf(rectOf(m_off.frame)));
        QVERIFY(bare && bare->isDesktop);
    }

    // An ordinary window opened over a panel is above it, and seen there; the panel stays.
    void ordinaryWindowOpenedOverAPanelCoversIt() {
        QVERIFY(startCorkwheel({m_alpha}, m_alpha));
        const QRect frame = rectOf(m_alpha.frame);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(frame), frame), kWait);
        openWindowOver(frame);
        const auto ordinary = KWinScripting::windowAt(sampleOf(frame));
        QVERIFY(ordinary);
        QCOMPARE(ordinary->layer, kNormalLayer);
        QVERIFY(ordinary->frame.contains(frame));
        QCOMPARE(panelAt(frame).value_or(KWinWindow()).layer, kBelowLayer);
        // Minimised, the window shows the panel again.
        m_ordinary->showMinimized();
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(frame), frame), kWait);
    }

    // On the other virtual desktop the window over the panel is gone and the panel is there.
    void panelStaysShownOnEveryVirtualDesktop() {
        QVERIFY(startCorkwheel({m_alpha}, m_alpha));
        const QRect frame = rectOf(m_alpha.frame);
        openWindowOver(frame);
        QVERIFY(KWinScripting::showDesktopNumber(1));
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(frame), frame), kWait);
        QCOMPARE(panelAt(frame).value_or(KWinWindow()).layer, kBelowLayer);
        QVERIFY(KWinScripting::showDesktopNumber(0));
        QTRY_VERIFY_WITH_TIMEOUT(ordinaryWindowIsSeenAt(sampleOf(frame)), kWait);
    }

    // "Show desktop" puts the windows away and leaves the panels, as a user who keeps
    // monitors on the desktop expects. KWin's pointer finds only windows it shows: the
    // window's place goes to the desktop, and a panel, lifted in edit mode so that it takes
    // the pointer, is still found.
    void panelsStayShownWhileShowingTheDesktop() {
        QVERIFY(startCorkwheel({m_alpha}, m_alpha));
        const QRect frame = rectOf(m_alpha.frame);
        const QPoint titleBar = frame.topLeft() + QPoint(60, kBarMiddle);
        const QPoint away(900, 600);
        openWindowOver(frame);
        QTRY_VERIFY_WITH_TIMEOUT(pointerIsOver(away, kOrdinaryTitle), kWait);

        chooseInTray(QStringLiteral("Edit Mode"));
        QTRY_COMPARE_WITH_TIMEOUT(panelAt(frame).value_or(KWinWindow()).layer, kAboveLayer, kWait);
        QTRY_VERIFY_WITH_TIMEOUT(pointerIsOverPanelAt(titleBar, frame), kWait);

        KWinScripting::showDesktop(true);
        QTRY_VERIFY_WITH_TIMEOUT(KWinScripting::isShowingDesktop(), kWait);
        QTRY_VERIFY2_WITH_TIMEOUT(pointerIsOverTheDesktop(away),
                                  qPrintable(describe(pointerWindowAt(away))), kWait);
        QVERIFY(pointerIsOverPanelAt(titleBar, frame));
        QVERIFY(KWinScripting::isShowingDesktop());

        // Pinned again while the desktop is shown, it is in its layer below the windows, and
        // still a dock, the kind that KWin leaves shown (a pinned panel takes no pointer, so
        // the pointer cannot tell); the windows come back over it.
        chooseInTray(QStringLiteral("Edit Mode"));
        QTRY_COMPARE_WITH_TIMEOUT(panelAt(frame).value_or(KWinWindow()).layer, kBelowLayer, kWait);
        QVERIFY(panelAt(frame)->isDock);
        QVERIFY(KWinScripting::isShowingDesktop());
        KWinScripting::showDesktop(false);
        QTRY_VERIFY_WITH_TIMEOUT(pointerIsOver(away, kOrdinaryTitle), kWait);
        QVERIFY(ordinaryWindowIsSeenAt(sampleOf(frame)));
    }

    // A pinned panel takes no pointer: a click at its place reaches Plasma's desktop beneath,
    // which takes the keyboard from the window that had it, as a click on the desktop does.
    // In edit mode the same place is the panel's.
    void clickOnAPinnedPanelReachesTheDesktopBeneath() {
        QVERIFY(startCorkwheel({m_alpha}, m_alpha));
        const QRect frame = rectOf(m_alpha.frame);
        const QPoint sample = sampleOf(frame);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sample, frame), kWait);
        QVERIFY(pointerIsOverTheDesktop(sample));
        m_ordinary = std::make_unique<OrdinaryWindow>(QSize(200, 100));
        QTRY_COMPARE_WITH_TIMEOUT(activeWindow().value_or(KWinWindow()).caption, kOrdinaryTitle,
                                  kWait);
        QVERIFY(!activeWindow()->frame.contains(sample));
        m_pointer.click(sample);
        QTRY_VERIFY_WITH_TIMEOUT(activeWindow().value_or(KWinWindow()).isDesktop, kWait);
        QVERIFY(panelIsSeenAt(sample, frame));
        QVERIFY(m_ordinary->presses.isEmpty());

        chooseInTray(QStringLiteral("Edit Mode"));
        QTRY_VERIFY_WITH_TIMEOUT(pointerIsOverPanelAt(sample, frame), kWait);
        chooseInTray(QStringLiteral("Edit Mode"));
        QTRY_VERIFY_WITH_TIMEOUT(pointerIsOverTheDesktop(sample), kWait);
    }

    // Edit mode, chosen in the tray's menu, lifts the panel above the window over it; a drag
    // of its title bar moves it and is saved; chosen again, the panel is back below the
    // window, at its new place.
    void editModeFromTheTrayLiftsDragsAndPinsAgain() {
        QVERIFY(startCorkwheel({m_alpha}, m_alpha));
        const QRect start = rectOf(m_alpha.frame);
        openWindowOver(start);

        chooseInTray(QStringLiteral("Edit Mode"));
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(start), start), kWait);
        QCOMPARE(panelAt(start).value_or(KWinWindow()).layer, kAboveLayer);
        QTRY_VERIFY_WITH_TIMEOUT(trayItemIsChecked(QStringLiteral("Edit Mode")), kWait);
        const QPoint titleBar = start.topLeft() + QPoint(60, kBarMiddle);
        QTRY_VERIFY_WITH_TIMEOUT(pointerIsOverPanelAt(titleBar, start), kWait);
        const QRect moved = start.translated(40, 300);
        m_pointer.drag(titleBar, titleBar + (moved.topLeft() - start.topLeft()));
        QTRY_VERIFY2_WITH_TIMEOUT(panelAt(moved).has_value(), qPrintable(panelFrames()), kWait);
        QTRY_COMPARE_WITH_TIMEOUT(rectOf(m_corkwheel->savedPanels().value(0).frame), moved, kWait);
        QVERIFY(panelIsSeenAt(sampleOf(moved), moved));
        QVERIFY(m_ordinary->presses.isEmpty());

        chooseInTray(QStringLiteral("Edit Mode"));
        QTRY_COMPARE_WITH_TIMEOUT(panelAt(moved).value_or(KWinWindow()).layer, kBelowLayer, kWait);
        QTRY_VERIFY_WITH_TIMEOUT(ordinaryWindowIsSeenAt(sampleOf(moved)), kWait);
        QVERIFY(!trayItemIsChecked(QStringLiteral("Edit Mode")));
        // The window, over it again, gets the press at its place.
        m_pointer.click(sampleOf(moved));
        QTRY_COMPARE_WITH_TIMEOUT(m_ordinary->presses.size(), 1, kWait);
        QCOMPARE(rectOf(m_corkwheel->savedPanels().value(0).frame), moved);
    }

    // The tray icon registers with the session's watcher, and its menu holds Corkwheel's
    // items; "Settings…" opens the editor, an ordinary window above the panels.
    void trayIconMenuListsTheItemsAndSettingsOpensTheEditor() {
        QVERIFY(startCorkwheel({m_alpha}, m_alpha));
        const TrayItem item = trayItem();
        QVERIFY2(item.isValid(), "Corkwheel registered no tray icon");
        const TrayMenu menu(item);
        QStringList labels;
        for (const TrayMenuItem& entry : menu.items())
            labels.append(entry.isSeparator ? QStringLiteral("-") : entry.label);
        QCOMPARE(labels,
                 QStringList({QStringLiteral("Settings…"), QStringLiteral("-"),
                              QStringLiteral("Hide All Panels"), QStringLiteral("Edit Mode"),
                              QStringLiteral("-"), QStringLiteral("1 panel"), QStringLiteral("-"),
                              QStringLiteral("Quit Corkwheel")}));
        QVERIFY(!menu.item(QStringLiteral("1 panel"))->isEnabled);
        QVERIFY(menu.item(QStringLiteral("Settings…"))->isEnabled);

        const auto editor = [&] {
            for (const KWinWindow& window : KWinScripting::windowsOf(corkwheelPid())) {
                if (window.caption == QStringLiteral("Corkwheel"))
                    return std::optional<KWinWindow>(window);
            }
            return std::optional<KWinWindow>();
        };
        QVERIFY(!editor());
        QVERIFY(menu.choose(QStringLiteral("Settings…")));
        QTRY_VERIFY_WITH_TIMEOUT(editor().has_value(), kWait);
        QCOMPARE(editor()->layer, kNormalLayer);
    }

    // Hidden from the tray, the panels go; shown again, they are back below the windows.
    void hideAllPanelsFromTheTrayHidesThemAndShowsThemBelow() {
        QVERIFY(startCorkwheel({m_alpha, m_beta}, m_alpha));
        const QRect frame = rectOf(m_alpha.frame);
        QTRY_COMPARE_WITH_TIMEOUT(panelCount(), 2, kWait);
        chooseInTray(QStringLiteral("Hide All Panels"));
        QTRY_COMPARE_WITH_TIMEOUT(panelCount(), 0, kWait);
        QVERIFY(!panelIsSeenAt(sampleOf(frame), frame));
        QTRY_VERIFY_WITH_TIMEOUT(trayItemIsChecked(QStringLiteral("Hide All Panels")), kWait);
        chooseInTray(QStringLiteral("Hide All Panels"));
        QTRY_COMPARE_WITH_TIMEOUT(panelCount(), 2, kWait);
        QCOMPARE(panelAt(frame).value_or(KWinWindow()).layer, kBelowLayer);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(frame), frame), kWait);
    }

    void quitFromTheTrayEndsCorkwheel() {
        QVERIFY(startCorkwheel({m_alpha}, m_alpha));
        const TrayItem item = trayItem();
        QVERIFY(item.isValid());
        chooseInTray(QStringLiteral("Quit Corkwheel"));
        QTRY_COMPARE_WITH_TIMEOUT(m_corkwheel->process().state(), QProcess::NotRunning, kWait);
        QCOMPARE(m_corkwheel->process().exitStatus(), QProcess::NormalExit);
        QCOMPARE(m_corkwheel->process().exitCode(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(
            !QDBusConnection::sessionBus().interface()->isServiceRegistered(item.service), kWait);
        QTRY_VERIFY_WITH_TIMEOUT(
            std::none_of(registeredTrayItems().cbegin(), registeredTrayItems().cend(),
                         [&](const TrayItem& left) { return left.service == item.service; }),
            kWait);
    }
};

QTEST_MAIN(PlasmaEndToEndTest)
#include "tst_plasma_e2e.moc"
