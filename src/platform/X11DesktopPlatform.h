// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/PanelWindowType.h"
#include "platform/QtDesktopPlatform.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>

#include <cstdint>
#include <memory>

struct xcb_connection_t;

namespace corkwheel {

class X11CompositorWatch;

// Panel windows on X11 (also under XWayland): Qt's flags, plus the EWMH hints that Qt does
// not set: on every workspace, out of the taskbar and pager, a window type that the running
// window manager keeps below and in place through "show desktop", the compositor check and
// blur behind the glass background.
class X11DesktopPlatform : public QtDesktopPlatform {
public:
    // The connection of the running xcb application.
    X11DesktopPlatform();
    ~X11DesktopPlatform() override;

    void preparePanelWindow(QWidget* window) override;
    void setPinned(QWidget* window, bool pinned) override;
    void setFrame(QWidget* window, const WindowPlace& place) override;
    void orderFront(QWidget* window) override;
    bool hasCompositor() const override;
    void watchCompositor(std::function<void()> changed) override;
    void requestBlurBehind(QWidget* window, const QPainterPath& shape) override;
    bool offersBlurBehind() const override;
    void setListedInTaskbar(QWidget* window, bool listed) override;

private:
    std::uint32_t atom(const QByteArray& name) const;
    void setAtomList(std::uint32_t window, const QByteArray& property,
                     const QList<QByteArray>& values);
    void setDesktopWideState(QWidget* window);
    void setReceivesMouse(QWidget* window, bool receives);
    void lowerWithinLayer(QWidget* window);
    static void keepAtFrame(QWidget* window);
    std::uint32_t rootWindow() const;
    WindowManager windowManager() const;
    bool announces(std::uint32_t root, const QByteArray& hint) const;
    void changeStateOfMappedWindow(QWidget* window, bool add, const QList<QByteArray>& states);
    void changeStateOfUnmappedWindow(QWidget* window, bool add, const QList<QByteArray>& states);

    xcb_connection_t* m_connection = nullptr;
    std::unique_ptr<X11CompositorWatch> m_compositorWatch;
    mutable QHash<QByteArray, std::uint32_t> m_atoms;
};

} // namespace corkwheel
