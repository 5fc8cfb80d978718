// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/GeneralSection.h"

#include "editor/StepperLabel.h"
#include "model/PanelLimits.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QSignalBlocker>

namespace corkwheel {

namespace {} // namespace

GeneralSection::GeneralSection(QWidget* parent)
    : InspectorSection(tr("General"), QStringLiteral("generalSection"), parent),
      m_nameField(new QLineEdit),
      m_enabledToggle(makeToggle(tr("Enabled"), QStringLiteral("enabledToggle"))),
      m_refreshStepper(new StepperLabel(tr("Refresh interval"), tr("Refresh every %1s"),
                                        PanelLimits::kSteppedRefreshInterval.lowest,
                                        PanelLimits::kSteppedRefreshInterval.highest, 1)) {
    QFormLayout* form = makeForm();

    m_nameField->setObjectName(QStringLiteral("nameField"));
    connect(m_nameField, &QLineEdit::textEdited, this, [this](const QString& text) {
        Q_EMIT edited([&text](Panel& panel) { panel.name = text; });
    });
    form->addRow(tr("Name"), m_nameField);

    connect(m_enabledToggle, &QCheckBox::toggled, this,
            [this](bool on) { Q_EMIT edited([on](Panel& panel) { panel.isEnabled = on; }); });
    form->addRow(m_enabledToggle);

    m_refreshStepper->setObjectName(QStringLiteral("refreshStepper"));
    connect(m_refreshStepper, &StepperLabel::valueEdited, this, [this](double seconds) {
        Q_EMIT edited([seconds](Panel& panel) { panel.refreshInterval = seconds; });
    });
    form->addRow(m_refreshStepper);
}

// The name is set only when it differs, so the field being typed in keeps its cursor when
// the store echoes the keystroke back.
void GeneralSection::showPanel(const Panel& panel) {
    if (m_nameField->text() != panel.name)
        m_nameField->setText(panel.name);
    const QSignalBlocker quiet(m_enabledToggle);
    m_enabledToggle->setChecked(panel.isEnabled);
    m_refreshStepper->setValue(panel.refreshInterval);
}

} // namespace corkwheel
