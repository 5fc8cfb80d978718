// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/SourceSection.h"

#include "editor/GrowingTextEdit.h"
#include "editor/SecondaryText.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace corkwheel {

namespace {

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

} // namespace

SourceSection::SourceSection(QWidget* parent)
    : InspectorSection(tr("Source"), QStringLiteral("sourceSection"), parent),
      m_form(new QFormLayout) {
    m_form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    m_form->setRowWrapPolicy(QFormLayout::DontWrapRows);
    // A note goes below the form, not into a row of it: a form counts a wrapping label as
    // high as its text needs at the form's width but lays it out at a height of the label's
    // own choosing, and squeezes the rows above by the difference, as a note long enough to
    // take two lines somewhere (in a longer language) shows.
    m_column = new QVBoxLayout(body());
    m_column->addLayout(m_form);
}

void SourceSection::showPanel(const Panel& panel) {
    if (m_type != panel.type)
        buildRows(panel.type);
    if (!m_string)
        return;
    const QString& text = panel.*m_string;
    if (m_line && m_line->text() != text)
        m_line->setText(text);
    if (m_text)
        m_text->showText(text);
}

// The rows for `type`; the type is chosen when a panel is added, so this normally happens
// once.
void SourceSection::buildRows(PanelType type) {
    while (m_form->rowCount() > 0)
        m_form->removeRow(0);
    delete m_note;
    m_note = nullptr;
    m_type = type;
    m_string = sourceStringOf(type);
    m_line = nullptr;
    m_text = nullptr;
    switch (type) {
    case PanelType::Shell:
        addText(tr("Command"), QStringLiteral("commandField"), true);
        break;
    case PanelType::File:
        addLine(tr("File Path"), QStringLiteral("filePathField"), true);
        break;
    case PanelType::Text:
        addText(tr("Template"), QStringLiteral("templateField"), false);
        addNote(tr("Use {date:FORMAT} tokens, e.g. {date:EEEE, MMMM d}"));
        break;
    case PanelType::Clock:
        addLine(tr("Date Format"), QStringLiteral("dateFormatField"), true);
        addNote(tr("Uses ICU date patterns, e.g. h:mm:ss a"));
        break;
    case PanelType::Image:
        addLine(tr("Path or URL"), QStringLiteral("imageSourceField"), false);
        break;
    case PanelType::SystemStats:
        addNote(tr("Shows live CPU, memory, and disk usage. No configuration needed."));
        break;
    case PanelType::Webpage:
        //: An example address, shown in the empty field.
        addLine(tr("URL"), QStringLiteral("urlField"), false, tr("example.com"));
        // The interval is the one the General section's stepper sets.
        addNote(tr("Reloads automatically at the refresh interval below."));
        break;
    }
}

void SourceSection::addLine(const QString& label, const QString& name, bool monospaced,
                            const QString& placeholder) {
    m_line = new QLineEdit;
    m_line->setObjectName(name);
    m_line->setPlaceholderText(placeholder);
    if (monospaced)
        m_line->setFont(monospacedBodyFont());
    connect(m_line, &QLineEdit::textEdited, this, &SourceSection::editString);
    m_form->addRow(label, m_line);
}

void SourceSection::addText(const QString& label, const QString& name, bool monospaced) {
    m_text = new GrowingTextEdit(kMaxSourceLines);
    m_text->setObjectName(name);
    if (monospaced)
        m_text->setFont(monospacedBodyFont());
    connect(m_text, &GrowingTextEdit::textEdited, this, &SourceSection::editString);
    m_form->addRow(label, m_text);
}

void SourceSection::addNote(const QString& text) {
    m_note = SecondaryText::note(text);
    m_note->setObjectName(QStringLiteral("sourceNote"));
    m_column->addWidget(m_note);
}

void SourceSection::editString(const QString& text) {
    const SourceString field = m_string;
    Q_EMIT edited([field, &text](Panel& panel) { panel.*field = text; });
}

} // namespace corkwheel
