// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "editor/InspectorSection.h"

class QCheckBox;
class QComboBox;
class QFormLayout;
class QSlider;

namespace corkwheel {

class ColorWell;
class StepperLabel;

// How the panel's text and background look: font, colours, alignment, shadow, glass,
// corner radius and opacity.
class AppearanceSection : public InspectorSection {
    Q_OBJECT

public:
    explicit AppearanceSection(QWidget* parent = nullptr);

    void showPanel(const Panel& panel) override;

    // Slider positions per unit of opacity.
    static constexpr int kOpacityScale = 1000;

private:
    void addFontRows();
    void addColorRows();
    void addAlignmentRow();
    void addBackgroundRows();
    ColorWell* addColorWell(const QString& label, const QString& name,
                            CodableColor PanelStyle::*color);
    void showFont(const QString& fontName);

    QFormLayout* m_form;
    QComboBox* m_fontPicker = nullptr;
    StepperLabel* m_fontSizeStepper = nullptr;
    ColorWell* m_textColorWell = nullptr;
    ColorWell* m_backgroundColorWell = nullptr;
    QComboBox* m_alignmentPicker = nullptr;
    QCheckBox* m_shadowToggle = nullptr;
    QCheckBox* m_glassToggle = nullptr;
    StepperLabel* m_cornerRadiusStepper = nullptr;
    QSlider* m_opacitySlider = nullptr;
};

} // namespace corkwheel
