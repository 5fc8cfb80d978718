// SPDX-License-Identifier: GPL-3.0-or-later

#include "desktop/PanelTitleBar.h"

#include "render/GlassBackground.h"
#include "render/PanelFonts.h"
#include "render/PanelShapes.h"
#include "render/Symbols.h"

#include <QFontMetricsF>
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace corkwheel {

PanelTitleBar::PanelTitleBar(QWidget* parent) : DragArea(parent) {
    setToolTip(tr("Drag to move this panel"));
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
    updateShownName();
    update();
}

void PanelTitleBar::frostUnder(const QImage& part, const QRect& area) {
    const QRect changed = m_frost.update(part, area, size());
    setAttribute(Qt::WA_OpaquePaintEvent, hasFrost());
    if (!changed.isEmpty())
        update(changed);
}

void PanelTitleBar::setSeeThrough(bool seeThrough) {
    if (seeThrough == m_frost.seeThrough())
        return;
    m_frost.setSeeThrough(seeThrough);
    setAttribute(Qt::WA_OpaquePaintEvent, hasFrost());
    update();
}

// A frost of another size is from before a resize, and would leave part of the bar clear.
bool PanelTitleBar::hasFrost() const {
    return m_frost.holds(size(), devicePixelRatioF());
}

void PanelTitleBar::resizeEvent(QResizeEvent* event) {
    DragArea::resizeEvent(event);
    updateShownName();
    setAttribute(Qt::WA_OpaquePaintEvent, hasFrost());
}

// Away from the rounded corners the bar's shape is its rectangle: a new second in the middle
// of the bar needs no clip to it.
void PanelTitleBar::paintGlass(QPainter& painter, const QRect& exposed) const {
    const QRectF bar(rect());
    const double corner = std::max(0.0, m_cornerRadius) + 1;
    const bool straight = exposed.left() >= corner && exposed.right() + 1 <= bar.width() - corner;
    if (straight && hasFrost()) {
        m_frost.paint(painter, QPainterPath());
        return;
    }
    const QRectF panel(0, 0, bar.width(), std::max(m_panelHeight, bar.height()));
    const QPainterPath shape = PanelShapes::topStrip(panel, m_cornerRadius, bar.height());
    if (hasFrost())
        m_frost.paint(painter, shape);
    else
        GlassBackground::fill(painter, shape);
}

QFont PanelTitleBar::nameFont() const {
    return PanelFonts::systemFont(kNameSize, QFont::DemiBold);
}

double PanelTitleBar::nameLeft() const {
    return kSidePadding + kSymbolSize + kSpacing;
}

QString PanelTitleBar::shownName() const {
    return m_shownName;
}

void PanelTitleBar::updateShownName() {
    const double available = std::max(0.0, width() - nameLeft() - kSidePadding);
    const QFontMetricsF metrics(nameFont());
    m_shownName = metrics.elidedText(m_name, Qt::ElideRight, available);
    // With a little room for glyphs that reach beyond their advance.
    m_nameArea = QRectF(nameLeft() - 2, 0, metrics.horizontalAdvance(m_shownName) + 4, height())
                     .toAlignedRect();
}

// A new second under the bar repaints only a few columns of it; the symbol and the name are
// drawn only where they are among them.
void PanelTitleBar::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    const QRectF bar(rect());
    paintGlass(painter, event->rect());
    if (!hasFrost())
        Q_EMIT frostMissing();
    painter.fillRect(QRectF(0, bar.height() - 1, bar.width(), 1),
                     QColor::fromRgbF(1, 1, 1, static_cast<float>(kHairlineOpacity)));

    const double middle = bar.height() / 2;
    const QRectF symbol(kSidePadding, middle - kSymbolSize / 2, kSymbolSize, kSymbolSize);
    if (event->rect().intersects(symbol.toAlignedRect()))
        Symbols::paint(painter, symbol, m_symbolName, Qt::white);
    if (!event->rect().intersects(m_nameArea))
        return;
    const QFont font = nameFont();
    const QFontMetricsF metrics(font);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QPointF(nameLeft(), middle - metrics.height() / 2 + metrics.ascent()),
                     m_shownName);
}

} // namespace corkwheel
