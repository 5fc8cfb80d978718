// SPDX-License-Identifier: GPL-3.0-or-later

#include "desktop/PanelTitleBar.h"

#include "render/GlassBackground.h"
#include "render/PanelFonts.h"
#include "render/PanelShapes.h"
#include "render/Symbols.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace corkwheel {

PanelTitleBar::PanelTitleBar(QWidget* parent) : DragArea(parent) {
    setToolTip(QStringLiteral("Drag to move this panel"));
}

void PanelTitleBar::setContent(const QString& name, const QString& symbolName, double cornerRadius,
                               double panelHeight) {
    if (name == m_name && symbolName == m_symbolName && cornerRadius == m_cornerRadius &&
        panelHeight == m_panelHeight) {
        return;
    }
    m_name = name;
    m_symbolName = symbolName;
    m_cornerRadius = cornerRadius;
    m_panelHeight = panelHeight;
    update();
}

void PanelTitleBar::setFrost(const QImage& frost) {
    m_frost = frost;
    m_frostSize = size();
    update();
}

// A frost of another width is from before a resize, and would leave part of the bar clear.
void PanelTitleBar::paintGlass(QPainter& painter, const QPainterPath& shape) const {
    if (m_frost.isNull() || m_frostSize != size()) {
        GlassBackground::fill(painter, shape);
        return;
    }
    painter.save();
    painter.setClipPath(shape, Qt::IntersectClip);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRectF(rect()), m_frost);
    painter.restore();
}

QFont PanelTitleBar::nameFont() const {
    return PanelFonts::systemFont(kNameSize, QFont::DemiBold);
}

double PanelTitleBar::nameLeft() const {
    return kSidePadding + kSymbolSize + kSpacing;
}

QString PanelTitleBar::shownName() const {
    const double available = std::max(0.0, width() - nameLeft() - kSidePadding);
    return QFontMetricsF(nameFont()).elidedText(m_name, Qt::ElideRight, available);
}

void PanelTitleBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    const QRectF bar(rect());
    const QRectF panel(0, 0, bar.width(), std::max(m_panelHeight, bar.height()));
    paintGlass(painter, PanelShapes::topStrip(panel, m_cornerRadius, bar.height()));
    painter.fillRect(QRectF(0, bar.height() - 1, bar.width(), 1),
                     QColor::fromRgbF(1, 1, 1, static_cast<float>(kHairlineOpacity)));

    const double middle = bar.height() / 2;
    Symbols::paint(painter,
                   QRectF(kSidePadding, middle - kSymbolSize / 2, kSymbolSize, kSymbolSize),
                   m_symbolName, Qt::white);
    const QFont font = nameFont();
    const QFontMetricsF metrics(font);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QPointF(nameLeft(), middle - metrics.height() / 2 + metrics.ascent()),
                     shownName());
}

} // namespace corkwheel
