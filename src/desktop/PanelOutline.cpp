// SPDX-License-Identifier: GPL-3.0-or-later

#include "desktop/PanelOutline.h"

#include "render/PanelShapes.h"
#include "render/Theme.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace corkwheel {

PanelOutline::PanelOutline(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void PanelOutline::setCornerRadius(double radius) {
    if (radius == m_cornerRadius)
        return;
    m_cornerRadius = radius;
    update();
}

// Where the line can be: along the edges, and in the corners as far in as they are round.
QRegion PanelOutline::band() const {
    const int edge = static_cast<int>(std::ceil(kLineWidth)) + 1;
    const int corner = edge + static_cast<int>(std::ceil(std::max(0.0, m_cornerRadius)));
    const QRect bounds = rect();
    QRegion band(bounds);
    band -= bounds.adjusted(edge, edge, -edge, -edge);
    const QSize square(corner, corner);
    band += QRect(bounds.topLeft(), square);
    band += QRect(QPoint(bounds.right() + 1 - corner, bounds.top()), square);
    band += QRect(QPoint(bounds.left(), bounds.bottom() + 1 - corner), square);
    band += QRect(QPoint(bounds.right() + 1 - corner, bounds.bottom() + 1 - corner), square);
    return band;
}

// The content changing inside the panel repaints what lies over it, this too; there is no
// line to draw there.
void PanelOutline::paintEvent(QPaintEvent* event) {
    if (!event->region().intersects(band()))
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPen pen(Theme::accent(), kLineWidth);
    pen.setJoinStyle(Qt::MiterJoin);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(PanelShapes::insideStroke(QRectF(rect()), m_cornerRadius, kLineWidth));
}

} // namespace corkwheel
