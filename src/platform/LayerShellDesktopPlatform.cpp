#include "platform/LayerShellDesktopPlatform.h"

#include <LayerShellQt/Window>

#include <QEvent>
#include <QGuiApplication>
#include <QPointer>
#include <QScreen>
#include <QVariant>
#include <QWidget>
#include <QWindow>

namespace corkwheel {

namespace {

// The frame last given, in Qt's global coordinates: a Wayland client is never told where
// its surfaces are, so Qt's own idea of a window's place is only what it was last told.
constexpr char kFrameProperty[] = "corkwheelFrame";
constexpr char kLayerSurfaceProperty[] = "corkwheelLayerSurface";

QScreen* mainScreen() {
    return QGuiApplication::primaryScreen();
}

// A layer surface stays on the output it was made for: to follow the main screen to
// another output it is made anew there.
void keepOnMainScreen(QWidget* window) {
    QWindow* handle = window->windowHandle();
    QScreen* screen = mainScreen();
    if (!handle || !screen || handle->screen() == screen)
        return;
    const bool shown = window->isVisible();
    if (shown)
        window->hide();
    handle->setScreen(screen);
    if (shown)
        window->show();
}

// Repaints the whole window whenever part of it is to be repainted. Qt's Wayland windows
// draw into one of several buffers in turn and bring a buffer up to date only where it was
// repainted, so a partial repaint of a translucent window leaves what an older frame drew
// elsewhere in that buffer: a clock showed two seconds over each other.
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

// The layer surface of one panel window, kept through the native window being made anew:
// Qt does that when a web view first joins the window, and the new native window would
// otherwise be an ordinary one, which a tiling compositor spreads over the whole screen.
class LayerSurface : public QObject {
public:
    explicit LayerSurface(QWidget* window) : QObject(window), m_window(window) {
        window->setProperty(kLayerSurfaceProperty, QVariant::fromValue<QObject*>(this));
        window->installEventFilter(this);
        // The layer surface is chosen for the native window before it is first shown.
        window->winId();
        apply();
    }

    static LayerSurface* of(const QWidget* window) {
        return static_cast<LayerSurface*>(
            window->property(kLayerSurfaceProperty).value<QObject*>());
    }

    void setPinned(bool pinned) {
        m_layer = pinned ? LayerShellQt::Window::LayerBottom : LayerShellQt::Window::LayerTop;
        if (m_settings)
            m_settings->setLayer(m_layer);
    }

    void setMargins(const QMargins& margins) {
        m_margins = margins;
        if (m_settings)
            m_settings->setMargins(margins);
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        // Sent when the widget has a new native window, before that is shown.
        if (event->type() == QEvent::WinIdChange)
            apply();
        return false;
    }

private:
    void apply() {
        QWindow* handle = m_window->windowHandle();
        if (!handle || handle == m_handle)
            return;
        m_handle = handle;
        if (QScreen* screen = mainScreen())
            handle->setScreen(screen);
        m_settings = LayerShellQt::Window::get(handle);
        if (!m_settings)
            return;
        m_settings->setScope(QStringLiteral("corkwheel"));
        m_settings->setLayer(m_layer);
        m_settings->setAnchors(LayerShellQt::Window::Anchors(LayerShellQt::Window::AnchorTop |
                                                             LayerShellQt::Window::AnchorLeft));
        m_settings->setMargins(m_margins);
        m_settings->setExclusiveZone(-1);
        m_settings->setKeyboardInteractivity(LayerShellQt::Window::KeyboardInteractivityNone);
        m_settings->setScreenConfiguration(LayerShellQt::Window::ScreenFromQWindow);
        // When its output goes away the panel waits to be placed on the next main screen,
        // rather than being closed for good.
        m_settings->setCloseOnDismissed(false);
    }

    QWidget* m_window;
    // The native window the settings were made for.
    QPointer<QWindow> m_handle;
    QPointer<LayerShellQt::Window> m_settings;
    LayerShellQt::Window::Layer m_layer = LayerShellQt::Window::LayerBottom;
    QMargins m_margins;
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

void LayerShellDesktopPlatform::setFrame(QWidget* window, const QRect& frame) {
    keepOnMainScreen(window);
    const QRect screen = mainScreenGeometry().value_or(QRect());
    const bool moved = this->frame(window).topLeft() != frame.topLeft();
    if (LayerSurface* surface = LayerSurface::of(window))
        surface->setMargins(QMargins(frame.x() - screen.x(), frame.y() - screen.y(), 0, 0));
    window->setProperty(kFrameProperty, frame);
    // Qt reckons the pointer's global positions from the place it knows for a window. While
    // a button is held, a compositor such as sway keeps giving the pointer's position
    // relative to where the surface was when the button went down, however far it moved
    // since: the place Qt knows stays that one until the button is let go, so a drag of the
    // title bar follows the pointer.
    if (QGuiApplication::mouseButtons() == Qt::NoButton)
        window->setGeometry(frame);
    else
        window->resize(frame.size());
    // New margins take effect with the surface's next commit, which only a repaint makes:
    // a panel that only moved has nothing new to draw.
    if (moved)
        window->update();
}

QRect LayerShellDesktopPlatform::frame(const QWidget* window) const {
    const QVariant frame = window->property(kFrameProperty);
    return frame.isValid() ? frame.toRect() : window->geometry();
}

void LayerShellDesktopPlatform::orderFront(QWidget* window) {
    keepOnMainScreen(window);
    window->show();
}

} // namespace corkwheel
