// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/PanelContentView.h"

#include "engine/PanelRunner.h"
#include "engine/WebPage.h"
#include "render/DevicePixelRatio.h"
#include "render/PanelBackground.h"
#include "render/PanelShapes.h"
#include "render/StatisticsBody.h"
#include "render/TextBody.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace corkwheel {

namespace {

double clampedOpacity(double opacity) {
    return std::isfinite(opacity) ? std::clamp(opacity, 0.0, 1.0) : 1.0;
}

QString summaryHelp() {
    return PanelContentView::tr("Resize the panel to see all disks");
}

// A panel that only moved looks the same: the window system moves the window's pixels
// along, so a drag among hundreds of panels repaints none of them.
bool looksTheSame(const Panel& a, const Panel& b) {
    Panel moved = b;
    moved.frame.x = a.frame.x;
    moved.frame.y = a.frame.y;
    return moved == a;
}

bool hasShadowedBody(PanelType type) {
    return type != PanelType::Image && type != PanelType::Webpage;
}

} // namespace

PanelContentView::PanelContentView(PanelRunner& runner, QWidget* parent)
    : QWidget(parent), m_runner(runner), m_panel(runner.panel()), m_webBody(runner, this) {
    const auto redraw = [this] { redrawAll(); };
    connect(&runner, &PanelRunner::textOutputChanged, this, &PanelContentView::redrawIfTextChanged);
    connect(&runner, &PanelRunner::isRunningChanged, this, &PanelContentView::redrawIfTextChanged);
    connect(&runner, &PanelRunner::imageChanged, this, redraw);
    connect(&runner, &PanelRunner::statsChanged, this, &PanelContentView::bodyChanged);
    connect(&runner, &PanelRunner::networkHistoryChanged, this, &PanelContentView::bodyChanged);
    connect(&runner, &PanelRunner::webPageCreated, this, [this] { syncWebView(); });
}

void PanelContentView::setPanel(const Panel& panel) {
    const bool same = looksTheSame(m_panel, panel);
    m_panel = panel;
    m_requestedText = displayedStyledText();
    syncWebView();
    if (same)
        return;
    m_bodyOutdated = true;
    if (!hasShadowedBody(panel.type))
        m_bodyLayer.clear();
    redrawAll();
}

// Most refreshes of a shell or file panel bring the text it already shows, and each run
// of a command flips the running state twice; neither needs the panel drawn again.
void PanelContentView::redrawIfTextChanged() {
    StyledText text = displayedStyledText();
    if (text == m_requestedText)
        return;
    m_requestedText = std::move(text);
    bodyChanged();
}

// A refresh of the statistics brings two readings, one after the other: the body is drawn
// again once, after both.
void PanelContentView::bodyChanged() {
    if (!hasShadowedBody(m_panel.type)) {
        redrawAll();
        return;
    }
    m_bodyOutdated = true;
    if (m_bodyRedrawQueued)
        return;
    m_bodyRedrawQueued = true;
    QMetaObject::invokeMethod(this, &PanelContentView::redrawChangedBody, Qt::QueuedConnection);
}

// Drawn again ahead of the paint, the body tells what changed, and only that is repainted
// and handed to the window system: a clock's tick is a few digits, not the whole panel.
void PanelContentView::redrawChangedBody() {
    m_bodyRedrawQueued = false;
    if (!m_bodyOutdated)
        return;
    const double ratio = devicePixelRatioF();
    if (!isVisible() || paintedOpacity() <= 0 ||
        !m_bodyLayer.holds(size(), ratio, m_panel.style.showShadow)) {
        // Drawn in full by the next paint, if any.
        redrawAll();
        return;
    }
    const QRegion changed = redrawBody(ratio);
    if (!changed.isEmpty())
        redraw(changed);
}

void PanelContentView::redraw(const QRegion& area) {
    update(area);
    Q_EMIT changed(area);
}

void PanelContentView::redrawAll() {
    redraw(rect());
}

QRegion PanelContentView::redrawBody(double ratio) {
    m_bodyOutdated = false;
    return m_bodyLayer.redraw(size(), ratio, m_panel.style.showShadow,
                              [this](QPainter& painter) { drawBody(painter); });
}

const Panel& PanelContentView::panel() const {
    return m_panel;
}

QString PanelContentView::displayedText() const {
    return TextBody::displayedText(m_panel.type, m_runner.textOutput(), m_runner.isRunning());
}

StyledText PanelContentView::displayedStyledText() const {
    const StyledText& output = m_runner.styledTextOutput();
    if (output.text.isEmpty())
        return StyledText{displayedText(), {}};
    return output;
}

StatsLayout PanelContentView::statsLayout() const {
    return StatsLayout::build(m_runner.stats(), m_panel.style, m_panel.systemStats, size(),
                              m_measuredRowHeight, m_measuredNetworkHeight);
}

void PanelContentView::setWebViewFactory(WebBody::ViewFactory factory) {
    m_webBody.setViewFactory(std::move(factory));
    syncWebView();
}

QWidget* PanelContentView::webView() const {
    return m_webBody.view();
}

QString PanelContentView::toolTipAt(const QPoint& position) const {
    if (m_panel.type != PanelType::SystemStats)
        return {};
    const StatsLayout layout = statsLayout();
    return !layout.summary.isEmpty() && layout.summaryRect.contains(position) ? summaryHelp()
                                                                              : QString();
}

bool PanelContentView::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const QString text = toolTipAt(help->pos());
    if (text.isEmpty()) {
        QToolTip::hideText();
        event->ignore();
    } else {
        QToolTip::showText(help->globalPos(), text, this, statsLayout().summaryRect.toRect());
    }
    return true;
}

void PanelContentView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_bodyOutdated = true;
    syncWebView();
    Q_EMIT changed(rect());
}

void PanelContentView::setFadesWindow(bool fades) {
    m_fadesWindow = fades;
    syncWebView();
}

bool PanelContentView::windowCarriesOpacity() const {
    return m_fadesWindow && m_webBody.showsPage();
}

double PanelContentView::paintedOpacity() const {
    return windowCarriesOpacity() ? 1.0 : clampedOpacity(m_panel.style.opacity);
}

void PanelContentView::syncWebView() {
    m_webBody.sync(m_panel, rect());
    if (m_fadesWindow)
        window()->setWindowOpacity(windowCarriesOpacity() ? clampedOpacity(m_panel.style.opacity)
                                                          : 1.0);
}

void PanelContentView::paintEvent(QPaintEvent*) {
    const double opacity = paintedOpacity();
    if (opacity <= 0 || width() <= 0 || height() <= 0)
        return;
    QPainter painter(this);
    if (opacity >= 1) {
        paintContent(painter);
        return;
    }
    // The panel fades as one piece: its layers are composed first, then drawn at the
    // opacity, so the background doesn't show through the text.
    const double ratio = paintRatio(painter);
    QImage layer(size() * ratio, QImage::Format_ARGB32_Premultiplied);
    layer.setDevicePixelRatio(ratio);
    layer.fill(Qt::transparent);
    {
        QPainter layerPainter(&layer);
        paintContent(layerPainter);
    }
    painter.setOpacity(opacity);
    painter.drawImage(QPointF(), layer);
}

void PanelContentView::paintContent(QPainter& painter) {
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                           QPainter::SmoothPixmapTransform);
    const QRectF bounds(rect());
    PanelBackground::paint(painter, bounds, m_panel.style);
    paintBody(painter, bounds);
}

void PanelContentView::paintBody(QPainter& painter, const QRectF& rect) {
    switch (m_panel.type) {
    case PanelType::Shell:
    case PanelType::File:
    case PanelType::Text:
    case PanelType::Clock:
    case PanelType::SystemStats:
        paintShadowedBody(painter);
        break;
    case PanelType::Image:
        m_imageBody.paint(painter, rect, m_runner.image(), m_panel.style);
        break;
    case PanelType::Webpage:
        paintWeb(painter, rect);
        break;
    }
}

void PanelContentView::paintShadowedBody(QPainter& painter) {
    const double ratio = paintRatio(painter);
    if (m_bodyOutdated || !m_bodyLayer.holds(size(), ratio, m_panel.style.showShadow))
        redrawBody(ratio);
    m_bodyLayer.paint(painter, QPointF());
}

// The text or the statistics, without the shadow, which the layer adds.
void PanelContentView::drawBody(QPainter& painter) {
    const QRectF bounds(rect());
    if (m_panel.type != PanelType::SystemStats) {
        const StyledText text = displayedStyledText();
        TextBody::paint(painter, bounds, text.text, m_panel.style, text.runs);
        return;
    }
    const StatsLayout layout = statsLayout();
    StatisticsBody::paint(painter, bounds, layout, m_runner.networkHistory(), m_panel.style);
    remember(layout);
}

// The first layout assumes a row and the graph to be 30 and 50 points high; once laid
// out, their real heights decide how many disks fit, in a second pass.
void PanelContentView::remember(const StatsLayout& layout) {
    if (layout.rowHeight == m_measuredRowHeight && layout.networkHeight == m_measuredNetworkHeight)
        return;
    m_measuredRowHeight = layout.rowHeight;
    m_measuredNetworkHeight = layout.networkHeight;
    m_bodyOutdated = true;
    redrawAll();
}

// The page; or why there is none, as the runner says; or, without an address, the
// placeholder.
void PanelContentView::paintWeb(QPainter& painter, const QRectF& rect) {
    if (m_webBody.showsPage())
        return;
    if (!m_panel.webpageURL.isEmpty() && !m_runner.textOutput().isEmpty()) {
        TextBody::paint(painter, rect, m_runner.textOutput(), m_panel.style);
        return;
    }
    painter.save();
    painter.setClipPath(PanelShapes::rounded(rect, m_panel.style.cornerRadius), Qt::IntersectClip);
    WebBody::paintPlaceholder(painter, rect);
    painter.restore();
}

} // namespace corkwheel
