// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// What the screen shows, the way a user sees it, on the display the test runs on.

#include "support/CorkwheelProcess.h"

#include <QColor>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QProcess>
#include <QScreen>

namespace corkwheel::test {

inline bool onWayland() {
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

// The whole output as the Wayland compositor drew it, taken with grim: a Wayland client
// cannot read the screen itself.
inline QImage screenshot() {
    QProcess grim;
    grim.start(QStringLiteral("grim"),
               {QStringLiteral("-t"), QStringLiteral("ppm"), QStringLiteral("-")});
    if (!grim.waitForFinished(kWait))
        return {};
    return QImage::fromData(grim.readAllStandardOutput(), "PPM");
}

// The colour the screen shows at `at`, in the screen's pixels.
inline QColor screenPixel(QPoint at) {
    if (onWayland())
        return screenshot().pixelColor(at);
    return QGuiApplication::primaryScreen()
        ->grabWindow(0, at.x(), at.y(), 1, 1)
        .toImage()
        .pixelColor(0, 0);
}

} // namespace corkwheel::test
