// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/MonospacedDigits.h"

#include "render/FontCache.h"
#include "render/ShapedText.h"

#include <QFontMetricsF>
#include <QGlyphRun>
#include <QPainter>
#include <QRawFont>

#include <algorithm>
#include <array>

namespace corkwheel::MonospacedDigits {

namespace {

bool isDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

// The ten digits of one font: their glyphs, their advances and the cell they are set in.
// With these a run of digits is drawn as one glyph run instead of as text, which would be
// shaped afresh at every redraw of a statistics panel.
struct Digits {
    QRawFont rawFont;
    std::array<quint32, 10> glyphs{};
    std::array<double, 10> advances{};
    double cell = 0;
    // Whether the font has a glyph of its own for every digit. Without, the digits are
    // drawn as text, which takes them from another font as any text would.
    bool haveGlyphs = false;
};

Digits measureDigits(const QFont& font) {
    const QFontMetricsF metrics(font);
    Digits digits;
    for (int digit = 0; digit < 10; ++digit) {
        digits.advances[digit] = metrics.horizontalAdvance(QChar(u'0' + digit));
        digits.cell = std::max(digits.cell, digits.advances[digit]);
    }
    digits.rawFont = QRawFont::fromFont(font);
    const QList<quint32> glyphs =
        digits.rawFont.glyphIndexesForString(QStringLiteral("0123456789"));
    digits.haveGlyphs = glyphs.size() == 10 && !glyphs.contains(0);
    if (digits.haveGlyphs)
        std::copy(glyphs.cbegin(), glyphs.cend(), digits.glyphs.begin());
    return digits;
}

const Digits& digitsOf(const QFont& font) {
    constexpr qsizetype kMaxFonts = 32;
    static FontCache<QFont, Digits> measured(kMaxFonts);
    return measured.value(font, [&] { return measureDigits(font); });
}

// The text cut into runs of digits and runs of anything else.
template <class Visit> void forEachRun(const QString& text, Visit visit) {
    qsizetype start = 0;
    while (start < text.size()) {
        const bool digits = isDigit(text[start]);
        qsizetype end = start + 1;
        while (end < text.size() && isDigit(text[end]) == digits)
            ++end;
        visit(QStringView(text).sliced(start, end - start), digits);
        start = end;
    }
}

// Each digit centred in its cell.
void drawDigits(QPainter& painter, QPointF baselineOrigin, QStringView run, const Digits& digits) {
    if (!digits.haveGlyphs) {
        for (qsizetype i = 0; i < run.size(); ++i) {
            const double advance = digits.advances[run[i].unicode() - u'0'];
            const QPointF origin(baselineOrigin.x() + i * digits.cell + (digits.cell - advance) / 2,
                                 baselineOrigin.y());
            painter.drawText(origin, QString(run[i]));
        }
        return;
    }
    QList<quint32> glyphs;
    QList<QPointF> positions;
    glyphs.reserve(run.size());
    positions.reserve(run.size());
    for (qsizetype i = 0; i < run.size(); ++i) {
        const int digit = run[i].unicode() - u'0';
        glyphs.append(digits.glyphs[digit]);
        positions.append(QPointF(i * digits.cell + (digits.cell - digits.advances[digit]) / 2, 0));
    }
    QGlyphRun glyphRun;
    glyphRun.setRawFont(digits.rawFont);
    glyphRun.setGlyphIndexes(glyphs);
    glyphRun.setPositions(positions);
    painter.drawGlyphRun(baselineOrigin, glyphRun);
}

} // namespace

double width(const QFont& font, const QString& text) {
    const double cell = digitsOf(font).cell;
    double total = 0;
    forEachRun(text, [&](QStringView run, bool digits) {
        total += digits ? cell * run.size() : ShapedText::width(font, run.toString());
    });
    return total;
}

void draw(QPainter& painter, QPointF baselineOrigin, const QString& text) {
    const Digits& digits = digitsOf(painter.font());
    double x = baselineOrigin.x();
    forEachRun(text, [&](QStringView run, bool isDigitRun) {
        if (isDigitRun) {
            drawDigits(painter, QPointF(x, baselineOrigin.y()), run, digits);
            x += digits.cell * run.size();
            return;
        }
        x += ShapedText::draw(painter, QPointF(x, baselineOrigin.y()), run.toString());
    });
}

} // namespace corkwheel::MonospacedDigits
