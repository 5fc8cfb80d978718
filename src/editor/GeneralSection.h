// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "editor/InspectorSection.h"

class QCheckBox;
class QLineEdit;

namespace corkwheel {

class StepperLabel;

// The panel's name, whether it is shown, and how often its content refreshes.
class GeneralSection : public InspectorSection {
    Q_OBJECT

public:
    explicit GeneralSection(QWidget* parent = nullptr);

    void showPanel(const Panel& panel) override;

private:
    QLineEdit* m_nameField;
    QCheckBox* m_enabledToggle;
    StepperLabel* m_refreshStepper;
};

} // namespace corkwheel
