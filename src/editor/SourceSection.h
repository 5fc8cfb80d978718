// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "editor/InspectorSection.h"

#include <optional>

class QFormLayout;
class QLabel;
class QLineEdit;
class QVBoxLayout;

namespace corkwheel {

class GrowingTextEdit;

// Where the panel's content comes from: the rows that edit the one string its type reads,
// with a note on how that string is written.
class SourceSection : public InspectorSection {
    Q_OBJECT

public:
    explicit SourceSection(QWidget* parent = nullptr);

    void showPanel(const Panel& panel) override;

    // Lines the Command and Template fields grow to before they scroll.
    static constexpr int kMaxSourceLines = 6;

private:
    void buildRows(PanelType type);
    void addLine(const QString& label, const QString& name, bool monospaced,
                 const QString& placeholder = {});
    void addText(const QString& label, const QString& name, bool monospaced);
    void addNote(const QString& text);
    void editString(const QString& text);

    QFormLayout* m_form;
    QVBoxLayout* m_column;
    QLabel* m_note = nullptr;
    std::optional<PanelType> m_type;
    // The panel's string that the rows edit; none for system stats.
    QString Panel::*m_string = nullptr;
    QLineEdit* m_line = nullptr;
    GrowingTextEdit* m_text = nullptr;
};

} // namespace corkwheel
