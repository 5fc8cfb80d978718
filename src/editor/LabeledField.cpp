// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/LabeledField.h"

#include "editor/SecondaryText.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>

#include <cmath>
#include <optional>

namespace corkwheel {

namespace {

std::optional<double> readNumber(const QString& text) {
    bool ok = false;
    const double number = QLocale().toDouble(text.trimmed(), &ok);
    if (!ok || !std::isfinite(number))
        return std::nullopt;
    return number;
}

QString writeNumber(double value) {
    return QLocale().toString(value, 'f', QLocale::FloatingPointShortest);
}

} // namespace

LabeledField::LabeledField(const QString& label, const QString& name, QWidget* parent)
    : QWidget(parent), m_label(new QLabel(label, this)), m_field(new QLineEdit(this)) {
    SecondaryText::apply(*m_label);
    // As wide as the label's text, which a translation may make longer than the one letter
    // of English, and never narrower than kLabelWidth, which lines the fields up.
    m_label->setMinimumWidth(kLabelWidth);
    m_label->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    m_field->setAccessibleName(name);
    m_field->setPlaceholderText(label);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_label, 0, Qt::AlignVCenter);
    layout->addWidget(m_field, 1, Qt::AlignVCenter);
    connect(m_field, &QLineEdit::textEdited, this, &LabeledField::textEdited);
    connect(m_field, &QLineEdit::editingFinished, this, &LabeledField::showValue);
    showValue();
}

QString LabeledField::label() const {
    return m_label->text();
}

void LabeledField::setValue(double value) {
    m_value = value;
    if (readNumber(m_field->text()) == value)
        return;
    showValue();
}

void LabeledField::textEdited(const QString& text) {
    const std::optional<double> number = readNumber(text);
    if (!number)
        return;
    m_value = *number;
    Q_EMIT valueEdited(*number);
}

void LabeledField::showValue() {
    const QString text = writeNumber(m_value);
    if (m_field->text() != text)
        m_field->setText(text);
}

// The number is written the way the user's locale writes numbers, also after it changes.
void LabeledField::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LocaleChange)
        showValue();
}

} // namespace corkwheel
