// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/SymbolBox.h"

#include "render/Symbols.h"

#include <QPainter>

#include <cmath>

namespace corkwheel {

SymbolBox::SymbolBox(double boxSize, double symbolSize, QWidget* parent)
    : QWidget(parent), m_symbolSize(symbolSize) {
    const int side = static_cast<int>(std::ceil(boxSize));
    setFixedSize(side, side);
}

void SymbolBox::setSymbol(const QString& name, const QColor& color) {
    if (name == m_name && color == m_color)
        return;
    m_name = name;
    m_color = color;
    update();
}

void SymbolBox::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QRectF box(0, 0, m_symbolSize, m_symbolSize);
    box.moveCenter(QRectF(rect()).center());
    Symbols::paint(painter, box, m_name, m_color);
}

} // namespace corkwheel
