// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/TerminalPalette.h"

#include <QFont>

#include <algorithm>
#include <array>
#include <optional>

namespace corkwheel::TerminalPalette {

namespace {

// Mid-tones rather than the extremes of a classic terminal, so that every colour but black
// reads on a dark panel and every colour but white on a light one.
constexpr std::array<QRgb, 16> kBaseColors = {
    0x4d4d4d, 0xe0443e, 0x3fae49, 0xd4a017, 0x3b82f6, 0xc152c9, 0x16a6b6, 0xbfbfbf,
    0x808080, 0xff6b61, 0x5fd068, 0xf0c93a, 0x6ea8ff, 0xe27ae8, 0x3fd0df, 0xf2f2f2,
};
constexpr std::array<int, 6> kCubeLevels = {0, 95, 135, 175, 215, 255};
constexpr int kCubeStart = 16;
constexpr int kGreyStart = 232;

// Black or white, whichever stands out against `color`.
QColor contrasting(const QColor& color) {
    return color.lightnessF() > 0.5 ? QColor(Qt::black) : QColor(Qt::white);
}

} // namespace

QColor indexedColor(int index) {
    if (index < kCubeStart)
        return QColor::fromRgb(kBaseColors[std::size_t(index) % kBaseColors.size()]);
    if (index < kGreyStart) {
        const int cube = index - kCubeStart;
        return QColor(kCubeLevels[cube / 36], kCubeLevels[cube / 6 % 6], kCubeLevels[cube % 6]);
    }
    const int grey = 8 + 10 * (std::min(index, 255) - kGreyStart);
    return QColor(grey, grey, grey);
}

QColor resolve(const TerminalColor& color, const QColor& fallback) {
    switch (color.kind) {
    case TerminalColor::Kind::Indexed:
        return indexedColor(int(color.value));
    case TerminalColor::Kind::Rgb:
        return QColor::fromRgb(QRgb(color.value));
    case TerminalColor::Kind::Default:
        break;
    }
    return fallback;
}

QTextCharFormat format(const TextStyle& style, const QColor& textColor) {
    QColor foreground = resolve(style.foreground, textColor);
    std::optional<QColor> background;
    if (!style.background.isDefault())
        background = resolve(style.background, textColor);
    if (style.reverse) {
        const QColor behind = background.value_or(contrasting(foreground));
        background = foreground;
        foreground = behind;
    }
    if (style.dim)
        foreground.setAlphaF(foreground.alphaF() / 2);
    QTextCharFormat format;
    format.setForeground(foreground);
    if (background)
        format.setBackground(*background);
    if (style.bold)
        format.setFontWeight(QFont::Bold);
    // Only what the style turns on, so the panel's own font keeps the rest.
    if (style.italic)
        format.setFontItalic(true);
    if (style.underline)
        format.setFontUnderline(true);
    if (style.strikeOut)
        format.setFontStrikeOut(true);
    return format;
}

} // namespace corkwheel::TerminalPalette
