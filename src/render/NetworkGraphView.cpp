// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/NetworkGraphView.h"

#include "render/MonospacedDigits.h"
#include "render/PanelColors.h"
#include "render/PanelFonts.h"
#include "render/ShapedText.h"
#include "render/Symbols.h"

#include <QFontMetricsF>
#include <QPainter>

#include <QCoreApplication>
#include <algorithm>
#include <cmath>
#include <utility>

namespace corkwheel {

namespace {

// Between a label's symbol and its text.
constexpr double kLabelSpacing = 6;

QList<double> valuesOf(const QList<NetworkSample>& history, double NetworkSample::*rate) {
    QList<double> values;
    values.reserve(history.size());
    for (const NetworkSample& sample : history)
        values.append(sample.*rate);
    return values;
}

QString symbolFor(NetworkInterfaceKind kind) {
    switch (kind) {
    case NetworkInterfaceKind::Wifi:
        return QStringLiteral("wifi");
    case NetworkInterfaceKind::Ethernet:
        return QStringLiteral("cable.connector");
    case NetworkInterfaceKind::Other:
        break;
    }
    return QStringLiteral("network");
}

} // namespace

NetworkGraphView::NetworkGraphView(QList<NetworkSample> history, QColor tint)
    : m_history(std::move(history)), m_tint(tint) {}

QString NetworkGraphView::rate(double bytesPerSecond) {
    const double bits = bytesPerSecond * 8;
    if (bits >= 1'000'000)
        return QCoreApplication::translate("corkwheel::NetworkGraphView", "%1 Mbps")
            .arg(QString::asprintf("%.1f", bits / 1'000'000));
    if (bits >= 1'000)
        return QCoreApplication::translate("corkwheel::NetworkGraphView", "%1 Kbps")
            .arg(QString::asprintf("%.0f", bits / 1'000));
    return QCoreApplication::translate("corkwheel::NetworkGraphView", "%1 bps")
        .arg(QString::asprintf("%.0f", bits));
}

double NetworkGraphView::maxValue(const QList<NetworkSample>& history) {
    double largest = kMinimumScale;
    for (const NetworkSample& sample : history)
        largest = std::max({largest, sample.downBytesPerSec, sample.upBytesPerSec});
    return largest;
}

QPainterPath NetworkGraphView::path(const QList<double>& values, const QSizeF& size,
                                    double maxValue) {
    QPainterPath line;
    if (values.isEmpty())
        return line;
    const double divisor = static_cast<double>(std::max<qsizetype>(values.size(), 2) - 1);
    for (qsizetype i = 0; i < values.size(); ++i) {
        const QPointF point(size.width() * static_cast<double>(i) / divisor,
                            size.height() * (1 - values[i] / maxValue));
        if (i == 0)
            line.moveTo(point);
        else
            line.lineTo(point);
    }
    return line;
}

QString NetworkGraphView::title() const {
    return m_history.isEmpty()
               ? QCoreApplication::translate("corkwheel::NetworkStatsSampler", "No Network")
               : m_history.last().displayName;
}

QString NetworkGraphView::symbolName() const {
    return m_history.isEmpty() ? QStringLiteral("network") : symbolFor(m_history.last().kind);
}

QString NetworkGraphView::ratesText() const {
    const NetworkSample current = m_history.isEmpty() ? NetworkSample{} : m_history.last();
    return rate(current.downBytesPerSec) + QStringLiteral(" ↓  ") + rate(current.upBytesPerSec) +
           QStringLiteral(" ↑");
}

double NetworkGraphView::headerHeight(const QFont& font) {
    // Whole points keep the canvas on the pixel grid, so its lines stay crisp.
    return std::ceil(std::max(QFontMetricsF(font).height(), PanelFonts::sizeOf(font)));
}

double NetworkGraphView::height(const QFont& font) {
    return headerHeight(font) + kSpacing + kCanvasHeight;
}

QRectF NetworkGraphView::canvasRect(const QRectF& rect, const QFont& font) {
    return QRectF(rect.left(), rect.top() + headerHeight(font) + kSpacing, rect.width(),
                  kCanvasHeight);
}

void NetworkGraphView::paint(QPainter& painter, const QRectF& rect, const QFont& font,
                             const QColor& textColor) const {
    paintHeader(painter, QRectF(rect.topLeft(), QSizeF(rect.width(), headerHeight(font))), font,
                textColor);
    paintGraph(painter, canvasRect(rect, font));
}

void NetworkGraphView::paintHeader(QPainter& painter, const QRectF& rect, const QFont& font,
                                   const QColor& textColor) const {
    const QFontMetricsF metrics(font);
    const double symbolSize = PanelFonts::sizeOf(font);
    const QString rates = ratesText();
    const double ratesWidth = MonospacedDigits::width(font, rates);
    const double baseline = rect.center().y() - metrics.height() / 2 + metrics.ascent();

    Symbols::paint(painter,
                   QRectF(rect.left(), rect.center().y() - symbolSize / 2, symbolSize, symbolSize),
                   symbolName(), textColor);
    const double titleLeft = rect.left() + symbolSize + kLabelSpacing;
    const double titleWidth = std::max(0.0, rect.right() - ratesWidth - kLabelSpacing - titleLeft);
    painter.setFont(font);
    painter.setPen(textColor);
    ShapedText::drawElided(painter, QPointF(titleLeft, baseline), title(), titleWidth);
    painter.setPen(PanelColors::withOpacity(textColor, kRatesOpacity));
    MonospacedDigits::draw(painter, QPointF(rect.right() - ratesWidth, baseline), rates);
}

void NetworkGraphView::paintGraph(QPainter& painter, const QRectF& canvas) const {
    if (m_history.isEmpty() || canvas.isEmpty())
        return;
    const double scale = maxValue(m_history);
    painter.save();
    painter.translate(canvas.topLeft());
    painter.setBrush(Qt::NoBrush);
    QPen pen(PanelColors::withOpacity(m_tint, kUploadOpacity), kLineWidth);
    pen.setCapStyle(Qt::FlatCap);
    pen.setJoinStyle(Qt::MiterJoin);
    painter.setPen(pen);
    painter.drawPath(
        path(valuesOf(m_history, &NetworkSample::upBytesPerSec), canvas.size(), scale));
    pen.setColor(m_tint);
    painter.setPen(pen);
    painter.drawPath(
        path(valuesOf(m_history, &NetworkSample::downBytesPerSec), canvas.size(), scale));
    painter.restore();
}

} // namespace corkwheel
