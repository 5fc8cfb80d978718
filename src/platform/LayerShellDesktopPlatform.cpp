// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/LayerShellDesktopPlatform.h"

#include "platform/LayerSurface.h"
#include "platform/RememberedFrame.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace corkwheel {

namespace {

// The screen whose geometry is `geometry`; the main one when none is.
QScreen* screenWithGeometry(const QRect& geometry) {
    const QList<QScreen*> screens = QGuiApplication::screens();
    const auto found = std::find_if(screens.cbegin(), screens.cend(), [&](const QScreen* screen) {
        return screen->geometry() == geometry;
    });
    return found != screens.cend() ? *found : QGuiApplication::primaryScreen();
}

// Repaints the whole window whenever part of it is to be repainted. On Qt's Wayland
// platform, partial repaints of a translucent window left pixels of earlier frames: a clock
// showed two seconds over each other, and the background darkened where it was not
// repainted.
class WholeRepaints : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::UpdateRequest)
            static_cast<QWidget*>(watched)->update();
        return false;
    }
};

} // namespace

void LayerShellDesktopPlatform::preparePanelWindow(QWidget* window) {
    QtDesktopPlatform::preparePanelWindow(window);
    window->installEventFilter(new WholeRepaints(window));
    new LayerSurface(window);
}

void LayerShellDesktopPlatform::setPinned(QWidget* window, bool pinned) {
    if (LayerSurface* surface = LayerSurface::of(window))
        surface->setPinned(pinned);
    QtDesktopPlatform::setPinned(window, pinned);
}

void LayerShellDesktopPlatform::setFrame(QWidget* window, const WindowPlace& place) {
    const bool moved = frame(window).topLeft() != place.frame.topLeft();
    LayerSurface* surface = LayerSurface::of(window);
    if (surface)
        surface->setMargins(QMargins(place.onScreen.x(), place.onScreen.y(), 0, 0));
    rememberFrame(window, place.frame);
    // Qt reckons the pointer's global positions from the place it knows for a window. While
    // a button is held, a compositor such as sway keeps giving the pointer's position
    // relative to where the surface was when the button went down, however far it moved
    // since: the place Qt knows stays that one until the button is let go, so a drag of the
    // title bar follows the pointer. KWin gives it relative to where the surface is now, so
    // there Qt is told every new place at once; else the panel would move half as far as
    // the pointer.
    if (QGuiApplication::mouseButtons() == Qt::NoButton ||
        m_dragReckoning == DragReckoning::FromCurrentPlace)
        window->setGeometry(place.frame);
    else
        window->resize(place.frame.size());
    // After the geometry, which puts the window on the screen under the frame's centre: the
    // surface goes on the output of the screen given, with the margins given for it.
    if (surface)
        surface->setOutput(screenWithGeometry(place.screen));
    // New margins take effect with the surface's next commit, which only a repaint makes:
    // a panel that only moved has nothing new to draw.
    if (moved)
        window->update();
}

QRect LayerShellDesktopPlatform::frame(const QWidget* window) const {
    // Qt's own idea of a window's place is only what it was last told.
    return rememberedFrame(window).value_or(window->geometry());
}

} // namespace corkwheel
