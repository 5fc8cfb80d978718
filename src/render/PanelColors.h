// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/CodableColor.h"

#include <QColor>

namespace corkwheel::PanelColors {

// A stored colour as Qt draws it: sRGB, each component clamped to 0...1 (the model keeps
// whatever the document held).
QColor toQColor(const CodableColor& color);

// `color` with its alpha multiplied by `opacity`.
QColor withOpacity(QColor color, double opacity);

// The dimmed white of the symbol and note that stand in for a missing picture or page.
QColor placeholder();

} // namespace corkwheel::PanelColors
