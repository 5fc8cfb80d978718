// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/DevicePixelRatio.h"

#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>

namespace corkwheel {

double paintRatio(const QPainter& painter) {
    const QPaintEngine* engine = painter.paintEngine();
    const QPaintDevice* device =
        engine && engine->paintDevice() ? engine->paintDevice() : painter.device();
    const double ratio = device ? device->devicePixelRatio() : 1.0;
    return ratio > 0 ? ratio : 1.0;
}

} // namespace corkwheel
