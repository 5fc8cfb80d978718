// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/FormSection.h"

#include <QFrame>
#include <QLabel>
#include <QVBoxLayout>

namespace corkwheel {

FormSection::FormSection(const QString& title, QWidget* parent)
    : QWidget(parent), m_header(new QLabel(title, this)), m_body(new QFrame(this)) {
    // Plain text, so that the "&" of a title is shown rather than taken for a shortcut.
    m_header->setTextFormat(Qt::PlainText);
    m_header->setObjectName(QStringLiteral("sectionHeader"));
    QFont font = m_header->font();
    font.setBold(true);
    m_header->setFont(font);
    m_body->setObjectName(QStringLiteral("sectionBody"));
    m_body->setFrameShape(QFrame::StyledPanel);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_header);
    layout->addWidget(m_body);
}

QString FormSection::title() const {
    return m_header->text();
}

QWidget* FormSection::body() const {
    return m_body;
}

} // namespace corkwheel
