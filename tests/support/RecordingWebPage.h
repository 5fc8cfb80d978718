// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/WebPage.h"

#include <QList>
#include <QUrl>

namespace corkwheel::test {

// Records the addresses it was asked to load instead of starting a web engine.
class RecordingWebPage final : public corkwheel::WebPage {
public:
    using WebPage::WebPage;
    void load(const QUrl& url, std::chrono::seconds timeout) override {
        loads.append(url);
        lastTimeout = timeout;
    }

    QList<QUrl> loads;
    std::chrono::seconds lastTimeout{0};
};

} // namespace corkwheel::test
