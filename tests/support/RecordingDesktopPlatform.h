// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/DesktopPlatform.h"

#include <QHash>
#include <QList>
#include <QPainterPath>
#include <QRect>
#include <QWidget>

#include <algorithm>
#include <functional>

namespace corkwheel::test {

// A window system that only remembers: every window operation in order, and what each
// window looks like after them (where it is, whether it is shown, pinned or closed). Real
// widgets are left alone, so nothing depends on a display.
class RecordingDesktopPlatform final : public DesktopPlatform {
public:
    enum class Op {
        Prepare,
        SetPinned,
        SetFrame,
        OrderFront,
        OrderOut,
        Close,
        BlurBehind,
        SetListedInTaskbar
    };

    struct Call {
        Op op;
        const QWidget* window;
    };

    struct WindowState {
        QRect frame;
        // The screen it is shown on, and its place there.
        QRect screen;
        QPoint onScreen;
        bool shown = false;
        bool pinned = true;
        bool closed = false;
        QPainterPath blurShape;
        bool listedInTaskbar = true;
    };

    void preparePanelWindow(QWidget* window) override { record(Op::Prepare, window); }
    void setPinned(QWidget* window, bool pinned) override {
        record(Op::SetPinned, window);
        m_windows[window].pinned = pinned;
    }
    void setFrame(QWidget* window, const WindowPlace& place) override {
        record(Op::SetFrame, window);
        m_windows[window].frame = place.frame;
        m_windows[window].screen = place.screen;
        m_windows[window].onScreen = place.onScreen;
    }
    QRect frame(const QWidget* window) const override { return state(window).frame; }
    void orderFront(QWidget* window) override {
        record(Op::OrderFront, window);
        m_windows[window].shown = true;
    }
    void orderOut(QWidget* window) override {
        record(Op::OrderOut, window);
        m_windows[window].shown = false;
    }
    void close(QWidget* window) override {
        record(Op::Close, window);
        m_windows[window].shown = false;
        m_windows[window].closed = true;
        if (onClose)
            onClose(window);
    }
    std::optional<QRect> mainScreenGeometry() const override { return screen; }
    QList<QRect> screens() const override {
        QList<QRect> all;
        if (screen)
            all.append(*screen);
        return all + otherScreens;
    }
    std::optional<QRect> workAreaAt(QPoint) const override { return workArea ? workArea : screen; }
    void watchScreens(std::function<void()> changed) override {
        screensWatcher = std::move(changed);
    }
    // Another main screen, or the same one moved or resized, as the window system would
    // report it.
    void setScreen(const std::optional<QRect>& geometry) { setScreens(geometry, otherScreens); }
    // Monitors plugged in or unplugged beside the main screen, as the window system would
    // report it.
    void setScreens(const std::optional<QRect>& main, const QList<QRect>& others) {
        screen = main;
        otherScreens = others;
        if (screensWatcher)
            screensWatcher();
    }
    bool hasCompositor() const override { return compositor; }
    void watchCompositor(std::function<void()> changed) override {
        compositorWatcher = std::move(changed);
    }
    // A compositing manager starting or quitting, as the window system would report it.
    void setCompositor(bool running) {
        compositor = running;
        if (compositorWatcher)
            compositorWatcher();
    }
    void requestBlurBehind(QWidget* window, const QPainterPath& shape) override {
        record(Op::BlurBehind, window);
        m_windows[window].blurShape = shape;
    }
    bool offersBlurBehind() const override { return blurOffered; }

    void setListedInTaskbar(QWidget* window, bool listed) override {
        record(Op::SetListedInTaskbar, window);
        m_windows[window].listedInTaskbar = listed;
    }

    WindowState state(const QWidget* window) const { return m_windows.value(window); }
    const QList<Call>& calls() const { return m_calls; }
    void clearCalls() { m_calls.clear(); }

    qsizetype count(Op op, const QWidget* window = nullptr) const {
        return std::count_if(m_calls.cbegin(), m_calls.cend(), [&](const Call& call) {
            return call.op == op && (!window || call.window == window);
        });
    }
    qsizetype callsFor(const QWidget* window) const {
        return std::count_if(m_calls.cbegin(), m_calls.cend(),
                             [&](const Call& call) { return call.window == window; });
    }

    std::optional<QRect> screen = QRect(0, 0, 1920, 1080);
    // The screens besides the main one.
    QList<QRect> otherScreens;
    // The screen less the desktop's docks and panels; the whole screen when none.
    std::optional<QRect> workArea;
    bool compositor = true;
    // Whether the compositor blurs behind the glass, as KWin's blur effect does.
    bool blurOffered = false;
    std::function<void()> compositorWatcher;
    std::function<void()> screensWatcher;
    // Called after a window was closed, to look at what else was true at that moment.
    std::function<void(const QWidget*)> onClose;

private:
    void record(Op op, const QWidget* window) { m_calls.append({op, window}); }

    QList<Call> m_calls;
    QHash<const QWidget*, WindowState> m_windows;
};

} // namespace corkwheel::test
