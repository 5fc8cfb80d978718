// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/ColorWell.h"

#include "editor/ReturnClicks.h"
#include "render/PanelColors.h"
#include "render/Theme.h"

#include <QColorDialog>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace corkwheel {

namespace {

constexpr double kCornerRadius = 4;
constexpr int kCheckerSize = 5;
constexpr double kFocusRingWidth = 2;

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
    ReturnClicks::install(this);
    describeColor();
}

void ColorWell::display(const CodableColor& color) {
    const QColor shown = PanelColors::toQColor(color);
    if (shown == m_color)
        return;
    m_color = shown;
    describeColor();
    update();
}

void ColorWell::setColor(const QColor& color) {
    m_color = color.toRgb();
    describeColor();
    update();
    Q_EMIT colorPicked(m_color);
}

// The swatch says nothing to a screen reader; its description reads the colour out.
void ColorWell::describeColor() {
    const auto opacity = static_cast<int>(std::lround(m_color.alphaF() * 100));
    //: How a screen reader describes a colour well: the colour's hex code and its opacity.
    setAccessibleDescription(
        tr("%1, %2% opaque").arg(m_color.name(QColor::HexRgb).toUpper()).arg(opacity));
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
    painter.setPen(QPen(palette().color(QPalette::Mid), 1));
    painter.drawPath(shape);
    if (hasFocus()) {
        // Inside the frame, in the accent colour of the other controls' rings: the well has
        // no margin to draw one around it, and a swatch of the highlight colour would hide
        // a ring of that colour.
        const double inset = kFocusRingWidth / 2;
        painter.setPen(QPen(Theme::accent(), kFocusRingWidth));
        painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset),
                                kCornerRadius, kCornerRadius);
    }
}

} // namespace corkwheel
