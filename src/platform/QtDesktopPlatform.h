// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/DesktopPlatform.h"

#include <QObject>
#include <Qt>

class QScreen;

namespace corkwheel {

// Panel windows with nothing but Qt's window flags: what any Qt platform understands, and
// what the tests run on. Window systems that can do more build on it.
class QtDesktopPlatform : public DesktopPlatform {
public:
    void preparePanelWindow(QWidget* window) override;
    void setPinned(QWidget* window, bool pinned) override;
    void setFrame(QWidget* window, const WindowPlace& place) override;
    QRect frame(const QWidget* window) const override;
    void orderFront(QWidget* window) override;
    void orderOut(QWidget* window) override;
    void close(QWidget* window) override;
    std::optional<QRect> mainScreenGeometry() const override;
    QList<QRect> screens() const override;
    void watchScreens(std::function<void()> changed) override;
    std::optional<QRect> workAreaAt(QPoint point) const override;
    bool hasCompositor() const override;
    void watchCompositor(std::function<void()> changed) override;
    void requestBlurBehind(QWidget* window, const QPainterPath& shape) override;
    bool offersBlurBehind() const override;
    void setListedInTaskbar(QWidget* window, bool listed) override;

protected:
    static Qt::WindowFlags panelFlags(bool pinned);
    static bool isPinned(const QWidget* window);

private:
    void watchGeometry(QScreen* screen);

    std::function<void()> m_screensChanged;
    // The receiver of the screens' signals; replaced to drop them all at once.
    std::unique_ptr<QObject> m_screenWatch;
};

} // namespace corkwheel
