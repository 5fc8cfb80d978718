// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Shared by the X end-to-end tests: X tools run from a test on a real X display. Everything is
// checked from outside, the way the window system sees it: xwininfo, xprop and xdotool.

#include "support/CorkwheelProcess.h"
#include "support/ScreenPixels.h"

#include <QColor>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPixmap>
#include <QProcess>
#include <QRegularExpression>
#include <QScreen>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>

#include <algorithm>
#include <memory>

namespace corkwheel::test {

inline constexpr char kNoDisplay[] =
    "DISPLAY is not set: these tests need an X display with a window manager and a "
    "compositor; scripts/test.sh starts one (Xvfb, openbox, picom)";

inline QString xdotool(const QStringList& arguments) {
    return run(QStringLiteral("xdotool"), arguments);
}

// Asks the window manager to show the desktop, or to stop showing it, as a taskbar's
// "show desktop" button does. A key binding would depend on the keyboard state.
inline void showDesktop(bool on) {
    run(QStringLiteral("wmctrl"),
        {QStringLiteral("-k"), on ? QStringLiteral("on") : QStringLiteral("off")});
}

// Switches to workspace `index` (from 0) and waits until the window manager says it did.
inline bool switchToWorkspace(int index) {
    run(QStringLiteral("wmctrl"), {QStringLiteral("-s"), QString::number(index)});
    return QTest::qWaitFor(
        [&] {
            return run(QStringLiteral("xprop"),
                       {QStringLiteral("-root"), QStringLiteral("_NET_CURRENT_DESKTOP")})
                .trimmed()
                .endsWith(QStringLiteral("= ") + QString::number(index));
        },
        kWait);
}

inline QString hex(WId window) {
    return QStringLiteral("0x%1").arg(window, 0, 16);
}

inline QString windowInfo(WId window) {
    return run(QStringLiteral("xwininfo"), {QStringLiteral("-id"), hex(window)});
}

inline int infoValue(const QString& info, const QString& label) {
    const QRegularExpression pattern(QRegularExpression::escape(label) +
                                     QStringLiteral(":\\s+(-?\\d+)"));
    const auto match = pattern.match(info);
    return match.hasMatch() ? match.captured(1).toInt() : -1;
}

// Where the window really is on the screen, frame offsets of the window manager included.
inline QRect screenGeometry(WId window) {
    const QString info = windowInfo(window);
    return {infoValue(info, QStringLiteral("Absolute upper-left X")),
            infoValue(info, QStringLiteral("Absolute upper-left Y")),
            infoValue(info, QStringLiteral("Width")), infoValue(info, QStringLiteral("Height"))};
}

inline bool isViewable(WId window) {
    return windowInfo(window).contains(QStringLiteral("Map State: IsViewable"));
}

inline QString xprop(const QString& target, const QString& name) {
    return run(QStringLiteral("xprop"),
               {target == QStringLiteral("root") ? QStringLiteral("-root") : QStringLiteral("-id"),
                target, name})
        .replace(QLatin1Char('\n'), QLatin1Char(' '));
}

inline QStringList atoms(WId window, const QString& name) {
    const QString line = xprop(hex(window), name);
    const qsizetype equals = line.indexOf(QLatin1Char('='));
    if (equals < 0)
        return {};
    QStringList values = line.mid(equals + 1).split(QLatin1Char(','));
    for (QString& value : values)
        value = value.trimmed();
    return values;
}

inline bool windowManagerSupports(const QString& atom) {
    return xprop(QStringLiteral("root"), QStringLiteral("_NET_SUPPORTED")).contains(atom);
}

inline bool isShowingDesktop() {
    return xprop(QStringLiteral("root"), QStringLiteral("_NET_SHOWING_DESKTOP"))
        .contains(QStringLiteral("= 1"));
}

inline QList<WId> windowsNamed(const QString& name) {
    QList<WId> windows;
    const QString found = xdotool({QStringLiteral("search"), QStringLiteral("--name"),
                                   QLatin1Char('^') + name + QLatin1Char('$')});
    for (const QString& line : found.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        windows.append(line.trimmed().toULongLong());
    return windows;
}

// What the screen shows at `at`, as the X server holds it once the compositor has drawn.
// The window the pointer is over once it has moved to `at`: the top-level window (or the
// window manager's frame around one) whose input area holds that point, or the root window.
inline WId windowUnderPointer(QPoint at) {
    // Not --sync, which waits for a motion that never comes when the pointer is there already.
    const QString location = xdotool({QStringLiteral("mousemove"), QString::number(at.x()),
                                      QString::number(at.y()), QStringLiteral("sleep"),
                                      QStringLiteral("0.1"), QStringLiteral("getmouselocation")});
    const auto match = QRegularExpression(QStringLiteral("window:(\\d+)")).match(location);
    return match.hasMatch() ? match.captured(1).toULongLong() : 0;
}

// The window a property of the root window names, as xprop prints it ("window id # 0x…").
inline WId rootWindowProperty(const QString& name) {
    const QString line = xprop(QStringLiteral("root"), name);
    const auto match = QRegularExpression(QStringLiteral("# (0x[0-9a-f]+)")).match(line);
    return match.hasMatch() ? match.captured(1).toULongLong(nullptr, 16) : 0;
}

inline WId activeWindow() {
    return rootWindowProperty(QStringLiteral("_NET_ACTIVE_WINDOW"));
}

// The name the running window manager gives itself.
inline QString windowManagerName() {
    const WId check = rootWindowProperty(QStringLiteral("_NET_SUPPORTING_WM_CHECK"));
    if (check == 0)
        return {};
    const QString name = xprop(hex(check), QStringLiteral("_NET_WM_NAME"));
    const auto quoted = QRegularExpression(QStringLiteral("\"(.*)\"")).match(name);
    return quoted.hasMatch() ? quoted.captured(1) : QString();
}

inline QPoint pointerLocation() {
    const auto match = QRegularExpression(QStringLiteral("x:(\\d+) y:(\\d+)"))
                           .match(xdotool({QStringLiteral("getmouselocation")}));
    return match.hasMatch() ? QPoint(match.captured(1).toInt(), match.captured(2).toInt())
                            : QPoint(-1, -1);
}

// The xdotool words that move the pointer to `at` and wait until it is there: --sync waits
// for a motion, which never comes when the pointer is there already.
inline QStringList pointerTo(QPoint at) {
    if (pointerLocation() == at)
        return {};
    return {QStringLiteral("mousemove"), QStringLiteral("--sync"), QString::number(at.x()),
            QString::number(at.y())};
}

inline void click(QPoint at) {
    xdotool(pointerTo(at) << QStringLiteral("click") << QStringLiteral("1"));
}

// Presses at `from`, moves in small steps to `to` and releases there.
inline void drag(QPoint from, QPoint to) {
    QStringList arguments = pointerTo(from) << QStringLiteral("mousedown") << QStringLiteral("1");
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

// The X window named `name` once it is mapped; 0 when none comes.
inline WId shownWindowNamed(const QString& name) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < kWait) {
        const QList<WId> windows = windowsNamed(name);
        for (WId window : windows) {
            if (isViewable(window))
                return window;
        }
        QTest::qWait(50);
    }
    return 0;
}

} // namespace corkwheel::test
