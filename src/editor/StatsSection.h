// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "editor/InspectorSection.h"
#include "model/StatsWarnings.h"

#include <QList>

class QCheckBox;
class QFormLayout;

namespace corkwheel {

class MiniSwitch;
class WarningRow;

// A system-stats panel's optional rows, each with a switch, in the order the panel shows
// them, and the warning of each figure row: a switch, a threshold and a colour.
class StatsSection : public InspectorSection {
    Q_OBJECT

public:
    explicit StatsSection(QWidget* parent = nullptr);

    void showPanel(const Panel& panel) override;

    // What the stepper of a share's threshold offers, in percent, and of a temperature's, in
    // degrees Celsius.
    static constexpr double kLowestShare = 5;
    static constexpr double kHighestShare = 95;
    static constexpr double kShareStep = 5;
    static constexpr double kLowestTemperature = 40;
    static constexpr double kHighestTemperature = 110;
    static constexpr double kTemperatureStep = 5;

private:
    void addRowSwitch(const QString& label, const QString& name, bool StatsRows::*row);
    void addWarningRow(const QString& label, const QString& name,
                       StatsWarning StatsWarnings::*warning, const QString& format, double minimum,
                       double maximum, double step);

    QFormLayout* m_form;
    QList<std::pair<MiniSwitch*, bool StatsRows::*>> m_rowSwitches;
    QList<std::pair<WarningRow*, StatsWarning StatsWarnings::*>> m_warningRows;
    QCheckBox* m_sensorMaxToggle = nullptr;
};

} // namespace corkwheel
