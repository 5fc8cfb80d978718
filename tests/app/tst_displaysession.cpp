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
