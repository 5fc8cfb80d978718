// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "editor/AppearanceSection.h"
#include "editor/SourceSection.h"
#include "engine/RunnerServices.h"
#include "model/Panel.h"

#include <QList>
#include <QUuid>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

class QLabel;
class QScrollArea;

namespace corkwheel {

class InspectorSection;
class PanelContentView;
class PanelRunner;
class PanelStore;
class PreviewSection;
class StatsSection;

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
    static constexpr int kMaxSourceLines = SourceSection::kMaxSourceLines;
    // Slider positions per unit of opacity.
    static constexpr int kOpacityScale = AppearanceSection::kOpacityScale;

protected:
    void showEvent(QShowEvent* event) override;

private:
    QLabel* buildTitle();
    QWidget* buildSections();
    void edit(const std::function<void(Panel&)>& change);
    void reload();
    void showPanel(const Panel& panel);
    void matchStatsSection(PanelType type);
    void orderTabStops();
    void revealFocus(QWidget* before, QWidget* now);

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
    PreviewSection* m_preview = nullptr;
    QList<InspectorSection*> m_sections;
    // Only a system-stats panel has this section.
    StatsSection* m_statsSection = nullptr;
    QMetaObject::Connection m_revealFocus;
    // The type whose controls Tab was last put in order for.
    std::optional<PanelType> m_orderedType;
};

} // namespace corkwheel
