// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/WebEngineBackend.h"

#include <QObject>

namespace corkwheel {

// The plugin that brings the web engine into the process when a webpage panel needs it.
class WebEnginePlugin : public QObject, public WebEngineBackend {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID CorkwheelWebEngineBackend_iid)
    Q_INTERFACES(corkwheel::WebEngineBackend)

public:
    WebPage* createPage(QObject* parent) override;
    QWidget* createView(WebPage* page, QWidget* parent) override;
};

} // namespace corkwheel
