// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Shared by the end-to-end tests: panels and windows filled with one colour each, so the
// screen's pixels tell at a glance which one is seen where.

#include "support/PanelFixtures.h"

#include "model/Panel.h"

#include <QColor>
#include <QFile>
#include <QPoint>
#include <QRect>
#include <QRectF>
#include <QTemporaryDir>
#include <QUrl>

#include <cstdlib>

namespace corkwheel::test {

// Panels are filled with this.
inline constexpr QColor kPanelColor(204, 26, 26);
// And ordinary windows with this.
inline constexpr QColor kWindowColor(40, 90, 220);

inline bool isColor(const QColor& seen, const QColor& expected) {
    constexpr int kTolerance = 12;
    return std::abs(seen.red() - expected.red()) <= kTolerance &&
           std::abs(seen.green() - expected.green()) <= kTolerance &&
           std::abs(seen.blue() - expected.blue()) <= kTolerance;
}

// A text panel filled with kPanelColor, without a shadow.
inline Panel filledPanel(const QString& name, const PanelFrame& frame, bool enabled = true) {
    Panel panel = textPanel(name, frame, enabled);
    panel.style.backgroundColor = {kPanelColor.redF(), kPanelColor.greenF(), kPanelColor.blueF(),
                                   1};
    panel.style.showShadow = false;
    return panel;
}

inline QRect rectOf(const PanelFrame& frame) {
    return QRectF(frame.x, frame.y, frame.width, frame.height).toRect();
}

// Inside the panel, away from its text, which starts at the top-left corner, and from the
// resize handle that edit mode adds at the bottom-right one.
inline QPoint sampleOf(const QRect& panel) {
    return {panel.left() + panel.width() * 3 / 4, panel.bottom() - 8};
}

// A web page that is all white, in a folder of its own for as long as it lives.
class WhitePage {
public:
    WhitePage() {
        QFile page(path());
        if (page.open(QIODevice::WriteOnly))
            page.write("<html><body style='background:#ffffff'></body></html>");
    }

    bool isValid() const { return QFile::exists(path()); }

    // A webpage panel at `frame` showing this page, without a shadow.
    Panel panel(const PanelFrame& frame) const {
        Panel panel = Panel::makeDefault(PanelType::Webpage);
        panel.frame = frame;
        panel.webpageURL = QUrl::fromLocalFile(path()).toString();
        panel.style.showShadow = false;
        return panel;
    }

private:
    QString path() const { return m_folder.filePath(QStringLiteral("white.html")); }

    QTemporaryDir m_folder;
};

} // namespace corkwheel::test
