#include "platform/DesktopPlatform.h"

#include "platform/QtDesktopPlatform.h"
#include "platform/X11DesktopPlatform.h"

#include <QGuiApplication>

namespace corkwheel {

std::unique_ptr<DesktopPlatform> DesktopPlatform::create() {
    if (QGuiApplication::platformName() == QStringLiteral("xcb"))
        return std::make_unique<X11DesktopPlatform>();
    return std::make_unique<QtDesktopPlatform>();
}

} // namespace corkwheel
