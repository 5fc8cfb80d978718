// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// The GNOME Shell session a test runs in (scripts/in-gnome-desktop.sh starts it), reached
// over its session bus as a user sees it: what it draws, taken with its own screenshot
// interface; the windows it stacks, their layers and which one the pointer is over, read
// through org.gnome.Shell.Eval, which the shell offers in unsafe mode; and a virtual pointer
// and keyboard of its own input stack, which reach Wayland and X11 windows alike as well as
// the shell's top bar (X11 tools reach only Xwayland's windows).

#include "support/CorkwheelProcess.h"

#include <QColor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPoint>
#include <QRect>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

namespace corkwheel::test {

// One window as the shell has it.
struct ShellWindow {
    QString title;
    // Mutter's stack layer: 0 desktop, 1 bottom (kept below), 2 normal, 4 top and docks.
    int layer = -1;
    QRect frame;
    bool isWayland = false;
    // The window that the desktop icons extension draws the desktop in.
    bool isIconsWindow = false;
    bool isFocused = false;
    bool isSkippedByTaskbar = false;

    static ShellWindow from(const QJsonObject& object) {
        return {object.value(QStringLiteral("title")).toString(),
                object.value(QStringLiteral("layer")).toInt(-1),
                QRect(object.value(QStringLiteral("x")).toInt(),
                      object.value(QStringLiteral("y")).toInt(),
                      object.value(QStringLiteral("width")).toInt(),
                      object.value(QStringLiteral("height")).toInt()),
                object.value(QStringLiteral("wayland")).toBool(),
                object.value(QStringLiteral("icons")).toBool(),
                object.value(QStringLiteral("focused")).toBool(),
                object.value(QStringLiteral("skipTaskbar")).toBool()};
    }
};

class GnomeShell {
public:
    // Evaluates JavaScript in the shell and returns the value it ends with (which the shell
    // hands back as JSON); none when it threw or the shell did not answer.
    static std::optional<QJsonValue> eval(const QString& script) {
        QDBusMessage call = QDBusMessage::createMethodCall(
            QStringLiteral("org.gnome.Shell"), QStringLiteral("/org/gnome/Shell"),
            QStringLiteral("org.gnome.Shell"), QStringLiteral("Eval"));
        call.setArguments({script});
        const QDBusMessage reply = QDBusConnection::sessionBus().call(call, QDBus::Block, kWait);
        if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().size() != 2 ||
            !reply.arguments().at(0).toBool())
            return std::nullopt;
        const QString json = reply.arguments().at(1).toString();
        if (json.isEmpty())
            return QJsonValue();
        const QJsonDocument wrapped = QJsonDocument::fromJson('[' + json.toUtf8() + ']', nullptr);
        return wrapped.array().first();
    }

    static bool isTrue(const QString& expression) {
        return eval(expression).value_or(QJsonValue()).toBool();
    }

    // What every other call here uses, made once per shell: the virtual devices and the
    // functions that read its windows. False when the shell refused it.
    static bool prepare() {
        return isTrue(QStringLiteral(R"JS(
            global.corkwheelTest ??= (() => {
                const {Clutter, GLib, Meta} = imports.gi;
                const seat = Clutter.get_default_backend().get_default_seat();
                const pointer = seat.create_virtual_device(Clutter.InputDeviceType.POINTER_DEVICE);
                const keyboard =
                    seat.create_virtual_device(Clutter.InputDeviceType.KEYBOARD_DEVICE);
                const now = () => GLib.get_monotonic_time();
                const describe = w => {
                    const r = w.get_frame_rect();
                    return {title: w.get_title() ?? '', layer: w.get_layer(), x: r.x, y: r.y,
                        width: r.width, height: r.height,
                        wayland: w.get_client_type() === Meta.WindowClientType.WAYLAND,
                        icons: !!w.customJS_ding, focused: global.display.focus_window === w,
                        skipTaskbar: w.skip_taskbar};
                };
                return {
                    move: (x, y) => pointer.notify_absolute_motion(now(), x, y),
                    button: (button, down) => pointer.notify_button(now(), button,
                        down ? Clutter.ButtonState.PRESSED : Clutter.ButtonState.RELEASED),
                    key: (keyval, down) => keyboard.notify_keyval(now(), keyval,
                        down ? Clutter.KeyState.PRESSED : Clutter.KeyState.RELEASED),
                    // Bottom to top, as mutter stacks them.
                    windows: () => global.display.sort_windows_by_stacking(
                        global.display.list_all_windows()).map(describe),
                    // The window whose input region holds the point, as a press there finds
                    // it; null over the shell's own chrome or the bare background.
                    windowAt: (x, y) => {
                        let actor = global.stage.get_actor_at_pos(Clutter.PickMode.REACTIVE, x, y);
                        while (actor && !(actor instanceof Meta.WindowActor))
                            actor = actor.get_parent();
                        return actor ? describe(actor.get_meta_window()) : null;
                    },
                    tabList: () => global.display.get_tab_list(Meta.TabList.NORMAL,
                        global.workspace_manager.get_active_workspace()).map(describe),
                    // The top bar's icon of the tray item titled so, with its menu.
                    trayIcon: title => {
                        const icon = Object.values(Main.panel.statusArea).find(
                            item => item?._indicator?.title === title);
                        if (!icon)
                            return null;
                        const box = actor => {
                            const [x, y] = actor.get_transformed_position();
                            const [width, height] = actor.get_transformed_size();
                            return {x, y, width, height};
                        };
                        return {...box(icon), shown: icon.visible && icon.mapped,
                            open: icon.menu.isOpen,
                            items: icon.menu._getMenuItems().map(item => ({...box(item),
                                label: item.label?.text ?? '', enabled: item.sensitive,
                                checked: item._ornament === 2}))};
                    },
                };
            })();
            true)JS"));
    }

    // The windows, bottom to top.
    static QList<ShellWindow> windows() {
        return windowList(QStringLiteral("global.corkwheelTest.windows()"));
    }

    // What Alt+Tab offers on the workspace shown.
    static QList<ShellWindow> switcherWindows() {
        return windowList(QStringLiteral("global.corkwheelTest.tabList()"));
    }

    static std::optional<ShellWindow> window(const QString& title) {
        for (const ShellWindow& window : windows()) {
            if (window.title == title)
                return window;
        }
        return std::nullopt;
    }

    static std::optional<ShellWindow> windowAt(QPoint at) {
        const QJsonValue found =
            eval(QStringLiteral("global.corkwheelTest.windowAt(%1, %2)").arg(at.x()).arg(at.y()))
                .value_or(QJsonValue());
        if (!found.isObject())
            return std::nullopt;
        return ShellWindow::from(found.toObject());
    }

    // The whole screen as the shell draws it.
    static QImage screenshot() {
        return screenshotCall(QStringLiteral("Screenshot"), {false, false});
    }

    // The colour the screen shows at `at`: a screenshot of that one pixel, a hundredth of
    // the whole screen's cost, for checks that wait for it.
    static QColor pixel(QPoint at) {
        return screenshotCall(QStringLiteral("ScreenshotArea"), {at.x(), at.y(), 1, 1, false})
            .pixelColor(0, 0);
    }

    static void movePointer(QPoint to) {
        eval(QStringLiteral("global.corkwheelTest.move(%1, %2)").arg(to.x()).arg(to.y()));
    }

    static void click(QPoint at, int button = 1) {
        movePointer(at);
        press(button, true);
        press(button, false);
    }

    static void press(int button, bool down) {
        eval(QStringLiteral("global.corkwheelTest.button(%1, %2)")
                 .arg(button)
                 .arg(down ? QStringLiteral("true") : QStringLiteral("false")));
    }

    // A press at `from`, the pointer moved in steps to `to`, and the release there; false
    // when the shell did not take a step.
    static bool drag(QPoint from, QPoint to) {
        movePointer(from);
        press(1, true);
        constexpr int kSteps = 10;
        for (int step = 1; step <= kSteps; ++step) {
            const QPoint at = from + (to - from) * step / kSteps;
            movePointer(at);
            // Each step once the shell has it, as a hand's motion comes, and the release
            // only after the last.
            if (!QTest::qWaitFor([at] { return pointerIsAt(at); }, kWait))
                return false;
        }
        press(1, false);
        return true;
    }

    // Whether the shell has taken a move of the pointer to `at`.
    static bool pointerIsAt(QPoint at) {
        return isTrue(QStringLiteral("(([x, y]) => x === %1 && y === %2)(global.get_pointer())")
                          .arg(at.x())
                          .arg(at.y()));
    }

    // Presses and releases the keys (X keysyms) in order, then releases them in reverse.
    static void pressKeys(const QList<int>& keysyms) {
        for (int keysym : keysyms)
            eval(QStringLiteral("global.corkwheelTest.key(%1, true)").arg(keysym));
        for (auto keysym = keysyms.crbegin(); keysym != keysyms.crend(); ++keysym)
            eval(QStringLiteral("global.corkwheelTest.key(%1, false)").arg(*keysym));
    }

private:
    // org.gnome.Shell.Screenshot's method with its arguments before the file name, which it
    // writes a PNG to.
    static QImage screenshotCall(const QString& method, const QVariantList& arguments) {
        static QTemporaryDir folder;
        const QString file = folder.filePath(QStringLiteral("screen.png"));
        QDBusMessage call =
            QDBusMessage::createMethodCall(QStringLiteral("org.gnome.Shell.Screenshot"),
                                           QStringLiteral("/org/gnome/Shell/Screenshot"),
                                           QStringLiteral("org.gnome.Shell.Screenshot"), method);
        call.setArguments(arguments + QVariantList{file});
        const QDBusMessage reply = QDBusConnection::sessionBus().call(call, QDBus::Block, kWait);
        if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty() ||
            !reply.arguments().at(0).toBool())
            return {};
        return QImage(file);
    }

    static QList<ShellWindow> windowList(const QString& expression) {
        QList<ShellWindow> list;
        for (const QJsonValue& window : eval(expression).value_or(QJsonValue()).toArray())
            list.append(ShellWindow::from(window.toObject()));
        return list;
    }
};

} // namespace corkwheel::test
