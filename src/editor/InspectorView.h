#pragma once

#include "engine/RunnerServices.h"
#include "model/Panel.h"

#include <QString>
#include <QUuid>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QScrollArea;
class QSlider;

namespace corkwheel {

class ColorWell;
class FormSection;
class GrowingTextEdit;
class LabeledField;
class PanelContentView;
class PanelRunner;
class PanelStore;
class PreviewStage;
class StepperLabel;

// The editor's detail column: a form that edits every property of one panel, under a live
// preview drawn by a runner of its own. Each edit hands the whole panel to the store at
// once; each change of the stored panel, from here, the sidebar or a drag on the desktop,
// is shown again and handed to the preview's runner.
class InspectorView : public QWidget {
    Q_OBJECT

public:
    InspectorView(PanelStore& store, const QUuid& panelID,
                  RunnerServices services = RunnerServices::shared(), QWidget* parent = nullptr);
    ~InspectorView() override;

    QUuid panelID() const;
    PanelRunner& runner() const;
    PanelContentView& preview() const;

    // The stored panel with this id; while the store has none, a default text panel, whose
    // edits the store ignores.
    Panel panel() const;

    // Lines the Command and Template fields grow to before they scroll.
    static constexpr int kMaxSourceLines = 6;
    // Slider positions per unit of opacity.
    static constexpr int kOpacityScale = 1000;

protected:
    void showEvent(QShowEvent* event) override;

private:
    QLabel* buildTitle();
    FormSection* buildPreviewSection();
    FormSection* buildGeneralSection();
    FormSection* buildSourceSection();
    FormSection* buildAppearanceSection();
    FormSection* buildPositionSection();
    void buildSourceRows(PanelType type);
    void addSourceLine(const QString& label, const QString& name, bool monospaced,
                       const QString& placeholder = {});
    void addSourceText(const QString& label, const QString& name, bool monospaced);
    void addSourceNote(const QString& text);
    LabeledField* frameField(const QString& label, const QString& name, double PanelFrame::*field);

    void edit(const std::function<void(Panel&)>& change);
    void reload();
    void showPanel(const Panel& panel);
    void showSource(const Panel& panel);
    void showAppearance(const PanelStyle& style);
    void showFont(const QString& fontName);

    PanelStore& m_store;
    QUuid m_panelID;
    // What `panel()` yields while the store has no panel with this id.
    Panel m_fallback;
    // The panel the form and the preview show.
    Panel m_shown;
    std::unique_ptr<PanelRunner> m_runner;
    bool m_started = false;

    QScrollArea* m_scrollArea = nullptr;
    QLabel* m_title = nullptr;
    PreviewStage* m_previewStage = nullptr;
    QLineEdit* m_nameField = nullptr;
    QCheckBox* m_enabledToggle = nullptr;
    StepperLabel* m_refreshStepper = nullptr;

    QFormLayout* m_sourceForm = nullptr;
    std::optional<PanelType> m_sourceType;
    // The panel's string that the source rows edit; none for system stats.
    QString Panel::*m_sourceString = nullptr;
    QLineEdit* m_sourceLine = nullptr;
    GrowingTextEdit* m_sourceText = nullptr;

    QFormLayout* m_appearanceForm = nullptr;
    QComboBox* m_fontPicker = nullptr;
    StepperLabel* m_fontSizeStepper = nullptr;
    ColorWell* m_textColorWell = nullptr;
    ColorWell* m_backgroundColorWell = nullptr;
    QComboBox* m_alignmentPicker = nullptr;
    QCheckBox* m_shadowToggle = nullptr;
    QCheckBox* m_glassToggle = nullptr;
    StepperLabel* m_cornerRadiusStepper = nullptr;
    QSlider* m_opacitySlider = nullptr;

    LabeledField* m_xField = nullptr;
    LabeledField* m_yField = nullptr;
    LabeledField* m_widthField = nullptr;
    LabeledField* m_heightField = nullptr;
};

} // namespace corkwheel
