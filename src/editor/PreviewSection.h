// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "editor/InspectorSection.h"

namespace corkwheel {

class PanelContentView;
class PanelRunner;
class PreviewStage;

// The panel as the desktop would show it, drawn from what `runner` produces.
class PreviewSection : public InspectorSection {
    Q_OBJECT

public:
    explicit PreviewSection(PanelRunner& runner, QWidget* parent = nullptr);

    void showPanel(const Panel& panel) override;
    PanelContentView& content() const;

private:
    PreviewStage* m_stage;
};

} // namespace corkwheel
