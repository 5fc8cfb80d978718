// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtPlugin>

class QObject;
class QWidget;

namespace corkwheel {

class WebPage;

// What the web engine plugin offers. The plugin alone links the web engine, so a
// Corkwheel without webpage panels never loads it.
class WebEngineBackend {
public:
    virtual ~WebEngineBackend() = default;

    virtual WebPage* createPage(QObject* parent) = 0;
    // A web view showing `page`, a page this backend made; null for any other page.
    virtual QWidget* createView(WebPage* page, QWidget* parent) = 0;
};

} // namespace corkwheel

#define CorkwheelWebEngineBackend_iid "org.corkwheel.WebEngineBackend/2"
Q_DECLARE_INTERFACE(corkwheel::WebEngineBackend, CorkwheelWebEngineBackend_iid)
