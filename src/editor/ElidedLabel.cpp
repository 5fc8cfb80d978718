// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/ElidedLabel.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyle>

namespace corkwheel {

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

QString ElidedLabel::shownText() const {
    return fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
}

// An empty text still holds its line, so rows with and without a name line up.
int ElidedLabel::lineHeight() const {
    return fontMetrics().height() + contentsMargins().top() + contentsMargins().bottom();
}

QSize ElidedLabel::sizeHint() const {
    return {QLabel::sizeHint().width(), lineHeight()};
}

QSize ElidedLabel::minimumSizeHint() const {
    return {0, lineHeight()};
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Qt::Alignment alignment =
        QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter);
    style()->drawItemText(&painter, contentsRect(), int(alignment), palette(), isEnabled(),
                          shownText(), foregroundRole());
}

} // namespace corkwheel
