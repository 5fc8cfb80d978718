// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/DisplaySession.h"

#include <QTest>

using namespace corkwheel;

class DisplaySessionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        qunsetenv("QT_QPA_PLATFORM");
        qunsetenv("XDG_SESSION_TYPE");
        qunsetenv("WAYLAND_DISPLAY");
        qunsetenv("QT_XCB_NO_MITSHM");
    }

    void x11SessionKeepsQtsChoice() {
        qputenv("XDG_SESSION_TYPE", "x11");
        QVERIFY(!DisplaySession::forcedQpaPlatform());
    }

    void waylandSessionRunsThroughXWayland() {
        qputenv("XDG_SESSION_TYPE", "wayland");
        QCOMPARE(DisplaySession::forcedQpaPlatform(), QByteArray("xcb"));
    }

    void waylandDisplayAloneAlsoCounts() {
        qputenv("WAYLAND_DISPLAY", "wayland-0");
        QCOMPARE(DisplaySession::forcedQpaPlatform(), QByteArray("xcb"));
    }

    void usersOwnPlatformChoiceWins() {
        qputenv("XDG_SESSION_TYPE", "wayland");
        qputenv("QT_QPA_PLATFORM", "wayland");
        QVERIFY(!DisplaySession::forcedQpaPlatform());
        DisplaySession::applyToEnvironment();
        QCOMPARE(qgetenv("QT_QPA_PLATFORM"), QByteArray("wayland"));
    }

    void applyingSetsTheEnvironment() {
        qputenv("XDG_SESSION_TYPE", "wayland");
        DisplaySession::applyToEnvironment();
        QCOMPARE(qgetenv("QT_QPA_PLATFORM"), QByteArray("xcb"));
    }

    void waylandSessionChoosesNativeWaylandOnlyWhereLayerShellWorks_data() {
        QTest::addColumn<bool>("built");
        QTest::addColumn<bool>("offered");
        QTest::addColumn<QByteArray>("platform");
        QTest::newRow("sway, with layer shell built") << true << true << QByteArray("wayland");
        QTest::newRow("GNOME, which offers none") << true << false << QByteArray("xcb");
        QTest::newRow("built without it") << false << true << QByteArray("xcb");
        QTest::newRow("neither") << false << false << QByteArray("xcb");
    }

    void waylandSessionChoosesNativeWaylandOnlyWhereLayerShellWorks() {
        QFETCH(bool, built);
        QFETCH(bool, offered);
        QFETCH(QByteArray, platform);
        DisplaySession::Facts facts;
        facts.waylandSession = true;
        facts.layerShellBuilt = built;
        facts.compositorOffersLayerShell = offered;
        QCOMPARE(DisplaySession::qpaPlatformFor(facts), platform);
        facts.platformChosenByUser = true;
        QVERIFY(!DisplaySession::qpaPlatformFor(facts));
    }

    void x11SessionNeverChoosesWayland() {
        DisplaySession::Facts facts;
        facts.layerShellBuilt = true;
        facts.compositorOffersLayerShell = true;
        QVERIFY(!DisplaySession::qpaPlatformFor(facts));
    }

    void noWaylandCompositorMeansXWayland() {
        // A session that says it is Wayland but whose compositor cannot be reached.
        qputenv("WAYLAND_DISPLAY", "/nonexistent/wayland-socket");
        QVERIFY(!DisplaySession::currentFacts().compositorOffersLayerShell);
        QCOMPARE(DisplaySession::forcedQpaPlatform(), QByteArray("xcb"));
    }

    void waylandWindowsKeepThePlacesTheyAreGiven() {
        qunsetenv("QT_WAYLAND_DISABLE_FIXED_POSITIONS");
        DisplaySession::applyToEnvironment();
        QCOMPARE(qgetenv("QT_WAYLAND_DISABLE_FIXED_POSITIONS"), QByteArray("1"));
    }

    void panelsRepaintWithoutSharedMemoryImages() {
        DisplaySession::applyToEnvironment();
        QCOMPARE(qgetenv("QT_XCB_NO_MITSHM"), QByteArray("1"));
    }

    void usersOwnSharedMemorySettingIsLeftAlone() {
        qputenv("QT_XCB_NO_MITSHM", "0");
        DisplaySession::applyToEnvironment();
        QCOMPARE(qgetenv("QT_XCB_NO_MITSHM"), QByteArray("0"));
    }
};

QTEST_GUILESS_MAIN(DisplaySessionTest)
#include "tst_displaysession.moc"
