// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QLabel>

namespace corkwheel {

// A one-line plain-text label that cuts its text with "…" to the width it is given, instead
// of asking its layout for room. text() stays the whole text.
class ElidedLabel : public QLabel {
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    // The text as drawn at the label's current width.
    QString shownText() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int lineHeight() const;
};

} // namespace corkwheel
