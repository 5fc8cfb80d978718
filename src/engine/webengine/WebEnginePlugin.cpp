// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/webengine/WebEnginePlugin.h"

#include "engine/webengine/WebEnginePageAdapter.h"

#include <QWebEngineView>

namespace corkwheel {

WebPage* WebEnginePlugin::createPage(QObject* parent) {
    return new WebEnginePageAdapter(parent);
}

QWidget* WebEnginePlugin::createView(WebPage* page, QWidget* parent) {
    auto* adapter = qobject_cast<WebEnginePageAdapter*>(static_cast<QObject*>(page));
    if (!adapter)
        return nullptr;
    auto* view = new QWebEngineView(parent);
    view->setPage(adapter->page());
    return view;
}

} // namespace corkwheel
