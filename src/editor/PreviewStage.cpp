// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/PreviewStage.h"

#include "render/PanelContentView.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace corkwheel {

namespace {

// A side of the preview: the panel's own, but no more than `cap`, and nothing for a side
// that is not a usable length.
double cappedSide(double side, double cap) {
    return std::isfinite(side) ? std::clamp(side, 0.0, cap) : 0.0;
}

} // namespace

PreviewStage::PreviewStage(PanelRunner& runner, QWidget* parent)
    : QWidget(parent), m_content(new PanelContentView(runner, this)) {
    m_content->setObjectName(QStringLiteral("preview"));
    setMaximumSize(kMaxWidth, kMaxHeight);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

Panel PreviewStage::previewPanel(const Panel& panel) {
    Panel preview = panel;
    preview.frame.width = cappedSide(panel.frame.width, kMaxPanelWidth);
    preview.frame.height = cappedSide(panel.frame.height, kMaxPanelHeight);
    return preview;
}

void PreviewStage::setPanel(const Panel& panel) {
    m_content->setPanel(previewPanel(panel));
    placeContent();
    updateGeometry();
}

QSize PreviewStage::contentSize() const {
    const PanelFrame& frame = m_content->panel().frame;
    return {static_cast<int>(std::lround(frame.width)),
            static_cast<int>(std::lround(frame.height))};
}

QSize PreviewStage::sizeHint() const {
    return {kMaxWidth, kMaxHeight};
}

QSize PreviewStage::minimumSizeHint() const {
    return contentSize().expandedTo(QSize(0, kMaxHeight));
}

void PreviewStage::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    placeContent();
}

void PreviewStage::placeContent() {
    QRect area(QPoint(), contentSize());
    area.moveCenter(rect().center());
    m_content->setGeometry(area);
}

void PreviewStage::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath shape;
    shape.addRoundedRect(QRectF(rect()), kCornerRadius, kCornerRadius);
    QLinearGradient gradient(0, 0, 0, height());
    QColor top(Qt::black);
    top.setAlphaF(kTopOpacity);
    QColor bottom(Qt::black);
    bottom.setAlphaF(kBottomOpacity);
    gradient.setColorAt(0, top);
    gradient.setColorAt(1, bottom);
    painter.fillPath(shape, gradient);
}

} // namespace corkwheel
