// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "editor/InspectorSection.h"

namespace corkwheel {

class LabeledField;

// The panel's frame on the desktop: where its top-left corner sits and how large it is.
class PositionSection : public InspectorSection {
    Q_OBJECT

public:
    explicit PositionSection(QWidget* parent = nullptr);

    void showPanel(const Panel& panel) override;

private:
    LabeledField* frameField(const QString& label, const QString& spokenName, const QString& name,
                             double PanelFrame::*field);

    LabeledField* m_xField;
    LabeledField* m_yField;
    LabeledField* m_widthField;
    LabeledField* m_heightField;
};

} // namespace corkwheel
