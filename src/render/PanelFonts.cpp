// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/PanelFonts.h"

#include "model/PanelLimits.h"
#include "render/FontCache.h"
#include "render/FontFaces.h"

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
    return PanelLimits::kDrawnFontSize.bound(size, PanelLimits::kDrawnFontSize.lowest);
}

int pixelSizeFor(double size) {
    return static_cast<int>(std::lround(boundedSize(size)));
}

QFont fontNamed(const QString& name) {
    if (const auto face = FontFaces::named(name)) {
        QFont font(face->family);
        font.setStyleName(face->style);
        return font;
    }
    if (QFontDatabase::hasFamily(name))
        return QFont(name);
    return QFontDatabase::systemFont(QFontDatabase::FixedFont);
}

QFont resolveStyleFont(const QString& name, int pixelSize) {
    QFont font = fontNamed(name);
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

// Finding a face or a family asks fontconfig, which runs its alias substitution, and a font
// made afresh looks its glyphs' engine up again for every measurement; together they took a
// good part of every redraw of a ticking clock. So each name and size is resolved once, and
// copies of that font, which share what it has looked up, are handed out until the
// application's fonts change, which it announces.
QFont styleFont(const QString& name, double size) {
    constexpr qsizetype kMaxFonts = 64;
    static FontCache<std::pair<QString, int>, QFont> resolved(kMaxFonts);
    const int pixelSize = pixelSizeFor(size);
    return resolved.value({name, pixelSize}, [&] { return resolveStyleFont(name, pixelSize); });
}

ScaledFont scaledStyleFont(const QString& name, double size) {
    const double bounded = boundedSize(size);
    const double whole = std::ceil(bounded);
    return {styleFont(name, whole), bounded / whole};
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
