// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/DesktopPlatform.h"

#include "platform/LayerShellSupport.h"
#include "platform/QtDesktopPlatform.h"
#include "platform/X11DesktopPlatform.h"

#include <QGuiApplication>

namespace corkwheel {

std::unique_ptr<DesktopPlatform> DesktopPlatform::create() {
    const QString platform = QGuiApplication::platformName();
    if (platform == QStringLiteral("xcb"))
        return std::make_unique<X11DesktopPlatform>();
    if (platform.startsWith(QStringLiteral("wayland")) && LayerShellSupport::isBuilt() &&
        LayerShellSupport::compositorOffersLayerShell())
        return LayerShellSupport::createPlatform();
    return std::make_unique<QtDesktopPlatform>();
}

} // namespace corkwheel
