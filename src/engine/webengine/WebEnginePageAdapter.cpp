// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/webengine/WebEnginePageAdapter.h"

#include "engine/webengine/PanelWebEnginePage.h"
#include "engine/webengine/PanelWebProfile.h"

namespace corkwheel {

WebEnginePageAdapter::WebEnginePageAdapter(QObject* parent)
    : WebPage(parent), m_page(new PanelWebEnginePage(PanelWebProfile::shared(), this)) {
    m_timeout.setSingleShot(true);
    connect(&m_timeout, &QTimer::timeout, m_page,
            [this] { m_page->triggerAction(QWebEnginePage::Stop); });
    connect(m_page, &QWebEnginePage::loadFinished, &m_timeout, &QTimer::stop);
}

void WebEnginePageAdapter::load(const QUrl& url, std::chrono::seconds timeout) {
    m_page->load(url);
    m_timeout.start(timeout);
}

} // namespace corkwheel
