// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QColor>
#include <QIcon>
#include <QImage>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QStringList>

class QPainter;

namespace corkwheel::Symbols {

// Symbols are named as Corkwheel's panels and editor name them ("cpu", "wifi",
// "arrow.up.left.and.arrow.down.right", ...). Each one is looked up in the user's icon
// theme under its freedesktop names first, so panels match the desktop, and otherwise
// comes from the icons bundled with Corkwheel, so every symbol always shows.

// Every symbol name Corkwheel knows.
const QStringList& names();

// The freedesktop icon names tried in the icon theme, best first; empty when no theme
// name fits.
QStringList themeNames(const QString& name);

// The symbol's icon: the icon theme's when the desktop names a theme (not just the
// "hicolor" fallback) and it has one, otherwise the bundled one. Null for a name Corkwheel
// doesn't know.
QIcon icon(const QString& name);
QIcon bundledIcon(const QString& name);

// The symbol as a silhouette in `color`, `size` points large at device pixel ratio
// `ratio`; null for an unknown name.
QImage tinted(const QString& name, const QSizeF& size, double ratio, const QColor& color);

// Draws the symbol in `color`, fitted and centred in `box`, as sharp as the painter's
// device allows. A symbol at font size s fills an s-by-s box.
void paint(QPainter& painter, const QRectF& box, const QString& name, const QColor& color);

} // namespace corkwheel::Symbols
