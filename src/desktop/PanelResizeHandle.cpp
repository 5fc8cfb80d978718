// SPDX-License-Identifier: GPL-3.0-or-later

#include "desktop/PanelResizeHandle.h"

#include "render/Symbols.h"
#include "render/Theme.h"

#include <QPainter>

namespace corkwheel {

PanelResizeHandle::PanelResizeHandle(QWidget* parent) : DragArea(parent) {
    setToolTip(tr("Drag to resize this panel"));
    setFixedSize(kSize, kSize);
}

QRectF PanelResizeHandle::circleRect() {
    return QRectF(0, 0, kSize, kSize).adjusted(kMargin, kMargin, -kMargin, -kMargin);
}

void PanelResizeHandle::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF circle = circleRect();
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::accent());
    painter.drawEllipse(circle);
    Symbols::paint(
        painter, circle.adjusted(kCirclePadding, kCirclePadding, -kCirclePadding, -kCirclePadding),
        QStringLiteral("arrow.up.left.and.arrow.down.right"), Qt::white);
}

} // namespace corkwheel
