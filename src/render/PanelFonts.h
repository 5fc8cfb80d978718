// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFont>
#include <QString>

namespace corkwheel::PanelFonts {

// Font sizes here are in points of the panel's geometry (device-independent pixels), like
// every other size of a panel, so a 13-point panel font stands as tall as 13 points of the
// panel's frame whatever the desktop's DPI setting.

// The font a panel style names, at `size`. The name is an installed face's PostScript name
// ("DejaVuSans-Bold"), as the inspector's picker offers, or else a family's name, as
// documents written by hand may hold. A name that is neither gives the system's fixed-width
// font instead: the default style names a face Linux systems lack, and its panels should
// stay monospaced here too.
QFont styleFont(const QString& name, double size);

// A font that draws at `size`, which may lie between two whole pixels. Qt makes glyphs in
// whole pixels only, so `font` is at the whole size just above and what is drawn with it,
// text and measurements alike, is to be scaled by `scale` (1 for a whole size).
struct ScaledFont {
    QFont font;
    double scale = 1;
};
ScaledFont scaledStyleFont(const QString& name, double size);

// The application's font at `size` and `weight`.
QFont systemFont(double size, QFont::Weight weight = QFont::Normal);

// The application font's size, and the two smaller caption sizes derived from it.
double bodySize();
QFont caption();
QFont smallCaption();

// Sets the size of `font` in points of the panel's geometry.
void setSize(QFont& font, double size);

// The size of `font` in points of the panel's geometry.
double sizeOf(const QFont& font);

} // namespace corkwheel::PanelFonts
