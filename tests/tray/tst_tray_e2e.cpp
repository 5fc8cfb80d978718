// SPDX-License-Identifier: GPL-3.0-or-later

// The tray icon of the running corkwheel binary, as a desktop's tray shows it: desktops draw
// tray icons and their menus themselves, from what an application exports on the session
// bus (StatusNotifierItem and its dbusmenu), on X11 and on Wayland alike. This test is the
// desktop's tray: it registers the watcher that tray icons look for on a session bus of its
// own, reads the exported menu and chooses its items. CTest runs it under each window
// manager and, where built, under a Wayland compositor.

#include "support/CorkwheelProcess.h"
#include "support/PrivateSessionBus.h"
#include "support/ScreenPanels.h"
#include "support/ScreenPixels.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QProcess>
#include <QTest>

#include <memory>
#include <optional>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

const QString kWatcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString kMenuInterface = QStringLiteral("com.canonical.dbusmenu");

// One item of an exported menu, with the items under it.
struct MenuEntry {
    int id = 0;
    QVariantMap properties;
    QList<MenuEntry> children;

    QString label() const { return properties.value(QStringLiteral("label")).toString(); }
    bool isSeparator() const {
        return properties.value(QStringLiteral("type")).toString() == QStringLiteral("separator");
    }
    bool isChecked() const { return properties.value(QStringLiteral("toggle-state")).toInt() == 1; }
    bool isEnabled() const { return properties.value(QStringLiteral("enabled"), true).toBool(); }
};

// dbusmenu's layout: (ia{sv}av), each child a variant holding the same structure.
MenuEntry readEntry(const QDBusArgument& argument) {
    MenuEntry entry;
    argument.beginStructure();
    argument >> entry.id >> entry.properties;
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        entry.children.append(readEntry(qvariant_cast<QDBusArgument>(child.variant())));
    }
    argument.endArray();
    argument.endStructure();
    return entry;
}

// What a tray host is to tray icons: the StatusNotifierWatcher they register with.
class TrayWatcher : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isHostRegistered)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)

public:
    bool isHostRegistered() const { return true; }
    int protocolVersion() const { return 0; }
    QStringList items() const { return m_items; }
    // A tray host forgets an item whose application quit.
    void forgetItems() { m_items.clear(); }

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString& service) {
        m_items.append(service);
        Q_EMIT StatusNotifierItemRegistered(service);
    }
    void RegisterStatusNotifierHost(const QString&) {}

Q_SIGNALS:
    void StatusNotifierItemRegistered(const QString& service);
    void StatusNotifierItemUnregistered(const QString& service);
    void StatusNotifierHostRegistered();

private:
    QStringList m_items;
};

} // namespace

class TrayEndToEndTest : public QObject {
    Q_OBJECT

private:
    PrivateSessionBus m_sessionBus;
    std::optional<QDBusConnection> m_bus;
    TrayWatcher m_watcher;
    std::unique_ptr<CorkwheelProcess> m_corkwheel;
    const Panel m_panel = filledPanel(QStringLiteral("E2E Tray"), {100, 100, 300, 80});

    QDBusConnection& bus() { return *m_bus; }

    // The service of the binary's tray icon once it has registered it.
    QString startCorkwheel() {
        m_corkwheel = std::make_unique<CorkwheelProcess>(
            QList<Panel>{m_panel}, onWayland() ? QString() : QStringLiteral("xcb"));
        if (!QTest::qWaitFor([this] { return !m_watcher.items().isEmpty(); }, kWait * 2))
            return {};
        return m_watcher.items().constLast();
    }

    QDBusMessage callItem(const QString& service, const QString& method,
                          const QVariantList& arguments = {}) {
        QDBusMessage call =
            QDBusMessage::createMethodCall(service, QStringLiteral("/StatusNotifierItem"),
                                           QStringLiteral("org.kde.StatusNotifierItem"), method);
        call.setArguments(arguments);
        return bus().call(call, QDBus::Block, kWait);
    }

    // Read with a plain Properties call: QDBusInterface would introspect the item and cache
    // what it learnt with the connection for as long as the process runs.
    QVariant itemProperty(const QString& service, const QString& name) {
        QDBusMessage call = QDBusMessage::createMethodCall(
            service, QStringLiteral("/StatusNotifierItem"),
            QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
        call.setArguments({QStringLiteral("org.kde.StatusNotifierItem"), name});
        const QDBusMessage reply = bus().call(call, QDBus::Block, kWait);
        if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
            return {};
        return qvariant_cast<QDBusVariant>(reply.arguments().constFirst()).variant();
    }

    QDBusMessage callMenu(const QString& service, const QString& method,
                          const QVariantList& arguments) {
        const QString path =
            itemProperty(service, QStringLiteral("Menu")).value<QDBusObjectPath>().path();
        QDBusMessage call = QDBusMessage::createMethodCall(service, path, kMenuInterface, method);
        call.setArguments(arguments);
        return bus().call(call, QDBus::Block, kWait);
    }

    // The items of the tray icon's menu as a tray host reads them before it shows the menu.
    QList<MenuEntry> menuItems(const QString& service) {
        callMenu(service, QStringLiteral("AboutToShow"), {0});
        const QDBusMessage reply =
            callMenu(service, QStringLiteral("GetLayout"), {0, -1, QStringList()});
        if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().size() < 2)
            return {};
        return readEntry(qvariant_cast<QDBusArgument>(reply.arguments().at(1))).children;
    }

    std::optional<MenuEntry> menuItem(const QString& service, const QString& label) {
        for (const MenuEntry& entry : menuItems(service)) {
            if (entry.label() == label)
                return entry;
        }
        return std::nullopt;
    }

    // Chooses an item, as a click on it in the host's menu does.
    void choose(const QString& service, const QString& label) {
        const std::optional<MenuEntry> entry = menuItem(service, label);
        QVERIFY2(entry, qPrintable(label));
        callMenu(service, QStringLiteral("Event"),
                 {entry->id, QStringLiteral("clicked"),
                  QVariant::fromValue(QDBusVariant(QVariant(0))), 0u});
    }

    bool panelIsSeenAt(QPoint at) { return isColor(screenPixel(at), kPanelColor); }

    // The binary's windows that are shown on X11, its menus among them.
    int shownX11Windows() {
        const QString ids =
            run(QStringLiteral("xdotool"),
                {QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--pid"),
                 QString::number(m_corkwheel->process().processId())});
        return int(ids.split(u'\n', Qt::SkipEmptyParts).size());
    }

    // Whether sway shows the editor: the panels are layer surfaces, not in its window tree.
    static bool waylandEditorIsShown() {
        return run(QStringLiteral("swaymsg"), {QStringLiteral("-t"), QStringLiteral("get_tree")})
            .contains(QStringLiteral("\"name\": \"Corkwheel\""));
    }

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(m_sessionBus.start());
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_sessionBus.address());
        m_bus = QDBusConnection::connectToBus(QString::fromUtf8(m_sessionBus.address()),
                                              QStringLiteral("tray-host"));
        QVERIFY(bus().isConnected());
        QVERIFY(bus().registerService(kWatcherService));
        QVERIFY(bus().registerObject(QStringLiteral("/StatusNotifierWatcher"), &m_watcher,
                                     QDBusConnection::ExportAllSlots |
                                         QDBusConnection::ExportAllProperties |
                                         QDBusConnection::ExportAllSignals));
        if (onWayland())
            QVERIFY2(missingTool({QStringLiteral("grim")}).isEmpty(), "grim is missing");
    }

    // A connection of its own name outlives the test unless it is ended.
    void cleanupTestCase() {
        bus().unregisterObject(QStringLiteral("/StatusNotifierWatcher"));
        bus().unregisterService(kWatcherService);
        m_bus.reset();
        QDBusConnection::disconnectFromBus(QStringLiteral("tray-host"));
    }

    void cleanup() {
        m_corkwheel.reset();
        m_watcher.forgetItems();
    }

    void trayIconIsRegisteredWithTheMenu() {
        const QString service = startCorkwheel();
        QVERIFY(!service.isEmpty());
        QCOMPARE(itemProperty(service, QStringLiteral("Status")).toString(),
                 QStringLiteral("Active"));
        QStringList labels;
        for (const MenuEntry& entry : menuItems(service))
            labels.append(entry.isSeparator() ? QStringLiteral("-") : entry.label());
        QCOMPARE(labels,
                 QStringList({QStringLiteral("Settings…"), QStringLiteral("-"),
                              QStringLiteral("Hide All Panels"), QStringLiteral("Edit Mode"),
                              QStringLiteral("-"), QStringLiteral("1 panel"), QStringLiteral("-"),
                              QStringLiteral("Quit Corkwheel")}));
        QVERIFY(!menuItem(service, QStringLiteral("1 panel"))->isEnabled());
    }

    void editModeChosenInTheTrayShowsTheTitleBarAndItsCheckMark() {
        const QString service = startCorkwheel();
        QVERIFY(!service.isEmpty());
        const QPoint titleBar(250, 110);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(titleBar), kWait);
        QVERIFY(!menuItem(service, QStringLiteral("Edit Mode"))->isChecked());
        choose(service, QStringLiteral("Edit Mode"));
        QTRY_VERIFY_WITH_TIMEOUT(!panelIsSeenAt(titleBar), kWait);
        QTRY_VERIFY_WITH_TIMEOUT(menuItem(service, QStringLiteral("Edit Mode"))->isChecked(),
                                 kWait);
        choose(service, QStringLiteral("Edit Mode"));
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(titleBar), kWait);
    }

    void hideAllPanelsChosenInTheTrayHidesThem() {
        const QString service = startCorkwheel();
        QVERIFY(!service.isEmpty());
        const QPoint middle(250, 140);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(middle), kWait);
        choose(service, QStringLiteral("Hide All Panels"));
        QTRY_VERIFY_WITH_TIMEOUT(!panelIsSeenAt(middle), kWait);
        QTRY_VERIFY_WITH_TIMEOUT(menuItem(service, QStringLiteral("Hide All Panels"))->isChecked(),
                                 kWait);
    }

    // A left click on the icon opens the menu at the pointer on X11. Wayland lets no client
    // place a menu without a window of its own, so there it opens the editor.
    void leftClickOnTheIconOpensTheMenuOrOnWaylandTheEditor() {
        const QString service = startCorkwheel();
        QVERIFY(!service.isEmpty());
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt({250, 140}), kWait);
        if (onWayland()) {
            QVERIFY(!waylandEditorIsShown());
            callItem(service, QStringLiteral("Activate"), {600, 5});
            QTRY_VERIFY_WITH_TIMEOUT(waylandEditorIsShown(), kWait);
            return;
        }
        const int before = shownX11Windows();
        callItem(service, QStringLiteral("Activate"), {600, 5});
        QTRY_COMPARE_WITH_TIMEOUT(shownX11Windows(), before + 1, kWait);
    }

    void quitChosenInTheTrayEndsCorkwheel() {
        const QString service = startCorkwheel();
        QVERIFY(!service.isEmpty());
        choose(service, QStringLiteral("Quit Corkwheel"));
        QVERIFY(m_corkwheel->process().waitForFinished(kWait));
        QCOMPARE(m_corkwheel->process().exitStatus(), QProcess::NormalExit);
        QCOMPARE(m_corkwheel->process().exitCode(), 0);
    }
};

QTEST_MAIN(TrayEndToEndTest)
#include "tst_tray_e2e.moc"
