// SPDX-License-Identifier: GPL-3.0-or-later

// The window type a panel window takes under each window manager.

#include "platform/PanelWindowType.h"

#include <QTest>

using namespace corkwheel;

class PanelWindowTypeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void typeFollowsTheWindowManager_data() {
        QTest::addColumn<QString>("windowManager");
        QTest::addColumn<bool>("temporaryRules");
        QTest::addColumn<QByteArray>("type");
        // Shown through "show desktop" and kept below only as docks.
        QTest::newRow("GNOME's mutter") << QStringLiteral("Mutter") << false << QByteArray("DOCK");
        QTest::newRow("GNOME Shell")
            << QStringLiteral("GNOME Shell") << false << QByteArray("DOCK");
        // Splash windows are centred and on one workspace.
        QTest::newRow("KDE's KWin 5") << QStringLiteral("KWin") << true << QByteArray("DOCK");
        // Docks are kept above normal windows, kept below or not.
        QTest::newRow("KDE's KWin 6") << QStringLiteral("KWin") << false << QByteArray("NORMAL");
        // Splash windows shown again come up above the others.
        QTest::newRow("Xfce's xfwm4") << QStringLiteral("Xfwm4") << false << QByteArray("DOCK");
        // A kept-below dock lies among the normal windows.
        QTest::newRow("Openbox") << QStringLiteral("Openbox") << false << QByteArray("SPLASH");
        QTest::newRow("any other") << QStringLiteral("i3") << false << QByteArray("DOCK");
        QTest::newRow("none") << QString() << false << QByteArray("DOCK");
    }

    void typeFollowsTheWindowManager() {
        QFETCH(QString, windowManager);
        QFETCH(bool, temporaryRules);
        QFETCH(QByteArray, type);
        const PanelWindowType chosen = panelWindowTypeFor({windowManager, temporaryRules});
        QCOMPARE(chosen.atoms.value(0), "_NET_WM_WINDOW_TYPE_" + type);
        // Without a frame under KWin, and an ordinary window to those that know no other.
        QCOMPARE(chosen.atoms.mid(1), QList<QByteArray>({"_KDE_NET_WM_WINDOW_TYPE_OVERRIDE",
                                                         "_NET_WM_WINDOW_TYPE_NORMAL"}));
    }

    void qtIsToldTheSameType() {
        // Qt's xcb plugin's flags for the normal, dock and splash types.
        QCOMPARE(panelWindowTypeFor({QStringLiteral("KWin"), false}).qtType, 0x1);
        QCOMPARE(panelWindowTypeFor({QStringLiteral("KWin"), true}).qtType, 0x4);
        QCOMPARE(panelWindowTypeFor({QStringLiteral("Openbox"), false}).qtType, 0x40);
    }
};

QTEST_GUILESS_MAIN(PanelWindowTypeTest)

#include "tst_panelwindowtype.moc"
