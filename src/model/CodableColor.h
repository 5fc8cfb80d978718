// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace corkwheel {

// An sRGB colour with opacity, each component nominally 0...1. The model never clamps:
// views that draw a colour, and the colour picker that makes one, take care of the range.
struct CodableColor {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 0;

    bool operator==(const CodableColor&) const = default;
};

} // namespace corkwheel
