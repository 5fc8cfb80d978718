// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/AppearanceSection.h"

#include "editor/ColorWell.h"
#include "editor/FocusRing.h"
#include "editor/FontChoices.h"
#include "editor/StepperLabel.h"
#include "model/PanelLimits.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QSignalBlocker>
#include <QSlider>

#include <algorithm>
#include <cmath>

namespace corkwheel {

namespace {

constexpr int kFontPickerMinimumLength = 16;

const QList<TextAlignmentOption>& alignmentOptions() {
    static const QList<TextAlignmentOption> options{
        TextAlignmentOption::Leading, TextAlignmentOption::Center, TextAlignmentOption::Trailing};
    return options;
}

QString alignmentTitle(TextAlignmentOption alignment) {
    switch (alignment) {
    case TextAlignmentOption::Leading:
        return AppearanceSection::tr("Leading");
    case TextAlignmentOption::Center:
        return AppearanceSection::tr("Center");
    case TextAlignmentOption::Trailing:
        return AppearanceSection::tr("Trailing");
    }
    return {};
}

// The corner radius matters only for a panel that draws a background.
bool showsCornerRadius(const PanelStyle& style) {
    return style.showGlassBackground || style.backgroundColor.alpha > 0;
}

int opacityPosition(double opacity) {
    const double shown =
        PanelLimits::kSlidOpacity.bound(opacity, PanelLimits::kSlidOpacity.highest);
    return static_cast<int>(std::lround(shown * AppearanceSection::kOpacityScale));
}

} // namespace

AppearanceSection::AppearanceSection(QWidget* parent)
    : InspectorSection(tr("Appearance"), QStringLiteral("appearanceSection"), parent),
      m_form(makeForm()) {
    addFontRows();
    addColorRows();
    addAlignmentRow();
    addBackgroundRows();
}

void AppearanceSection::addFontRows() {
    m_fontPicker = new QComboBox;
    m_fontPicker->setObjectName(QStringLiteral("fontPicker"));
    m_fontPicker->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_fontPicker->setMinimumContentsLength(kFontPickerMinimumLength);
    m_fontPicker->addItems(fontChoices());
    connect(m_fontPicker, &QComboBox::activated, this, [this](int index) {
        const QString name = m_fontPicker->itemText(index);
        Q_EMIT edited([&name](Panel& panel) { panel.style.fontName = name; });
    });
    m_form->addRow(tr("Font"), m_fontPicker);

    m_fontSizeStepper =
        new StepperLabel(tr("Font size"), tr("Size: %1 pt"), PanelLimits::kSteppedFontSize.lowest,
                         PanelLimits::kSteppedFontSize.highest, 1);
    m_fontSizeStepper->setObjectName(QStringLiteral("fontSizeStepper"));
    connect(m_fontSizeStepper, &StepperLabel::valueEdited, this, [this](double size) {
        Q_EMIT edited([size](Panel& panel) { panel.style.fontSize = size; });
    });
    m_form->addRow(m_fontSizeStepper);
}

void AppearanceSection::addColorRows() {
    m_textColorWell =
        addColorWell(tr("Text Color"), QStringLiteral("textColorWell"), &PanelStyle::textColor);
    m_backgroundColorWell =
        addColorWell(tr("Background Color"), QStringLiteral("backgroundColorWell"),
                     &PanelStyle::backgroundColor);
}

ColorWell* AppearanceSection::addColorWell(const QString& label, const QString& name,
                                           CodableColor PanelStyle::*color) {
    auto* well = new ColorWell;
    well->setObjectName(name);
    well->setAccessibleName(label);
    connect(well, &ColorWell::colorPicked, this, [this, color](const QColor& picked) {
        Q_EMIT edited(
            [color, &picked](Panel& panel) { panel.style.*color = ColorWell::toCodable(picked); });
    });
    m_form->addRow(label, well);
    return well;
}

void AppearanceSection::addAlignmentRow() {
    m_alignmentPicker = new QComboBox;
    m_alignmentPicker->setObjectName(QStringLiteral("alignmentPicker"));
    for (const TextAlignmentOption alignment : alignmentOptions())
        m_alignmentPicker->addItem(alignmentTitle(alignment));
    connect(m_alignmentPicker, &QComboBox::activated, this, [this](int index) {
        const TextAlignmentOption alignment = alignmentOptions().value(index);
        Q_EMIT edited([alignment](Panel& panel) { panel.style.textAlignment = alignment; });
    });
    m_form->addRow(tr("Alignment"), m_alignmentPicker);
}

void AppearanceSection::addBackgroundRows() {
    m_shadowToggle = makeToggle(tr("Text Shadow"), QStringLiteral("shadowToggle"));
    connect(m_shadowToggle, &QCheckBox::toggled, this, [this](bool on) {
        Q_EMIT edited([on](Panel& panel) { panel.style.showShadow = on; });
    });
    m_form->addRow(m_shadowToggle);

    m_glassToggle = makeToggle(tr("Glass Background"), QStringLiteral("glassToggle"));
    connect(m_glassToggle, &QCheckBox::toggled, this, [this](bool on) {
        Q_EMIT edited([on](Panel& panel) { panel.style.showGlassBackground = on; });
    });
    m_form->addRow(m_glassToggle);

    m_cornerRadiusStepper = new StepperLabel(tr("Corner radius"), tr("Corner Radius: %1"),
                                             PanelLimits::kSteppedCornerRadius.lowest,
                                             PanelLimits::kSteppedCornerRadius.highest, 1);
    m_cornerRadiusStepper->setObjectName(QStringLiteral("cornerRadiusStepper"));
    connect(m_cornerRadiusStepper, &StepperLabel::valueEdited, this, [this](double radius) {
        Q_EMIT edited([radius](Panel& panel) { panel.style.cornerRadius = radius; });
    });
    m_form->addRow(m_cornerRadiusStepper);

    m_opacitySlider = new QSlider(Qt::Horizontal);
    m_opacitySlider->setObjectName(QStringLiteral("opacitySlider"));
    m_opacitySlider->setRange(opacityPosition(PanelLimits::kSlidOpacity.lowest),
                              opacityPosition(PanelLimits::kSlidOpacity.highest));
    m_opacitySlider->setAccessibleName(tr("Opacity"));
    // The style's own sign of focus on a slider is a faint tint of its handle.
    new FocusRing(m_opacitySlider);
    connect(m_opacitySlider, &QSlider::valueChanged, this, [this](int position) {
        const double opacity = static_cast<double>(position) / kOpacityScale;
        Q_EMIT edited([opacity](Panel& panel) { panel.style.opacity = opacity; });
    });
    m_form->addRow(tr("Opacity"), m_opacitySlider);
}

void AppearanceSection::showPanel(const Panel& panel) {
    const PanelStyle& style = panel.style;
    showFont(style.fontName);
    m_fontSizeStepper->setValue(style.fontSize);
    m_textColorWell->display(style.textColor);
    m_backgroundColorWell->display(style.backgroundColor);
    m_alignmentPicker->setCurrentIndex(
        static_cast<int>(alignmentOptions().indexOf(style.textAlignment)));
    {
        const QSignalBlocker quietShadow(m_shadowToggle);
        const QSignalBlocker quietGlass(m_glassToggle);
        m_shadowToggle->setChecked(style.showShadow);
        m_glassToggle->setChecked(style.showGlassBackground);
    }
    const bool radiusShown = showsCornerRadius(style);
    if (radiusShown)
        m_cornerRadiusStepper->setValue(style.cornerRadius);
    m_form->setRowVisible(m_cornerRadiusStepper, radiusShown);
    const QSignalBlocker blocker(m_opacitySlider);
    m_opacitySlider->setValue(opacityPosition(style.opacity));
}

// A font that is not installed (the default one names a font Linux lacks) is still shown as
// the panel's font, without choosing another in its place.
void AppearanceSection::showFont(const QString& fontName) {
    const int index = static_cast<int>(fontChoices().indexOf(fontName));
    if (index < 0)
        m_fontPicker->setPlaceholderText(fontName);
    m_fontPicker->setCurrentIndex(index);
}

} // namespace corkwheel
