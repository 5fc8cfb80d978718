// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/GrowingTextEdit.h"

#include <QAbstractTextDocumentLayout>
#include <QEvent>
#include <QFontMetricsF>

#include <algorithm>
#include <cmath>

namespace corkwheel {

GrowingTextEdit::GrowingTextEdit(int maximumLines, QWidget* parent)
    : QPlainTextEdit(parent), m_maximumLines(std::max(1, maximumLines)) {
    setTabChangesFocus(true);
    setLineWrapMode(QPlainTextEdit::WidgetWidth);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(this, &QPlainTextEdit::textChanged, this, [this] {
        fitHeight();
        if (!m_showing)
            Q_EMIT textEdited(toPlainText());
    });
    connect(document()->documentLayout(), &QAbstractTextDocumentLayout::documentSizeChanged, this,
            &GrowingTextEdit::fitHeight);
    fitHeight();
}

void GrowingTextEdit::showText(const QString& text) {
    if (toPlainText() == text)
        return;
    m_showing = true;
    setPlainText(text);
    m_showing = false;
}

// A plain text document measures its height in lines.
int GrowingTextEdit::lineCount() const {
    const double lines = document()->documentLayout()->documentSize().height();
    return std::max(1, static_cast<int>(std::lround(lines)));
}

int GrowingTextEdit::visibleLines() const {
    return std::clamp(lineCount(), 1, m_maximumLines);
}

void GrowingTextEdit::resizeEvent(QResizeEvent* event) {
    QPlainTextEdit::resizeEvent(event);
    fitHeight();
}

void GrowingTextEdit::changeEvent(QEvent* event) {
    QPlainTextEdit::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        fitHeight();
}

void GrowingTextEdit::fitHeight() {
    // The editor shows a line only when it fits with a point to spare below the margins.
    const double text = visibleLines() * QFontMetricsF(font()).lineSpacing();
    const double margins = 2 * document()->documentMargin() + 1;
    const int height = static_cast<int>(std::ceil(text + margins)) + 2 * frameWidth();
    if (height != this->height() || minimumHeight() != height)
        setFixedHeight(height);
}

} // namespace corkwheel
