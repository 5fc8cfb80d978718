// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QWidget>

namespace corkwheel {

// The ring that shows which control has the keyboard, for a control made of other widgets
// (a label and buttons), which would paint over a ring the control drew itself. It lies on
// top of the control, lets the mouse through, and is shown only while the control has the
// focus.
class FocusRing : public QWidget {
    Q_OBJECT

public:
    explicit FocusRing(QWidget* control);

    static constexpr double kWidth = 1.5;
    static constexpr double kRadius = 4;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QWidget* m_control;
};

} // namespace corkwheel
