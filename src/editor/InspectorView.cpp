// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/InspectorView.h"

#include "editor/FocusChain.h"
#include "editor/GeneralSection.h"
#include "editor/PositionSection.h"
#include "editor/PreviewSection.h"
#include "editor/StatsSection.h"
#include "engine/PanelRunner.h"
#include "model/PanelStore.h"
#include "render/PanelContentView.h"

#include <QApplication>
#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>

namespace corkwheel {

namespace {

// The heading: the system font this much larger, set off by this many points.
constexpr double kTitleScale = 1.4;
constexpr int kTitleMargin = 10;

} // namespace

InspectorView::InspectorView(PanelStore& store, const QUuid& panelID, RunnerServices services,
                             QWidget* parent)
    : QWidget(parent), m_store(store), m_panelID(panelID),
      m_fallback(Panel::makeDefault(PanelType::Text)), m_shown(panel()),
      m_runner(std::make_unique<PanelRunner>(m_shown, std::move(services))) {
    m_scrollArea = new QScrollArea(this);
    m_scrollArea->setObjectName(QStringLiteral("inspectorScrollArea"));
    m_scrollArea->setFrameShape(QFrame::NoFrame);
    m_scrollArea->setWidgetResizable(true);
    m_scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scrollArea->setWidget(buildSections());
    // The form's controls take the keyboard themselves; a stop on the area around them
    // would be one with nothing to say.
    m_scrollArea->setFocusPolicy(Qt::NoFocus);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(buildTitle());
    layout->addWidget(m_scrollArea);

    showPanel(m_shown);
    connect(&m_store, &PanelStore::panelsChanged, this, &InspectorView::reload);
    m_revealFocus = connect(qApp, &QApplication::focusChanged, this, &InspectorView::revealFocus);
}

// The area scrolls to a control the keyboard moves to, from outside the form as well, where
// the area itself does not see the move.
void InspectorView::revealFocus(QWidget*, QWidget* now) {
    if (now && m_scrollArea->widget()->isAncestorOf(now))
        m_scrollArea->ensureWidgetVisible(now);
}

QWidget* InspectorView::buildSections() {
    m_preview = new PreviewSection(*m_runner);
    m_sections = {m_preview, new GeneralSection, new SourceSection, new AppearanceSection,
                  new PositionSection};
    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    for (InspectorSection* section : std::as_const(m_sections)) {
        layout->addWidget(section);
        connect(section, &InspectorSection::edited, this, &InspectorView::edit);
    }
    layout->addStretch(1);
    return content;
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
    // Deleting the focused control moves the keyboard on, which must not reach a form that
    // is being taken apart.
    disconnect(m_revealFocus);
    delete m_scrollArea;
}

QUuid InspectorView::panelID() const {
    return m_panelID;
}

PanelRunner& InspectorView::runner() const {
    return *m_runner;
}

PanelContentView& InspectorView::preview() const {
    return m_preview->content();
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

void InspectorView::showPanel(const Panel& panel) {
    m_title->setText(panel.name);
    matchStatsSection(panel.type);
    for (InspectorSection* section : std::as_const(m_sections))
        section->showPanel(panel);
    if (m_orderedType != panel.type) {
        m_orderedType = panel.type;
        orderTabStops();
    }
}

// Section by section, top to bottom: the rows of a type's source and its statistics are made
// once the type is known, after the sections below them.
void InspectorView::orderTabStops() {
    QList<QWidget*> stops;
    for (InspectorSection* section : std::as_const(m_sections))
        stops += FocusChain::stopsIn(section);
    FocusChain::link(stops);
}

// The section of a system-stats panel's rows comes after its Source section; a panel of
// another type has none.
void InspectorView::matchStatsSection(PanelType type) {
    const bool wanted = type == PanelType::SystemStats;
    if (wanted == (m_statsSection != nullptr))
        return;
    if (!wanted) {
        m_sections.removeOne(m_statsSection);
        delete m_statsSection;
        m_statsSection = nullptr;
        return;
    }
    m_statsSection = new StatsSection;
    auto* layout = static_cast<QVBoxLayout*>(m_scrollArea->widget()->layout());
    const auto source =
        std::find_if(m_sections.cbegin(), m_sections.cend(), [](InspectorSection* s) {
            return qobject_cast<SourceSection*>(s) != nullptr;
        });
    const int at = layout->indexOf(*source) + 1;
    layout->insertWidget(at, m_statsSection);
    m_sections.insert(source - m_sections.cbegin() + 1, m_statsSection);
    connect(m_statsSection, &InspectorSection::edited, this, &InspectorView::edit);
}

} // namespace corkwheel
