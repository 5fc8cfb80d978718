// SPDX-License-Identifier: GPL-3.0-or-later

#include "desktop/PanelSnapGuides.h"

#include "render/Theme.h"

#include <QPainter>

#include <algorithm>

namespace corkwheel {

PanelSnapGuides::PanelSnapGuides(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void PanelSnapGuides::setGuides(const QList<QLineF>& guides) {
    if (guides == m_guides)
        return;
    m_guides = guides;
    update();
}

// A guide on the panel's own edge would fall half outside the window, where nothing draws.
QLineF PanelSnapGuides::inside(const QLineF& guide) const {
    const double half = kLineWidth / 2;
    const double right = std::max(half, width() - half);
    const double bottom = std::max(half, height() - half);
    return {std::clamp(guide.x1(), half, right), std::clamp(guide.y1(), half, bottom),
            std::clamp(guide.x2(), half, right), std::clamp(guide.y2(), half, bottom)};
}

void PanelSnapGuides::paintEvent(QPaintEvent*) {
    if (m_guides.isEmpty())
        return;
    QPainter painter(this);
    // Lighter than the outline, which a guide along an edge lies on.
    painter.setPen(QPen(Theme::accent().lighter(160), kLineWidth));
    for (const QLineF& guide : m_guides)
        painter.drawLine(inside(guide));
}

} // namespace corkwheel
