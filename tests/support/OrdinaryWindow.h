// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/ScreenPanels.h"

#include <QList>
#include <QMouseEvent>
#include <QPalette>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>
#include <QWidget>

namespace corkwheel::test {

inline const QString kOrdinaryTitle = QStringLiteral("E2E Ordinary");

// An application's window, filled with kWindowColor, that keeps where on the screen each
// press it receives was made.
class OrdinaryWindow : public QWidget {
public:
    // Shown at `geometry`, on window managers that leave the place to the application.
    OrdinaryWindow(const QString& title, const QRect& geometry) {
        fill(title);
        setGeometry(geometry);
        show();
    }

    // Shown at `fixedSize` where the window manager places it; maximised without a size,
    // which a tiling compositor gives any window it tiles alone.
    explicit OrdinaryWindow(QSize fixedSize = {}) {
        fill(kOrdinaryTitle);
        if (fixedSize.isValid()) {
            setFixedSize(fixedSize);
            show();
        } else {
            showMaximized();
        }
    }

    QList<QPoint> presses;

protected:
    void mousePressEvent(QMouseEvent* event) override {
        presses.append(event->globalPosition().toPoint());
    }

private:
    void fill(const QString& title) {
        setWindowTitle(title);
        setAutoFillBackground(true);
        QPalette filled = palette();
        filled.setColor(QPalette::Window, kWindowColor);
        setPalette(filled);
    }
};

} // namespace corkwheel::test
