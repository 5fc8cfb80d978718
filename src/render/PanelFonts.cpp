// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/PanelFonts.h"

#include "render/FontCache.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QGuiApplication>

#include <algorithm>
#include <cmath>
#include <utility>

namespace corkwheel::PanelFonts {

namespace {

constexpr double kCaptionScale = 0.85;
constexpr double kSmallCaptionScale = 0.75;

double boundedSize(double size) {
    return std::isfinite(size) ? std::clamp(size, 1.0, 4096.0) : 1.0;
}

int pixelSizeFor(double size) {
    return static_cast<int>(std::lround(boundedSize(size)));
}

QFont resolveStyleFont(const QString& family, int pixelSize) {
    QFont font = QFontDatabase::hasFamily(family)
                     ? QFont(family)
                     : QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPixelSize(pixelSize);
    return font;
}

} // namespace

void setSize(QFont& font, double size) {
    font.setPixelSize(pixelSizeFor(size));
}

double sizeOf(const QFont& font) {
    return font.pixelSize() > 0 ? font.pixelSize() : QFontInfo(font).pixelSize();
}

// Finding a family runs fontconfig's alias substitution, and a font made afresh looks its
// glyphs' engine up again for every measurement; together they took a good part of every
// redraw of a ticking clock. So each family and size is resolved once, and copies of that
// font, which share what it has looked up, are handed out until the application's fonts
// change, which it announces.
QFont styleFont(const QString& family, double size) {
    constexpr qsizetype kMaxFonts = 64;
    static FontCache<std::pair<QString, int>, QFont> resolved(kMaxFonts);
    const int pixelSize = pixelSizeFor(size);
    return resolved.value({family, pixelSize}, [&] { return resolveStyleFont(family, pixelSize); });
}

ScaledFont scaledStyleFont(const QString& family, double size) {
    const double bounded = boundedSize(size);
    const double whole = std::ceil(bounded);
    return {styleFont(family, whole), bounded / whole};
}

QFont systemFont(double size, QFont::Weight weight) {
    QFont font = QGuiApplication::font();
    setSize(font, size);
    font.setWeight(weight);
    return font;
}

double bodySize() {
    return QFontInfo(QGuiApplication::font()).pixelSize();
}

QFont caption() {
    return systemFont(bodySize() * kCaptionScale);
}

QFont smallCaption() {
    return systemFont(bodySize() * kSmallCaptionScale);
}

} // namespace corkwheel::PanelFonts
