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
};

QTEST_GUILESS_MAIN(DisplaySessionTest)
#include "tst_displaysession.moc"
