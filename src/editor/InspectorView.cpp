#include "editor/InspectorView.h"

#include "editor/ColorWell.h"
#include "editor/FontChoices.h"
#include "editor/FormSection.h"
#include "editor/GrowingTextEdit.h"
#include "editor/LabeledField.h"
#include "editor/PreviewStage.h"
#include "editor/SecondaryText.h"
#include "editor/StepperLabel.h"
#include "engine/PanelRunner.h"
#include "model/PanelStore.h"
#include "render/PanelContentView.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFontDatabase>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QSlider>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace corkwheel {

namespace {

constexpr double kMinRefreshInterval = 1;
constexpr double kMaxRefreshInterval = 3600;
constexpr double kMinFontSize = 8;
constexpr double kMaxFontSize = 72;
constexpr double kMinCornerRadius = 0;
constexpr double kMaxCornerRadius = 40;
constexpr double kMinOpacity = 0.1;
constexpr double kMaxOpacity = 1.0;
// The heading: the system font this much larger, set off by this many points.
constexpr double kTitleScale = 1.4;
constexpr int kTitleMargin = 10;

// The panel's string that the source rows edit for `type`; none for system stats.
using SourceString = QString Panel::*;

SourceString sourceStringOf(PanelType type) {
    switch (type) {
    case PanelType::Shell:
        return &Panel::shellCommand;
    case PanelType::File:
        return &Panel::filePath;
    case PanelType::Text:
        return &Panel::textTemplate;
    case PanelType::Clock:
        return &Panel::clockFormat;
    case PanelType::Image:
        return &Panel::imageSource;
    case PanelType::SystemStats:
        return nullptr;
    case PanelType::Webpage:
        return &Panel::webpageURL;
    }
    return nullptr;
}

QFont monospacedBodyFont() {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    const QFont body = QApplication::font();
    if (body.pointSizeF() > 0)
        font.setPointSizeF(body.pointSizeF());
    else
        font.setPixelSize(body.pixelSize());
    return font;
}

QString alignmentTitle(TextAlignmentOption alignment) {
    QString title = rawValue(alignment);
    if (!title.isEmpty())
        title[0] = title[0].toUpper();
    return title;
}

const QList<TextAlignmentOption>& alignmentOptions() {
    static const QList<TextAlignmentOption> options{
        TextAlignmentOption::Leading, TextAlignmentOption::Center, TextAlignmentOption::Trailing};
    return options;
}

// The corner radius matters only for a panel that draws a background.
bool showsCornerRadius(const PanelStyle& style) {
    return style.showGlassBackground || style.backgroundColor.alpha > 0;
}

int opacityPosition(double opacity) {
    const double shown =
        std::isfinite(opacity) ? std::clamp(opacity, kMinOpacity, kMaxOpacity) : kMaxOpacity;
    return static_cast<int>(std::lround(shown * InspectorView::kOpacityScale));
}

FormSection* makeSection(const QString& title, const QString& name) {
    auto* section = new FormSection(title);
    section->setObjectName(name);
    return section;
}

QFormLayout* makeForm(FormSection* section) {
    auto* form = new QFormLayout(section->body());
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->setRowWrapPolicy(QFormLayout::DontWrapRows);
    return form;
}

QCheckBox* makeToggle(const QString& text, const QString& name) {
    auto* toggle = new QCheckBox(text);
    toggle->setObjectName(name);
    return toggle;
}

} // namespace

InspectorView::InspectorView(PanelStore& store, const QUuid& panelID, RunnerServices services,
                             QWidget* parent)
    : QWidget(parent), m_store(store), m_panelID(panelID),
      m_fallback(Panel::makeDefault(PanelType::Text)), m_shown(panel()),
      m_runner(std::make_unique<PanelRunner>(m_shown, std::move(services))) {
    auto* content = new QWidget;
    auto* sections = new QVBoxLayout(content);
    sections->addWidget(buildPreviewSection());
    sections->addWidget(buildGeneralSection());
    sections->addWidget(buildSourceSection());
    sections->addWidget(buildAppearanceSection());
    sections->addWidget(buildPositionSection());
    sections->addStretch(1);

    m_scrollArea = new QScrollArea(this);
    m_scrollArea->setObjectName(QStringLiteral("inspectorScrollArea"));
    m_scrollArea->setFrameShape(QFrame::NoFrame);
    m_scrollArea->setWidgetResizable(true);
    m_scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scrollArea->setWidget(content);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(buildTitle());
    layout->addWidget(m_scrollArea);

    showPanel(m_shown);
    connect(&m_store, &PanelStore::panelsChanged, this, &InspectorView::reload);
}

// The panel's name over the form, as the page's heading; a long name is cut off rather
// than widening the editor.
QLabel* InspectorView::buildTitle() {
    m_title = new QLabel;
    m_title->setObjectName(QStringLiteral("inspectorTitle"));
    m_title->setTextFormat(Qt::PlainText);
    m_title->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_title->setContentsMargins(kTitleMargin, kTitleMargin, kTitleMargin, 0);
    QFont font = m_title->font();
    font.setPointSizeF(font.pointSizeF() * kTitleScale);
    font.setWeight(QFont::DemiBold);
    m_title->setFont(font);
    return m_title;
}

// The preview's content view reads the runner until it is gone, so the form goes first.
InspectorView::~InspectorView() {
    delete m_scrollArea;
}

QUuid InspectorView::panelID() const {
    return m_panelID;
}

PanelRunner& InspectorView::runner() const {
    return *m_runner;
}

PanelContentView& InspectorView::preview() const {
    return m_previewStage->content();
}

Panel InspectorView::panel() const {
    const QList<Panel>& panels = m_store.panels();
    const auto found = std::find_if(panels.begin(), panels.end(),
                                    [this](const Panel& panel) { return panel.id == m_panelID; });
    return found != panels.end() ? *found : m_fallback;
}

// The preview starts producing content when it first comes into view.
void InspectorView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (m_started)
        return;
    m_started = true;
    m_runner->apply(m_shown);
}

FormSection* InspectorView::buildPreviewSection() {
    FormSection* section = makeSection(QStringLiteral("Preview"), QStringLiteral("previewSection"));
    m_previewStage = new PreviewStage(*m_runner);
    m_previewStage->setObjectName(QStringLiteral("previewStage"));
    auto* layout = new QHBoxLayout(section->body());
    layout->addWidget(m_previewStage, 0, Qt::AlignCenter);
    return section;
}

FormSection* InspectorView::buildGeneralSection() {
    FormSection* section = makeSection(QStringLiteral("General"), QStringLiteral("generalSection"));
    QFormLayout* form = makeForm(section);

    m_nameField = new QLineEdit;
    m_nameField->setObjectName(QStringLiteral("nameField"));
    connect(m_nameField, &QLineEdit::textEdited, this,
            [this](const QString& text) { edit([&text](Panel& panel) { panel.name = text; }); });
    form->addRow(QStringLiteral("Name"), m_nameField);

    m_enabledToggle = makeToggle(QStringLiteral("Enabled"), QStringLiteral("enabledToggle"));
    connect(m_enabledToggle, &QCheckBox::clicked, this,
            [this](bool on) { edit([on](Panel& panel) { panel.isEnabled = on; }); });
    form->addRow(m_enabledToggle);

    m_refreshStepper = new StepperLabel(QStringLiteral("Refresh every %1s"), kMinRefreshInterval,
                                        kMaxRefreshInterval, 1);
    m_refreshStepper->setObjectName(QStringLiteral("refreshStepper"));
    connect(m_refreshStepper, &StepperLabel::valueEdited, this, [this](double seconds) {
        edit([seconds](Panel& panel) { panel.refreshInterval = seconds; });
    });
    form->addRow(m_refreshStepper);
    return section;
}

FormSection* InspectorView::buildSourceSection() {
    FormSection* section = makeSection(QStringLiteral("Source"), QStringLiteral("sourceSection"));
    m_sourceForm = makeForm(section);
    return section;
}

// The rows for `type`; the type is chosen when a panel is added, so this normally happens
// once.
void InspectorView::buildSourceRows(PanelType type) {
    while (m_sourceForm->rowCount() > 0)
        m_sourceForm->removeRow(0);
    m_sourceType = type;
    m_sourceString = sourceStringOf(type);
    m_sourceLine = nullptr;
    m_sourceText = nullptr;
    switch (type) {
    case PanelType::Shell:
        addSourceText(QStringLiteral("Command"), QStringLiteral("commandField"), true);
        break;
    case PanelType::File:
        addSourceLine(QStringLiteral("File Path"), QStringLiteral("filePathField"), true);
        break;
    case PanelType::Text:
        addSourceText(QStringLiteral("Template"), QStringLiteral("templateField"), false);
        addSourceNote(QStringLiteral("Use {date:FORMAT} tokens, e.g. {date:EEEE, MMMM d}"));
        break;
    case PanelType::Clock:
        addSourceLine(QStringLiteral("Date Format"), QStringLiteral("dateFormatField"), true);
        addSourceNote(QStringLiteral("Uses ICU date patterns, e.g. h:mm:ss a"));
        break;
    case PanelType::Image:
        addSourceLine(QStringLiteral("Path or URL"), QStringLiteral("imageSourceField"), false);
        break;
    case PanelType::SystemStats:
        addSourceNote(
            QStringLiteral("Shows live CPU, memory, and disk usage. No configuration needed."));
        break;
    case PanelType::Webpage:
        addSourceLine(QStringLiteral("URL"), QStringLiteral("urlField"), false,
                      QStringLiteral("example.com"));
        // The interval is the one `m_refreshStepper` sets.
        addSourceNote(QStringLiteral("Reloads automatically at the refresh interval below."));
        break;
    }
}

void InspectorView::addSourceLine(const QString& label, const QString& name, bool monospaced,
                                  const QString& placeholder) {
    m_sourceLine = new QLineEdit;
    m_sourceLine->setObjectName(name);
    m_sourceLine->setPlaceholderText(placeholder);
    if (monospaced)
        m_sourceLine->setFont(monospacedBodyFont());
    const auto field = m_sourceString;
    connect(m_sourceLine, &QLineEdit::textEdited, this, [this, field](const QString& text) {
        edit([field, &text](Panel& panel) { panel.*field = text; });
    });
    m_sourceForm->addRow(label, m_sourceLine);
}

void InspectorView::addSourceText(const QString& label, const QString& name, bool monospaced) {
    m_sourceText = new GrowingTextEdit(kMaxSourceLines);
    m_sourceText->setObjectName(name);
    if (monospaced)
        m_sourceText->setFont(monospacedBodyFont());
    const auto field = m_sourceString;
    connect(m_sourceText, &GrowingTextEdit::textEdited, this, [this, field](const QString& text) {
        edit([field, &text](Panel& panel) { panel.*field = text; });
    });
    m_sourceForm->addRow(label, m_sourceText);
}

void InspectorView::addSourceNote(const QString& text) {
    QLabel* note = SecondaryText::note(text);
    note->setObjectName(QStringLiteral("sourceNote"));
    m_sourceForm->addRow(note);
}

FormSection* InspectorView::buildAppearanceSection() {
    FormSection* section =
        makeSection(QStringLiteral("Appearance"), QStringLiteral("appearanceSection"));
    m_appearanceForm = makeForm(section);

    m_fontPicker = new QComboBox;
    m_fontPicker->setObjectName(QStringLiteral("fontPicker"));
    m_fontPicker->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_fontPicker->setMinimumContentsLength(16);
    m_fontPicker->addItems(fontChoices());
    connect(m_fontPicker, &QComboBox::activated, this, [this](int index) {
        const QString name = m_fontPicker->itemText(index);
        edit([&name](Panel& panel) { panel.style.fontName = name; });
    });
    m_appearanceForm->addRow(QStringLiteral("Font"), m_fontPicker);

    m_fontSizeStepper =
        new StepperLabel(QStringLiteral("Size: %1 pt"), kMinFontSize, kMaxFontSize, 1);
    m_fontSizeStepper->setObjectName(QStringLiteral("fontSizeStepper"));
    connect(m_fontSizeStepper, &StepperLabel::valueEdited, this,
            [this](double size) { edit([size](Panel& panel) { panel.style.fontSize = size; }); });
    m_appearanceForm->addRow(m_fontSizeStepper);

    m_textColorWell = new ColorWell;
    m_textColorWell->setObjectName(QStringLiteral("textColorWell"));
    m_textColorWell->setAccessibleName(QStringLiteral("Text Color"));
    connect(m_textColorWell, &ColorWell::colorPicked, this, [this](const QColor& color) {
        edit([&color](Panel& panel) { panel.style.textColor = ColorWell::toCodable(color); });
    });
    m_appearanceForm->addRow(QStringLiteral("Text Color"), m_textColorWell);

    m_backgroundColorWell = new ColorWell;
    m_backgroundColorWell->setObjectName(QStringLiteral("backgroundColorWell"));
    m_backgroundColorWell->setAccessibleName(QStringLiteral("Background Color"));
    connect(m_backgroundColorWell, &ColorWell::colorPicked, this, [this](const QColor& color) {
        edit([&color](Panel& panel) { panel.style.backgroundColor = ColorWell::toCodable(color); });
    });
    m_appearanceForm->addRow(QStringLiteral("Background Color"), m_backgroundColorWell);

    m_alignmentPicker = new QComboBox;
    m_alignmentPicker->setObjectName(QStringLiteral("alignmentPicker"));
    for (const TextAlignmentOption alignment : alignmentOptions())
        m_alignmentPicker->addItem(alignmentTitle(alignment));
    connect(m_alignmentPicker, &QComboBox::activated, this, [this](int index) {
        const TextAlignmentOption alignment = alignmentOptions().value(index);
        edit([alignment](Panel& panel) { panel.style.textAlignment = alignment; });
    });
    m_appearanceForm->addRow(QStringLiteral("Alignment"), m_alignmentPicker);

    m_shadowToggle = makeToggle(QStringLiteral("Text Shadow"), QStringLiteral("shadowToggle"));
    connect(m_shadowToggle, &QCheckBox::clicked, this,
            [this](bool on) { edit([on](Panel& panel) { panel.style.showShadow = on; }); });
    m_appearanceForm->addRow(m_shadowToggle);

    m_glassToggle = makeToggle(QStringLiteral("Glass Background"), QStringLiteral("glassToggle"));
    connect(m_glassToggle, &QCheckBox::clicked, this, [this](bool on) {
        edit([on](Panel& panel) { panel.style.showGlassBackground = on; });
    });
    m_appearanceForm->addRow(m_glassToggle);

    m_cornerRadiusStepper = new StepperLabel(QStringLiteral("Corner Radius: %1"), kMinCornerRadius,
                                             kMaxCornerRadius, 1);
    m_cornerRadiusStepper->setObjectName(QStringLiteral("cornerRadiusStepper"));
    connect(m_cornerRadiusStepper, &StepperLabel::valueEdited, this, [this](double radius) {
        edit([radius](Panel& panel) { panel.style.cornerRadius = radius; });
    });
    m_appearanceForm->addRow(m_cornerRadiusStepper);

    m_opacitySlider = new QSlider(Qt::Horizontal);
    m_opacitySlider->setObjectName(QStringLiteral("opacitySlider"));
    m_opacitySlider->setRange(opacityPosition(kMinOpacity), opacityPosition(kMaxOpacity));
    m_opacitySlider->setAccessibleName(QStringLiteral("Opacity"));
    connect(m_opacitySlider, &QSlider::valueChanged, this, [this](int position) {
        const double opacity = static_cast<double>(position) / kOpacityScale;
        edit([opacity](Panel& panel) { panel.style.opacity = opacity; });
    });
    m_appearanceForm->addRow(QStringLiteral("Opacity"), m_opacitySlider);
    return section;
}

FormSection* InspectorView::buildPositionSection() {
    FormSection* section =
        makeSection(QStringLiteral("Position & Size"), QStringLiteral("positionSection"));
    auto* layout = new QVBoxLayout(section->body());

    auto* position = new QHBoxLayout;
    m_xField = frameField(QStringLiteral("X"), QStringLiteral("xField"), &PanelFrame::x);
    m_yField = frameField(QStringLiteral("Y"), QStringLiteral("yField"), &PanelFrame::y);
    position->addWidget(m_xField, 1, Qt::AlignVCenter);
    position->addWidget(m_yField, 1, Qt::AlignVCenter);
    layout->addLayout(position);

    auto* size = new QHBoxLayout;
    m_widthField =
        frameField(QStringLiteral("W"), QStringLiteral("widthField"), &PanelFrame::width);
    m_heightField =
        frameField(QStringLiteral("H"), QStringLiteral("heightField"), &PanelFrame::height);
    size->addWidget(m_widthField, 1);
    size->addWidget(m_heightField, 1);
    layout->addLayout(size);

    QLabel* note =
        SecondaryText::note(QStringLiteral("Position is measured from the top-left of your main "
                                           "display."));
    note->setObjectName(QStringLiteral("positionNote"));
    layout->addWidget(note);
    return section;
}

LabeledField* InspectorView::frameField(const QString& label, const QString& name,
                                        double PanelFrame::*field) {
    auto* labeled = new LabeledField(label);
    labeled->setObjectName(name);
    connect(labeled, &LabeledField::valueEdited, this, [this, field](double value) {
        edit([field, value](Panel& panel) { panel.frame.*field = value; });
    });
    return labeled;
}

void InspectorView::edit(const std::function<void(Panel&)>& change) {
    Panel changed = panel();
    change(changed);
    m_store.update(changed);
}

void InspectorView::reload() {
    const Panel current = panel();
    if (current == m_shown)
        return;
    m_shown = current;
    if (m_started)
        m_runner->apply(current);
    showPanel(current);
}

// Each control is set only where it shows something else, so the field being typed in keeps
// its cursor when the store echoes the keystroke back.
void InspectorView::showPanel(const Panel& panel) {
    m_title->setText(panel.name);
    m_previewStage->setPanel(panel);
    if (m_nameField->text() != panel.name)
        m_nameField->setText(panel.name);
    m_enabledToggle->setChecked(panel.isEnabled);
    m_refreshStepper->setValue(panel.refreshInterval);
    showSource(panel);
    showAppearance(panel.style);
    m_xField->setValue(panel.frame.x);
    m_yField->setValue(panel.frame.y);
    m_widthField->setValue(panel.frame.width);
    m_heightField->setValue(panel.frame.height);
}

void InspectorView::showSource(const Panel& panel) {
    if (m_sourceType != panel.type)
        buildSourceRows(panel.type);
    if (!m_sourceString)
        return;
    const QString& text = panel.*m_sourceString;
    if (m_sourceLine && m_sourceLine->text() != text)
        m_sourceLine->setText(text);
    if (m_sourceText)
        m_sourceText->showText(text);
}

void InspectorView::showAppearance(const PanelStyle& style) {
    showFont(style.fontName);
    m_fontSizeStepper->setValue(style.fontSize);
    m_textColorWell->display(style.textColor);
    m_backgroundColorWell->display(style.backgroundColor);
    m_alignmentPicker->setCurrentIndex(
        static_cast<int>(alignmentOptions().indexOf(style.textAlignment)));
    m_shadowToggle->setChecked(style.showShadow);
    m_glassToggle->setChecked(style.showGlassBackground);
    const bool radiusShown = showsCornerRadius(style);
    if (radiusShown)
        m_cornerRadiusStepper->setValue(style.cornerRadius);
    m_appearanceForm->setRowVisible(m_cornerRadiusStepper, radiusShown);
    const QSignalBlocker blocker(m_opacitySlider);
    m_opacitySlider->setValue(opacityPosition(style.opacity));
}

// A font that is not installed (the default one names a font Linux lacks) is still shown as
// the panel's font, without choosing another in its place.
void InspectorView::showFont(const QString& fontName) {
    const int index = static_cast<int>(fontChoices().indexOf(fontName));
    if (index < 0)
        m_fontPicker->setPlaceholderText(fontName);
    m_fontPicker->setCurrentIndex(index);
}

} // namespace corkwheel
