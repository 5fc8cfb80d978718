// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QColor>

#include <cmath>

namespace corkwheel::test {

// The relative luminance of an sRGB colour, 0 for black to 1 for white.
inline double relativeLuminance(QColor colour) {
    const auto linear = [](double value) {
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

// How white stands out on `colour`, as a contrast ratio: 4.5 is the least for small text.
inline double whiteContrast(QColor colour) {
    return 1.05 / (relativeLuminance(colour) + 0.05);
}

} // namespace corkwheel::test
