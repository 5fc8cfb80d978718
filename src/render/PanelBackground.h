// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/PanelStyle.h"

#include <QRectF>

class QPainter;

namespace corkwheel::PanelBackground {

// The layers behind a panel's content, in the panel's rounded shape: its background colour
// when that is not fully transparent, and over it the glass when the style asks for it.
// With neither, nothing is painted and the content floats on the desktop.
void paint(QPainter& painter, const QRectF& rect, const PanelStyle& style);

bool hasColourLayer(const PanelStyle& style);

} // namespace corkwheel::PanelBackground
