// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/CodableColor.h"
#include "model/TextAlignmentOption.h"

#include <QString>

namespace corkwheel {

// Appearance of a panel. A default-constructed style is the style of every new panel:
// white monospaced text on a fully transparent background, with a shadow.
struct PanelStyle {
    QString fontName = QStringLiteral("SFMono-Regular");
    double fontSize = 13;
    CodableColor textColor{1, 1, 1, 1};
    CodableColor backgroundColor{0, 0, 0, 0};
    bool showShadow = true;
    bool showGlassBackground = false;
    double cornerRadius = 16;
    double opacity = 1;
    TextAlignmentOption textAlignment = TextAlignmentOption::Leading;

    bool operator==(const PanelStyle&) const = default;
};

} // namespace corkwheel
