// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/StatsWarning.h"

#include <QWidget>

namespace corkwheel {

class ColorWell;
class MiniSwitch;
class StepperLabel;

// The controls of one row's warning in a form: a switch that turns it on, a stepper for its
// threshold and a well for its colour. Its children are named after `name`: `name`Switch,
// `name`Stepper, `name`ColorWell; a screen reader calls them after `title`, the row's label
// ("Warn on CPU", "CPU warning threshold", "CPU warning color").
class WarningRow : public QWidget {
    Q_OBJECT

public:
    // The stepper shows the threshold through `format` ("above %1%") within `minimum` and
    // `maximum`, in steps of `step`.
    WarningRow(const QString& name, const QString& title, const QString& format, double minimum,
               double maximum, double step, QWidget* parent = nullptr);

    // Shows `warning` without announcing it: it comes from the stored panel.
    void display(const StatsWarning& warning);

    MiniSwitch* onSwitch() const { return m_switch; }
    StepperLabel* stepper() const { return m_stepper; }
    ColorWell* colorWell() const { return m_colorWell; }

Q_SIGNALS:
    // The user changed the warning to `warning`.
    void edited(const corkwheel::StatsWarning& warning);

private:
    StatsWarning m_shown;
    MiniSwitch* m_switch;
    StepperLabel* m_stepper;
    ColorWell* m_colorWell;
};

} // namespace corkwheel
