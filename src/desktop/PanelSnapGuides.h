// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QLineF>
#include <QList>
#include <QWidget>

namespace corkwheel {

// Thin accent-coloured lines over a panel where a drag has lined it up with another panel
// or with the screen. Lets the mouse through to what lies beneath.
class PanelSnapGuides : public QWidget {
    Q_OBJECT

public:
    explicit PanelSnapGuides(QWidget* parent = nullptr);

    // In this widget's coordinates; a line along an edge is drawn just inside it.
    void setGuides(const QList<QLineF>& guides);
    const QList<QLineF>& guides() const { return m_guides; }

    static constexpr double kLineWidth = 1;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QLineF inside(const QLineF& guide) const;

    QList<QLineF> m_guides;
};

} // namespace corkwheel
