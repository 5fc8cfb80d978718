// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QRegion>
#include <QWidget>

namespace corkwheel {

// The accent-coloured line just inside a panel's rounded outline that marks it as
// editable. Lets the mouse through to what lies beneath.
class PanelOutline : public QWidget {
    Q_OBJECT

public:
    explicit PanelOutline(QWidget* parent = nullptr);

    void setCornerRadius(double radius);

    static constexpr double kLineWidth = 2;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRegion band() const;

    double m_cornerRadius = 0;
};

} // namespace corkwheel
