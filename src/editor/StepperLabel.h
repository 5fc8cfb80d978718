// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QWidget>

class QLabel;
class QToolButton;

namespace corkwheel {

// The whole number a stepper label shows for `value`: truncated toward zero. A value with
// no such number (not finite, or beyond the signed 64-bit range) can only come from a
// broken record, and stops the program rather than showing a made-up figure.
qint64 checkedWholeNumber(double value);

// `format` with its "%1" replaced by the checked whole number of `value`.
QString stepperLabelText(const QString& format, double value);

// A row of the form: a label that shows a number through `format`, and − and + buttons that
// step the number by `step` within `minimum`...`maximum`.
class StepperLabel : public QWidget {
    Q_OBJECT

public:
    StepperLabel(const QString& format, double minimum, double maximum, double step,
                 QWidget* parent = nullptr);

    // Shows `value` without announcing it: the value comes from the stored panel.
    void setValue(double value);
    double value() const { return m_value; }
    QString text() const;

Q_SIGNALS:
    // The user stepped to `value`.
    void valueEdited(double value);

private:
    void stepBy(double delta);
    void updateButtons();

    QString m_format;
    double m_minimum;
    double m_maximum;
    double m_step;
    double m_value;
    QLabel* m_label;
    QToolButton* m_decrement;
    QToolButton* m_increment;
};

} // namespace corkwheel
