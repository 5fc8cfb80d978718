// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/LayerSurface.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QVariant>
#include <QWidget>
#include <QWindow>

namespace corkwheel {

namespace {

constexpr char kLayerSurfaceProperty[] = "corkwheelLayerSurface";

} // namespace

LayerSurface::LayerSurface(QWidget* window) : QObject(window), m_window(window) {
    window->setProperty(kLayerSurfaceProperty, QVariant::fromValue<QObject*>(this));
    window->installEventFilter(this);
    // The layer surface is chosen for the native window before it is first shown.
    window->winId();
    apply();
}

LayerSurface* LayerSurface::of(const QWidget* window) {
    return static_cast<LayerSurface*>(window->property(kLayerSurfaceProperty).value<QObject*>());
}

void LayerSurface::setPinned(bool pinned) {
    m_layer = pinned ? LayerShellQt::Window::LayerBottom : LayerShellQt::Window::LayerTop;
    if (m_settings)
        m_settings->setLayer(m_layer);
}

void LayerSurface::setMargins(const QMargins& margins) {
    m_margins = margins;
    if (m_settings)
        m_settings->setMargins(margins);
}

void LayerSurface::setOutput(QScreen* screen) {
    m_output = screen;
    if (!m_window->isVisible() || (m_shownOn && m_shownOn == screen))
        return;
    // Hidden, the window gives up its surface; shown again, it has a new one on the output
    // that chooseOutput() names.
    m_window->hide();
    m_window->show();
}

bool LayerSurface::eventFilter(QObject*, QEvent* event) {
    // Sent when the widget has a new native window, before that is shown.
    if (event->type() == QEvent::WinIdChange)
        apply();
    // Sent before the native window is shown, which is when its surface is made.
    if (event->type() == QEvent::Show)
        chooseOutput();
    return false;
}

// LayerShellQt makes the surface on the output of the native window's screen. A hidden
// widget passes a frame set meanwhile to its native window only as that is shown, after
// this; and Qt moves a native window to the screen under its centre whenever its geometry
// changes, and gives the widget its native window's size whenever the screen changes. So
// the native window takes the widget's size first, then its place, and then the screen
// chosen here, which showing it leaves in place.
void LayerSurface::chooseOutput() {
    QWindow* handle = m_window->windowHandle();
    QScreen* screen = m_output ? m_output.data() : QGuiApplication::primaryScreen();
    m_shownOn = screen;
    if (!handle || !screen)
        return;
    handle->resize(m_window->size());
    handle->setGeometry(m_window->geometry());
    handle->setScreen(screen);
}

void LayerSurface::apply() {
    QWindow* handle = m_window->windowHandle();
    if (!handle || handle == m_handle)
        return;
    m_handle = handle;
    chooseOutput();
    m_settings = LayerShellQt::Window::get(handle);
    if (!m_settings)
        return;
    // KWin takes a layer surface's type from its scope: any name but a few makes it an
    // ordinary window, which "show desktop" hides with the applications' windows. A dock
    // stays shown, as a panel on the desktop should, and its layer still places it.
    m_settings->setScope(QStringLiteral("dock"));
    m_settings->setLayer(m_layer);
    m_settings->setAnchors(LayerShellQt::Window::Anchors(LayerShellQt::Window::AnchorTop |
                                                         LayerShellQt::Window::AnchorLeft));
    m_settings->setMargins(m_margins);
    m_settings->setExclusiveZone(-1);
    m_settings->setKeyboardInteractivity(LayerShellQt::Window::KeyboardInteractivityNone);
    m_settings->setScreenConfiguration(LayerShellQt::Window::ScreenFromQWindow);
    // When its output goes away the panel waits to be placed again on the screens that are
    // left, rather than being closed for good.
    m_settings->setCloseOnDismissed(false);
}

} // namespace corkwheel
