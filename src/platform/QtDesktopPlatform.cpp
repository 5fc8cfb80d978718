// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/QtDesktopPlatform.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>

namespace corkwheel {

Qt::WindowFlags QtDesktopPlatform::panelFlags(bool pinned) {
    Qt::WindowFlags flags = Qt::Window | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus |
                            Qt::NoDropShadowWindowHint;
    if (pinned)
        flags |= Qt::WindowStaysOnBottomHint | Qt::WindowTransparentForInput;
    else
        flags |= Qt::WindowStaysOnTopHint;
    return flags;
}

bool QtDesktopPlatform::isPinned(const QWidget* window) {
    return window->windowFlags().testFlag(Qt::WindowStaysOnBottomHint);
}

void QtDesktopPlatform::preparePanelWindow(QWidget* window) {
    window->setWindowFlags(panelFlags(true));
    window->setAttribute(Qt::WA_TranslucentBackground);
    window->setAttribute(Qt::WA_ShowWithoutActivating);
    window->setAttribute(Qt::WA_X11DoNotAcceptFocus);
    window->setAttribute(Qt::WA_DeleteOnClose, false);
    window->setAttribute(Qt::WA_QuitOnClose, false);
    window->setFocusPolicy(Qt::NoFocus);
}

void QtDesktopPlatform::setPinned(QWidget* window, bool pinned) {
    const Qt::WindowFlags flags = panelFlags(pinned);
    if (window->windowFlags() == flags)
        return;
    // QWidget::setWindowFlags would recreate a native window, which hides it and gives it a
    // new identity; the native window's own flags change in place.
    if (QWindow* handle = window->windowHandle()) {
        handle->setFlags(flags);
        window->overrideWindowFlags(flags);
    } else {
        window->setWindowFlags(flags);
    }
}

void QtDesktopPlatform::setFrame(QWidget* window, const WindowPlace& place) {
    window->setGeometry(place.frame);
}

QRect QtDesktopPlatform::frame(const QWidget* window) const {
    return window->geometry();
}

// Stacking follows the stays-on-top/bottom hints, so showing is all ordering front takes.
void QtDesktopPlatform::orderFront(QWidget* window) {
    window->show();
}

void QtDesktopPlatform::orderOut(QWidget* window) {
    window->hide();
}

void QtDesktopPlatform::close(QWidget* window) {
    window->close();
}

std::optional<QRect> QtDesktopPlatform::mainScreenGeometry() const {
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return std::nullopt;
    return screen->geometry();
}

std::optional<QRect> QtDesktopPlatform::workAreaAt(QPoint point) const {
    const QScreen* screen = QGuiApplication::screenAt(point);
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (!screen)
        return std::nullopt;
    return screen->availableGeometry();
}

QList<QRect> QtDesktopPlatform::screens() const {
    QList<QRect> geometries;
    const QScreen* main = QGuiApplication::primaryScreen();
    if (main)
        geometries.append(main->geometry());
    for (const QScreen* screen : QGuiApplication::screens()) {
        if (screen != main)
            geometries.append(screen->geometry());
    }
    return geometries;
}

// Queued: the screens are read once Qt has finished with the change, after it has taken a
// removed screen out of its list and moved that screen's windows to the main one.
void QtDesktopPlatform::watchScreens(std::function<void()> changed) {
    m_screensChanged = std::move(changed);
    m_screenWatch.reset();
    if (!m_screensChanged)
        return;
    m_screenWatch = std::make_unique<QObject>();
    const auto notify = [this] { m_screensChanged(); };
    QObject::connect(qGuiApp, &QGuiApplication::primaryScreenChanged, m_screenWatch.get(), notify,
                     Qt::QueuedConnection);
    QObject::connect(qGuiApp, &QGuiApplication::screenRemoved, m_screenWatch.get(), notify,
                     Qt::QueuedConnection);
    QObject::connect(qGuiApp, &QGuiApplication::screenAdded, m_screenWatch.get(), notify,
                     Qt::QueuedConnection);
    QObject::connect(qGuiApp, &QGuiApplication::screenAdded, m_screenWatch.get(),
                     [this](QScreen* screen) { watchGeometry(screen); });
    for (QScreen* screen : QGuiApplication::screens())
        watchGeometry(screen);
}

// The connection ends with the screen, or with the watch.
void QtDesktopPlatform::watchGeometry(QScreen* screen) {
    QObject::connect(
        screen, &QScreen::geometryChanged, m_screenWatch.get(), [this] { m_screensChanged(); },
        Qt::QueuedConnection);
}

bool QtDesktopPlatform::hasCompositor() const {
    // Nothing in Qt tells; the platforms that are not X11 (Wayland, the offscreen one)
    // always blend translucent windows.
    return true;
}

void QtDesktopPlatform::watchCompositor(std::function<void()>) {}

void QtDesktopPlatform::requestBlurBehind(QWidget*, const QPainterPath&) {}

bool QtDesktopPlatform::offersBlurBehind() const {
    return false;
}

// Qt has no portable way to keep a window out of the taskbar short of changing its type.
void QtDesktopPlatform::setListedInTaskbar(QWidget*, bool) {}

} // namespace corkwheel
