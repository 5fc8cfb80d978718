// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/ColorWell.h"

#include "render/PanelColors.h"

#include <QColorDialog>
#include <QPainter>
#include <QPainterPath>

namespace corkwheel {

namespace {

constexpr double kCornerRadius = 4;
constexpr int kCheckerSize = 5;

// Light and dark squares behind the swatch, so that its opacity shows.
void paintCheckerboard(QPainter& painter, const QRect& rect) {
    painter.fillRect(rect, QColor(255, 255, 255));
    for (int y = rect.top(); y <= rect.bottom(); y += kCheckerSize) {
        for (int x = rect.left(); x <= rect.right(); x += kCheckerSize) {
            if (((x - rect.left()) / kCheckerSize + (y - rect.top()) / kCheckerSize) % 2 == 1)
                painter.fillRect(QRect(x, y, kCheckerSize, kCheckerSize).intersected(rect),
                                 QColor(204, 204, 204));
        }
    }
}

} // namespace

ColorWell::ColorWell(QWidget* parent) : QAbstractButton(parent), m_color(Qt::transparent) {
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::clicked, this, &ColorWell::openDialog);
}

void ColorWell::display(const CodableColor& color) {
    const QColor shown = PanelColors::toQColor(color);
    if (shown == m_color)
        return;
    m_color = shown;
    update();
}

void ColorWell::setColor(const QColor& color) {
    m_color = color.toRgb();
    update();
    Q_EMIT colorPicked(m_color);
}

CodableColor ColorWell::toCodable(const QColor& color) {
    const QColor srgb = color.toRgb();
    return {srgb.redF(), srgb.greenF(), srgb.blueF(), srgb.alphaF()};
}

QSize ColorWell::sizeHint() const {
    return {44, 22};
}

QSize ColorWell::minimumSizeHint() const {
    return sizeHint();
}

// The dialog is window-modal and returns at once; the pick arrives when the user accepts it.
void ColorWell::openDialog() {
    auto* dialog = new QColorDialog(m_color, this);
    dialog->setOption(QColorDialog::ShowAlphaChannel);
    dialog->setWindowTitle(accessibleName());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QColorDialog::colorSelected, this, &ColorWell::setColor);
    dialog->open();
}

void ColorWell::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QPainterPath shape;
    shape.addRoundedRect(frame, kCornerRadius, kCornerRadius);
    painter.save();
    painter.setClipPath(shape);
    paintCheckerboard(painter, rect());
    painter.fillRect(rect(), m_color);
    painter.restore();
    const QPalette::ColorRole border = hasFocus() ? QPalette::Highlight : QPalette::Mid;
    painter.setPen(QPen(palette().color(border), 1));
    painter.drawPath(shape);
}

} // namespace corkwheel
