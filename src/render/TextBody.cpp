#include "render/TextBody.h"

#include "render/PanelColors.h"
#include "render/PanelFonts.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace corkwheel::TextBody {

namespace {

constexpr double kGlassPadding = 14;
constexpr double kPadding = 4;
const QChar kEllipsis(0x2026);

Qt::Alignment alignmentOf(TextAlignmentOption option) {
    switch (option) {
    case TextAlignmentOption::Center:
        return Qt::AlignHCenter;
    case TextAlignmentOption::Trailing:
        return Qt::AlignRight;
    case TextAlignmentOption::Leading:
        break;
    }
    return Qt::AlignLeft;
}

// The narrowest a character of `font` can plausibly be; a row holds at most the width
// divided by this.
double narrowestAdvance(const QFontMetricsF& metrics) {
    double narrowest = metrics.averageCharWidth();
    for (const QChar c : QStringLiteral(" .,:;'|!iIjl1"))
        narrowest = std::min(narrowest, metrics.horizontalAdvance(c));
    return std::max(narrowest, 1.0);
}

qsizetype rowsThatFit(const QFontMetricsF& metrics, double height) {
    const double rows = std::ceil(std::max(height, 0.0) / std::max(metrics.lineSpacing(), 1.0));
    return static_cast<qsizetype>(std::clamp(rows, 1.0, 10'000.0));
}

// Draws paragraphs one below the other, wrapped to the width, for as long as lines fit.
struct LineWriter {
    QPainter& painter;
    const QFont& font;
    QRectF inner;
    Qt::Alignment alignment;
    double top;

    // Draws the lines of `paragraph` that fit from `top` on. False once the bottom is
    // reached; the last line drawn then ends in "…" when text was left out, also when that
    // is a following paragraph (`moreFollows`).
    bool writeParagraph(const QString& paragraph, bool moreFollows) {
        QTextLayout layout(paragraph, font, painter.device());
        QTextOption option(alignment);
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        layout.setTextOption(option);
        layout.setCacheEnabled(true);
        layout.beginLayout();
        QList<QTextLine> lines;
        bool overflow = false;
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(inner.width());
            if (top + line.height() > inner.bottom() + 0.01) {
                overflow = true;
                break;
            }
            line.setPosition(QPointF(0, top - inner.top()));
            top += line.height();
            lines.append(line);
        }
        layout.endLayout();
        const bool cut =
            overflow || (moreFollows && top + QFontMetricsF(font).height() > inner.bottom() + 0.01);
        for (qsizetype i = 0; i < lines.size(); ++i) {
            if (cut && i == lines.size() - 1)
                writeEllipsized(paragraph, lines[i]);
            else
                lines[i].draw(&painter, inner.topLeft());
        }
        return !cut;
    }

    void writeEllipsized(const QString& paragraph, const QTextLine& line) {
        const QFontMetricsF metrics(font);
        const QString text =
            paragraph.mid(line.textStart(), line.textLength()).trimmed() + kEllipsis;
        const QString shown = metrics.elidedText(text, Qt::ElideRight, inner.width());
        const QRectF box(inner.left(), inner.top() + line.y(), inner.width(), line.height());
        painter.drawText(box, static_cast<int>(alignment | Qt::AlignTop), shown);
    }
};

} // namespace

QString displayedText(PanelType type, const QString& output, bool isRunning) {
    if (!output.isEmpty())
        return output;
    switch (type) {
    case PanelType::Shell:
        return isRunning ? QStringLiteral("Running…") : QStringLiteral("(no output)");
    case PanelType::File:
        return QStringLiteral("(empty file)");
    default:
        return QStringLiteral(" ");
    }
}

double padding(const PanelStyle& style) {
    return style.showGlassBackground ? kGlassPadding : kPadding;
}

QString visiblePart(const QString& text, const QFont& font, const QSizeF& size) {
    const QFontMetricsF metrics(font);
    const qsizetype rows = rowsThatFit(metrics, size.height());
    const auto perRow = static_cast<qsizetype>(
        std::ceil(std::max(size.width(), 0.0) / narrowestAdvance(metrics)) + 1);
    qsizetype budget = rows * perRow;
    QString part;
    qsizetype start = 0;
    for (qsizetype line = 0; line < rows && budget > 0 && start <= text.size(); ++line) {
        // Looks no further than the budget, so not even the search grows with the text.
        const QStringView window =
            QStringView(text).sliced(start, std::min(budget + 1, text.size() - start));
        const qsizetype newline = window.indexOf(u'\n');
        const qsizetype end = newline < 0 ? start + window.size() : start + newline;
        const qsizetype taken = std::min(end - start, budget);
        if (line > 0)
            part.append(u'\n');
        part.append(QStringView(text).sliced(start, taken));
        budget -= taken + 1;
        if (newline < 0)
            break;
        start = end + 1;
    }
    return part;
}

void paint(QPainter& painter, const QRectF& rect, const QString& text, const PanelStyle& style) {
    const double inset = padding(style);
    const QRectF unscaled = rect.adjusted(inset, inset, -inset, -inset);
    if (unscaled.isEmpty())
        return;
    const auto [font, scale] = PanelFonts::scaledStyleFont(style.fontName, style.fontSize);
    const QRectF inner(unscaled.topLeft() / scale, unscaled.size() / scale);
    const QString shown = visiblePart(text, font, inner.size());
    painter.save();
    painter.scale(scale, scale);
    painter.setFont(font);
    painter.setPen(PanelColors::toQColor(style.textColor));
    LineWriter writer{painter, font, inner, alignmentOf(style.textAlignment), inner.top()};
    const QStringList paragraphs = shown.split(u'\n');
    const bool truncated = shown.size() < text.size();
    for (qsizetype i = 0; i < paragraphs.size(); ++i) {
        const bool moreFollows = i + 1 < paragraphs.size() || truncated;
        if (!writer.writeParagraph(paragraphs[i], moreFollows))
            break;
    }
    painter.restore();
}

} // namespace corkwheel::TextBody
