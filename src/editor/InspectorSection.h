// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "editor/FormSection.h"
#include "model/Panel.h"

#include <functional>

class QCheckBox;
class QFormLayout;

namespace corkwheel {

// One section of the inspector's form. It shows whatever panel it is given and reports
// each of the user's edits as a change to apply to the stored panel; it never reads or
// writes the store itself.
class InspectorSection : public FormSection {
    Q_OBJECT

public:
    using Change = std::function<void(Panel&)>;

    InspectorSection(const QString& title, const QString& name, QWidget* parent = nullptr);

    virtual void showPanel(const Panel& panel) = 0;

Q_SIGNALS:
    // Emitted while the user edits; `change` is only valid during the emission.
    void edited(const corkwheel::InspectorSection::Change& change);

protected:
    // A two-column form filling the section's body.
    QFormLayout* makeForm();
    // A section reads a toggle's edits from toggled(), which a screen reader's toggle action
    // emits as a click does (clicked() it does not), and shows a panel with the toggle's
    // signals blocked.
    static QCheckBox* makeToggle(const QString& text, const QString& name);
};

} // namespace corkwheel
