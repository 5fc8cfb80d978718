// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/WarningRow.h"

#include "editor/ColorWell.h"
#include "editor/MiniSwitch.h"
#include "editor/StepperLabel.h"

#include <QHBoxLayout>
#include <QSignalBlocker>

namespace corkwheel {

WarningRow::WarningRow(const QString& name, const QString& title, const QString& format,
                       double minimum, double maximum, double step, QWidget* parent)
    : QWidget(parent), m_switch(new MiniSwitch),
      m_stepper(
          new StepperLabel(tr("%1 warning threshold").arg(title), format, minimum, maximum, step)),
      m_colorWell(new ColorWell) {
    m_switch->setObjectName(name + QStringLiteral("Switch"));
    m_switch->setAccessibleName(tr("Warn on %1").arg(title));
    m_stepper->setObjectName(name + QStringLiteral("Stepper"));
    m_colorWell->setObjectName(name + QStringLiteral("ColorWell"));
    m_colorWell->setAccessibleName(tr("%1 warning color").arg(title));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_switch);
    layout->addWidget(m_stepper, 1);
    layout->addWidget(m_colorWell);

    connect(m_switch, &MiniSwitch::toggled, this, [this](bool on) {
        StatsWarning warning = m_shown;
        warning.isOn = on;
        Q_EMIT edited(warning);
    });
    connect(m_stepper, &StepperLabel::valueEdited, this, [this](double threshold) {
        StatsWarning warning = m_shown;
        warning.threshold = threshold;
        Q_EMIT edited(warning);
    });
    connect(m_colorWell, &ColorWell::colorPicked, this, [this](const QColor& picked) {
        StatsWarning warning = m_shown;
        warning.color = ColorWell::toCodable(picked);
        Q_EMIT edited(warning);
    });
}

void WarningRow::display(const StatsWarning& warning) {
    m_shown = warning;
    {
        const QSignalBlocker quiet(m_switch);
        m_switch->setChecked(warning.isOn);
    }
    m_stepper->setValue(warning.threshold);
    m_colorWell->display(warning.color);
    // The threshold and colour of a warning that is off are kept, but shown as not in use.
    m_stepper->setEnabled(warning.isOn);
    m_colorWell->setEnabled(warning.isOn);
}

} // namespace corkwheel
