// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/PanelColors.h"

#include <algorithm>
#include <cmath>

namespace corkwheel::PanelColors {

namespace {

float unit(double component) {
    if (!std::isfinite(component))
        return 0.0f;
    return static_cast<float>(std::clamp(component, 0.0, 1.0));
}

} // namespace

QColor toQColor(const CodableColor& color) {
    return QColor::fromRgbF(unit(color.red), unit(color.green), unit(color.blue),
                            unit(color.alpha));
}

QColor withOpacity(QColor color, double opacity) {
    color.setAlphaF(color.alphaF() * unit(opacity));
    return color;
}

QColor placeholder() {
    return QColor::fromRgbF(1, 1, 1, 0.5f);
}

} // namespace corkwheel::PanelColors
