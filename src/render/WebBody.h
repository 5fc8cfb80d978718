// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/Panel.h"

#include <QPointer>
#include <QRect>
#include <QRectF>
#include <QWidget>

#include <functional>

class QPainter;

namespace corkwheel {

class PanelRunner;
class WebPage;

// A webpage panel's page, in a web view laid over the panel and clipped to its rounded
// shape; while there is no page to show, a placeholder saying so. The web view is made
// only for a webpage panel whose runner has a page, so no other panel ever starts the web
// engine.
class WebBody {
public:
    using ViewFactory = std::function<QWidget*(WebPage* page, QWidget* parent)>;

    WebBody(PanelRunner& runner, QWidget* host);

    // Where web views come from; the web engine plugin unless replaced.
    void setViewFactory(ViewFactory factory);

    // Brings the web view in line with `panel`: shown over `rect` of the host when the
    // panel has an address and the runner a page (made the first time), hidden otherwise.
    void sync(const Panel& panel, const QRect& rect);

    // Whether the web view shows the page, so the placeholder is not drawn.
    bool showsPage() const;
    QWidget* view() const { return m_view; }

    bool wantsPage(const Panel& panel) const;

    // The "safari" symbol over "No URL set", dimmed and centred in `rect`.
    static void paintPlaceholder(QPainter& painter, const QRectF& rect);

    static constexpr double kSymbolSize = 28;
    static constexpr double kSpacing = 8;

private:
    void createView();

    PanelRunner& m_runner;
    QWidget* m_host;
    ViewFactory m_factory;
    QPointer<QWidget> m_view;
};

} // namespace corkwheel
