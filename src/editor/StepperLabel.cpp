// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/StepperLabel.h"

#include "editor/EditorAccessibility.h"
#include "editor/FocusRing.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QToolButton>

#include <algorithm>
#include <cmath>

namespace corkwheel {

namespace {

// 2^63: the first double past the signed 64-bit range; its negation is the range's start.
constexpr double kWholeNumberLimit = 9223372036854775808.0;

QToolButton* makeStepButton(const QString& text, const QString& name, QWidget* parent) {
    auto* button = new QToolButton(parent);
    button->setText(text);
    button->setObjectName(name);
    button->setAutoRepeat(true);
    // The stepper itself takes the keyboard and its arrows; a stop on each button as well
    // would only lengthen the way through the form.
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}

} // namespace

qint64 checkedWholeNumber(double value) {
    const double whole = std::trunc(value);
    if (!std::isfinite(whole) || whole < -kWholeNumberLimit || whole >= kWholeNumberLimit)
        qFatal("A stepper value has no whole number");
    return static_cast<qint64>(whole);
}

QString stepperLabelText(const QString& format, double value) {
    return format.arg(checkedWholeNumber(value));
}

StepperLabel::StepperLabel(const QString& name, const QString& format, double minimum,
                           double maximum, double step, QWidget* parent)
    : QWidget(parent), m_format(format), m_minimum(minimum), m_maximum(maximum), m_step(step),
      m_value(minimum), m_label(new QLabel(this)),
      m_decrement(
          makeStepButton(QStringLiteral(u"\u2212"), QStringLiteral("decrementButton"), this)),
      m_increment(makeStepButton(QStringLiteral("+"), QStringLiteral("incrementButton"), this)) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_label, 1);
    layout->addWidget(m_decrement);
    layout->addWidget(m_increment);
    connect(m_decrement, &QToolButton::clicked, this, [this] { stepBy(-m_step); });
    connect(m_increment, &QToolButton::clicked, this, [this] { stepBy(m_step); });
    EditorAccessibility::install();
    setAccessibleName(name);
    m_decrement->setAccessibleName(tr("Decrease %1").arg(name));
    m_increment->setAccessibleName(tr("Increase %1").arg(name));
    setFocusPolicy(Qt::StrongFocus);
    new FocusRing(this);
    setValue(minimum);
}

void StepperLabel::setValue(double value) {
    const bool changed = value != m_value;
    m_value = value;
    m_label->setText(stepperLabelText(m_format, value));
    updateButtons();
    // A screen reader reads the new value out while the stepper has the focus.
    if (changed && QAccessible::isActive()) {
        QAccessibleValueChangeEvent event(this, value);
        QAccessible::updateAccessibility(&event);
    }
}

QString StepperLabel::text() const {
    return m_label->text();
}

// A step that would leave the range stops at its end; a value already outside the range
// (from a hand-edited document) is brought back into it by the first step.
void StepperLabel::stepBy(double delta) {
    editValue(m_value + delta);
}

void StepperLabel::editValue(double value) {
    const double stepped = std::clamp(value, m_minimum, m_maximum);
    if (stepped == m_value)
        return;
    setValue(stepped);
    Q_EMIT valueEdited(stepped);
}

void StepperLabel::keyPressEvent(QKeyEvent* event) {
    if ((event->modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier) {
        QWidget::keyPressEvent(event);
        return;
    }
    switch (event->key()) {
    case Qt::Key_Up:
        stepBy(m_step);
        break;
    case Qt::Key_Down:
        stepBy(-m_step);
        break;
    case Qt::Key_PageUp:
        stepBy(m_step * kPageSteps);
        break;
    case Qt::Key_PageDown:
        stepBy(-m_step * kPageSteps);
        break;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    event->accept();
}

void StepperLabel::updateButtons() {
    m_decrement->setEnabled(!(m_value <= m_minimum));
    m_increment->setEnabled(!(m_value >= m_maximum));
}

} // namespace corkwheel
