// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/WebPage.h"

#include <QTimer>

class QWebEnginePage;

namespace corkwheel {

// A webpage panel's page on Qt WebEngine.
class WebEnginePageAdapter : public WebPage {
    Q_OBJECT

public:
    explicit WebEnginePageAdapter(QObject* parent = nullptr);

    void load(const QUrl& url, std::chrono::seconds timeout) override;

    QWebEnginePage* page() const { return m_page; }

private:
    QWebEnginePage* m_page;
    // WebEngine has no time-out of its own: a load still going at the limit is stopped.
    QTimer m_timeout;
};

} // namespace corkwheel
