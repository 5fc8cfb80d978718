// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/StyledText.h"

#include <QColor>
#include <QTextCharFormat>

namespace corkwheel::TerminalPalette {

// One of the 256 indexed colours: the 16 base colours of the palette, then the 6 × 6 × 6
// colour cube and the 24 greys that terminals share.
QColor indexedColor(int index);

// The colour `color` asks for; `fallback` when it asks for the panel's own.
QColor resolve(const TerminalColor& color, const QColor& fallback);

// How a run in `style` is drawn in a panel whose text colour is `textColor`: bold in the
// font's bold weight, dim at half the alpha, reverse with the colours swapped.
QTextCharFormat format(const TextStyle& style, const QColor& textColor);

} // namespace corkwheel::TerminalPalette
