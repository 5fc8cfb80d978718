// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/WebBody.h"

#include "engine/PanelRunner.h"
#include "engine/WebEngineBackend.h"
#include "engine/WebEngineLoader.h"
#include "engine/WebPage.h"
#include "model/PanelType.h"
#include "render/PanelColors.h"
#include "render/PanelFonts.h"
#include "render/PanelShapes.h"
#include "render/Symbols.h"

#include <QCoreApplication>
#include <QFontMetricsF>
#include <QPainter>
#include <QRegion>

namespace corkwheel {

namespace {

// A web view of `page`, a page the loaded web engine made; none without the engine.
QWidget* engineView(WebPage* page, QWidget* parent) {
    WebEngineBackend* engine = WebEngineLoader::backend();
    return engine ? engine->createView(page, parent) : nullptr;
}

} // namespace

WebBody::WebBody(PanelRunner& runner, QWidget* host)
    : m_runner(runner), m_host(host), m_factory(&engineView) {}

void WebBody::setViewFactory(ViewFactory factory) {
    m_factory = std::move(factory);
}

bool WebBody::wantsPage(const Panel& panel) const {
    return panel.type == PanelType::Webpage && !panel.webpageURL.isEmpty() &&
           m_runner.webPage() != nullptr && panel.style.opacity > 0;
}

void WebBody::sync(const Panel& panel, const QRect& rect) {
    const bool wanted = wantsPage(panel);
    if (wanted && !m_view)
        createView();
    if (!m_view)
        return;
    m_view->setGeometry(rect);
    const QPainterPath shape =
        PanelShapes::rounded(QRectF(QPointF(), rect.size()), panel.style.cornerRadius);
    m_view->setMask(QRegion(shape.toFillPolygon().toPolygon()));
    m_view->setVisible(wanted);
}

bool WebBody::showsPage() const {
    return m_view && !m_view->isHidden();
}

void WebBody::createView() {
    WebPage* page = m_runner.webPage();
    if (!page || !m_factory)
        return;
    m_view = m_factory(page, m_host);
    if (!m_view)
        return;
    // A view must not outlive the page it shows.
    QObject::connect(page, &QObject::destroyed, m_view, &QObject::deleteLater);
}

void WebBody::paintPlaceholder(QPainter& painter, const QRectF& rect) {
    const QColor color = PanelColors::placeholder();
    const QFont font = PanelFonts::caption();
    const QFontMetricsF metrics(font);
    const double height = kSymbolSize + kSpacing + metrics.height();
    const double top = rect.center().y() - height / 2;
    Symbols::paint(painter,
                   QRectF(rect.center().x() - kSymbolSize / 2, top, kSymbolSize, kSymbolSize),
                   symbolName(PanelType::Webpage), color);
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(
        QRectF(rect.left(), top + kSymbolSize + kSpacing, rect.width(), metrics.height()),
        Qt::AlignHCenter | Qt::AlignTop,
        QCoreApplication::translate("corkwheel::WebBody", "No URL set"));
}

} // namespace corkwheel
