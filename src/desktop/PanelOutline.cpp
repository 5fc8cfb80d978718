// SPDX-License-Identifier: GPL-3.0-or-later

#include "desktop/PanelOutline.h"

#include "render/PanelShapes.h"
#include "render/Theme.h"

#include <QPainter>

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

void PanelOutline::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPen pen(Theme::accent(), kLineWidth);
    pen.setJoinStyle(Qt::MiterJoin);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(PanelShapes::insideStroke(QRectF(rect()), m_cornerRadius, kLineWidth));
}

} // namespace corkwheel
