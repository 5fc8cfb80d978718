// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QUrl>

#include <chrono>

namespace corkwheel {

// The web page of a webpage panel. The web engine is large, so it lives behind this
// interface and is loaded only when the first webpage panel needs a page.
//
// Deliberately without Q_OBJECT: the plugin implements it from this header alone.
class WebPage : public QObject {
public:
    using QObject::QObject;

    // Loads `url` again, even when it is the page already shown.
    virtual void load(const QUrl& url, std::chrono::seconds timeout) = 0;
};

} // namespace corkwheel
