// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QWidget>

class QKeyEvent;
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
// step the number by `step` within `minimum`...`maximum`. It is one stop of the keyboard,
// where the Up and Down arrows step the number (Page Up and Page Down ten steps at a time),
// and a spin control to a screen reader, named `name` (what the number is: "Refresh
// interval"); the buttons are for the mouse.
class StepperLabel : public QWidget {
    Q_OBJECT

public:
    StepperLabel(const QString& name, const QString& format, double minimum, double maximum,
                 double step, QWidget* parent = nullptr);

    // Shows `value` without announcing it: the value comes from the stored panel.
    void setValue(double value);
    double value() const { return m_value; }
    double minimum() const { return m_minimum; }
    double maximum() const { return m_maximum; }
    double step() const { return m_step; }
    QString text() const;

    // Takes `value` as the user's, brought into the range: shows and announces it, unless
    // it is the value shown already.
    void editValue(double value);

    static constexpr int kPageSteps = 10;

Q_SIGNALS:
    // The user stepped to `value`.
    void valueEdited(double value);

protected:
    void keyPressEvent(QKeyEvent* event) override;

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
