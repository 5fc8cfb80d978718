// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QColor>
#include <QString>
#include <QWidget>

namespace corkwheel {

// One symbol, drawn in a colour of the caller's choosing and centred in a fixed square box.
class SymbolBox : public QWidget {
    Q_OBJECT

public:
    explicit SymbolBox(double boxSize, double symbolSize, QWidget* parent = nullptr);

    void setSymbol(const QString& name, const QColor& color);
    QString symbolName() const { return m_name; }
    QColor color() const { return m_color; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double m_symbolSize;
    QString m_name;
    QColor m_color;
};

} // namespace corkwheel
