// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/TextBody.h"

#include "render/PanelColors.h"
#include "render/PanelFonts.h"
#include "render/TerminalPalette.h"

#include <QCoreApplication>
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

using Formats = QList<QTextLayout::FormatRange>;

// `formats` moved `shift` characters to the left, as for a part of their text from `shift` on.
Formats shifted(const Formats& formats, qsizetype shift) {
    Formats result;
    for (QTextLayout::FormatRange range : formats) {
        const int end = range.start + range.length - int(shift);
        range.start = std::max(range.start - int(shift), 0);
        range.length = end - range.start;
        if (range.length > 0)
            result.append(range);
    }
    return result;
}

// The runs of a text as the formats of the slices of it that are drawn, taken in order.
class RunFormats {
public:
    RunFormats(const QList<StyledRun>& runs, const QColor& textColor)
        : m_runs(runs), m_textColor(textColor) {}

    // The formats of `slice`, relative to its start; slices come in text order.
    Formats within(const TextSlice& slice) {
        Formats formats;
        const qsizetype end = slice.start + slice.length;
        while (m_next < m_runs.size() && runEnd(m_runs[m_next]) <= slice.start)
            ++m_next;
        for (qsizetype i = m_next; i < m_runs.size() && m_runs[i].start < end; ++i) {
            const StyledRun& run = m_runs[i];
            const qsizetype start = std::max(run.start, slice.start);
            const qsizetype length = std::min(runEnd(run), end) - start;
            formats.append({int(start - slice.start), int(length),
                            TerminalPalette::format(run.style, m_textColor)});
        }
        return formats;
    }

private:
    static qsizetype runEnd(const StyledRun& run) { return run.start + run.length; }

    const QList<StyledRun>& m_runs;
    QColor m_textColor;
    qsizetype m_next = 0;
};

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
    bool writeParagraph(const QString& paragraph, bool moreFollows, const Formats& formats) {
        QTextLayout layout(paragraph, font, painter.device());
        QTextOption option(alignment);
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        layout.setTextOption(option);
        layout.setCacheEnabled(true);
        if (!formats.isEmpty())
            layout.setFormats(formats);
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
                writeEllipsized(paragraph, lines[i], formats);
            else
                lines[i].draw(&painter, inner.topLeft());
        }
        return !cut;
    }

    void writeEllipsized(const QString& paragraph, const QTextLine& line, const Formats& formats) {
        const QFontMetricsF metrics(font);
        const QStringView lineText =
            QStringView(paragraph).mid(line.textStart(), line.textLength());
        const QStringView trimmed = lineText.trimmed();
        const QString shown =
            metrics.elidedText(trimmed.toString() + kEllipsis, Qt::ElideRight, inner.width());
        const QPointF topLeft(inner.left(), inner.top() + line.y());
        if (formats.isEmpty()) {
            const QRectF box(topLeft, QSizeF(inner.width(), line.height()));
            painter.drawText(box, static_cast<int>(alignment | Qt::AlignTop), shown);
            return;
        }
        const qsizetype shift = line.textStart() + (trimmed.data() - lineText.data());
        QTextLayout layout(shown, font, painter.device());
        layout.setTextOption(QTextOption(alignment));
        layout.setFormats(shifted(formats, shift));
        layout.beginLayout();
        layout.createLine().setLineWidth(inner.width());
        layout.endLayout();
        layout.draw(&painter, topLeft);
    }
};

} // namespace

QString displayedText(PanelType type, const QString& output, bool isRunning) {
    if (!output.isEmpty())
        return output;
    switch (type) {
    case PanelType::Shell:
        return isRunning ? QCoreApplication::translate("corkwheel::TextBody", "Running…")
                         : QCoreApplication::translate("corkwheel::TextBody", "(no output)");
    case PanelType::File:
        return QCoreApplication::translate("corkwheel::TextBody", "(empty file)");
    default:
        return QStringLiteral(" ");
    }
}

double padding(const PanelStyle& style) {
    return style.showGlassBackground ? kGlassPadding : kPadding;
}

QList<TextSlice> visibleSlices(const QString& text, const QFont& font, const QSizeF& size) {
    const QFontMetricsF metrics(font);
    const qsizetype rows = rowsThatFit(metrics, size.height());
    const auto perRow = static_cast<qsizetype>(
        std::ceil(std::max(size.width(), 0.0) / narrowestAdvance(metrics)) + 1);
    qsizetype budget = rows * perRow;
    QList<TextSlice> slices;
    qsizetype start = 0;
    for (qsizetype line = 0; line < rows && budget > 0 && start <= text.size(); ++line) {
        // Looks no further than the budget, so not even the search grows with the text.
        const QStringView window =
            QStringView(text).sliced(start, std::min(budget + 1, text.size() - start));
        const qsizetype newline = window.indexOf(u'\n');
        const qsizetype end = newline < 0 ? start + window.size() : start + newline;
        const qsizetype taken = std::min(end - start, budget);
        slices.append(TextSlice{start, taken});
        budget -= taken + 1;
        if (newline < 0)
            break;
        start = end + 1;
    }
    return slices;
}

QString visiblePart(const QString& text, const QFont& font, const QSizeF& size) {
    QString part;
    const QList<TextSlice> slices = visibleSlices(text, font, size);
    for (const TextSlice& slice : slices) {
        if (&slice != &slices.first())
            part.append(u'\n');
        part.append(QStringView(text).sliced(slice.start, slice.length));
    }
    return part;
}

void paint(QPainter& painter, const QRectF& rect, const QString& text, const PanelStyle& style,
           const QList<StyledRun>& runs) {
    const double inset = padding(style);
    const QRectF unscaled = rect.adjusted(inset, inset, -inset, -inset);
    if (unscaled.isEmpty())
        return;
    const auto [font, scale] = PanelFonts::scaledStyleFont(style.fontName, style.fontSize);
    const QRectF inner(unscaled.topLeft() / scale, unscaled.size() / scale);
    const QList<TextSlice> slices = visibleSlices(text, font, inner.size());
    const QColor textColor = PanelColors::toQColor(style.textColor);
    painter.save();
    painter.scale(scale, scale);
    painter.setFont(font);
    painter.setPen(textColor);
    LineWriter writer{painter, font, inner, alignmentOf(style.textAlignment), inner.top()};
    RunFormats formats(runs, textColor);
    const TextSlice& last = slices.last();
    const bool truncated = last.start + last.length < text.size();
    for (qsizetype i = 0; i < slices.size(); ++i) {
        const TextSlice& slice = slices[i];
        const bool moreFollows = i + 1 < slices.size() || truncated;
        const QString paragraph = text.sliced(slice.start, slice.length);
        if (!writer.writeParagraph(paragraph, moreFollows, formats.within(slice)))
            break;
    }
    painter.restore();
}

} // namespace corkwheel::TextBody
