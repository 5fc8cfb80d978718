// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/StatsSection.h"

#include "editor/MiniSwitch.h"
#include "editor/SecondaryText.h"
#include "editor/WarningRow.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLabel>
#include <QSignalBlocker>

namespace corkwheel {

StatsSection::StatsSection(QWidget* parent)
    : InspectorSection(tr("Rows & Warnings"), QStringLiteral("statsSection"), parent),
      m_form(makeForm()) {
    m_form->addRow(SecondaryText::note(tr("Shown below memory, in this order.")));
    addRowSwitch(tr("Each Core"), QStringLiteral("coresSwitch"), &StatsRows::cores);
    addRowSwitch(tr("Load Average"), QStringLiteral("loadSwitch"), &StatsRows::load);
    addRowSwitch(tr("Swap"), QStringLiteral("swapSwitch"), &StatsRows::swap);
    addRowSwitch(tr("Temperatures"), QStringLiteral("temperaturesSwitch"),
                 &StatsRows::temperatures);
    addRowSwitch(tr("Fans"), QStringLiteral("fansSwitch"), &StatsRows::fans);
    addRowSwitch(tr("Battery"), QStringLiteral("batterySwitch"), &StatsRows::battery);

    m_form->addRow(SecondaryText::note(
        tr("Past its threshold a row's bar and figure take the warning's colour.")));
    const QString above = tr("above %1%");
    addWarningRow(tr("CPU"), QStringLiteral("cpuWarning"), &StatsWarnings::cpu, above, kLowestShare,
                  kHighestShare, kShareStep);
    addWarningRow(tr("Memory"), QStringLiteral("memoryWarning"), &StatsWarnings::memory, above,
                  kLowestShare, kHighestShare, kShareStep);
    addWarningRow(tr("Disks"), QStringLiteral("disksWarning"), &StatsWarnings::disks,
                  tr("above %1% used"), kLowestShare, kHighestShare, kShareStep);
    addWarningRow(tr("Swap"), QStringLiteral("swapWarning"), &StatsWarnings::swap, above,
                  kLowestShare, kHighestShare, kShareStep);
    addWarningRow(tr("Temperatures"), QStringLiteral("temperaturesWarning"),
                  &StatsWarnings::temperatures,
                  tr("above %1 \xC2\xB0"
                     "C"),
                  kLowestTemperature, kHighestTemperature, kTemperatureStep);
    m_sensorMaxToggle = makeToggle(tr("At each sensor's own maximum, where it has one"),
                                   QStringLiteral("temperaturesAtSensorMaxToggle"));
    connect(m_sensorMaxToggle, &QCheckBox::toggled, this, [this](bool on) {
        Q_EMIT edited(
            [on](Panel& panel) { panel.systemStats.warnings.temperaturesAtSensorMax = on; });
    });
    m_form->addRow(m_sensorMaxToggle);
    addWarningRow(tr("Battery"), QStringLiteral("batteryWarning"), &StatsWarnings::battery,
                  tr("below %1%"), kLowestShare, kHighestShare, kShareStep);
}

void StatsSection::addRowSwitch(const QString& label, const QString& name, bool StatsRows::*row) {
    auto* toggle = new MiniSwitch;
    toggle->setObjectName(name);
    toggle->setAccessibleName(label);
    connect(toggle, &MiniSwitch::toggled, this, [this, row](bool on) {
        Q_EMIT edited([row, on](Panel& panel) { panel.systemStats.rows.*row = on; });
    });
    m_form->addRow(label, toggle);
    m_rowSwitches.append({toggle, row});
}

void StatsSection::addWarningRow(const QString& label, const QString& name,
                                 StatsWarning StatsWarnings::*warning, const QString& format,
                                 double minimum, double maximum, double step) {
    auto* row = new WarningRow(name, label, format, minimum, maximum, step);
    row->setObjectName(name);
    connect(row, &WarningRow::edited, this, [this, warning](const StatsWarning& edited) {
        Q_EMIT this->edited(
            [warning, &edited](Panel& panel) { panel.systemStats.warnings.*warning = edited; });
    });
    m_form->addRow(label, row);
    m_warningRows.append({row, warning});
}

void StatsSection::showPanel(const Panel& panel) {
    const SystemStatsOptions& options = panel.systemStats;
    for (const auto& [toggle, row] : std::as_const(m_rowSwitches)) {
        const QSignalBlocker quiet(toggle);
        toggle->setChecked(options.rows.*row);
    }
    for (const auto& [row, warning] : std::as_const(m_warningRows))
        row->display(options.warnings.*warning);
    const QSignalBlocker quiet(m_sensorMaxToggle);
    m_sensorMaxToggle->setChecked(options.warnings.temperaturesAtSensorMax);
    m_sensorMaxToggle->setEnabled(options.warnings.temperatures.isOn);
}

} // namespace corkwheel
