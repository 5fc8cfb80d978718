// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/StepperAccessible.h"

#include "editor/StepperLabel.h"

#include <QToolButton>

#include <cmath>

namespace corkwheel {

StepperAccessible::StepperAccessible(StepperLabel* stepper)
    : QAccessibleWidget(stepper, QAccessible::SpinBox) {}

StepperLabel* StepperAccessible::stepper() const {
    return static_cast<StepperLabel*>(widget());
}

QList<QWidget*> StepperAccessible::buttons() const {
    return {stepper()->findChild<QToolButton*>(QStringLiteral("decrementButton")),
            stepper()->findChild<QToolButton*>(QStringLiteral("incrementButton"))};
}

QString StepperAccessible::text(QAccessible::Text text) const {
    if (text == QAccessible::Value)
        return stepper()->text();
    return QAccessibleWidget::text(text);
}

void* StepperAccessible::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::ValueInterface)
        return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
}

int StepperAccessible::childCount() const {
    return static_cast<int>(buttons().size());
}

QAccessibleInterface* StepperAccessible::child(int index) const {
    QWidget* button = buttons().value(index);
    return button ? QAccessible::queryAccessibleInterface(button) : nullptr;
}

int StepperAccessible::indexOfChild(const QAccessibleInterface* child) const {
    if (!child)
        return -1;
    return static_cast<int>(buttons().indexOf(qobject_cast<QWidget*>(child->object())));
}

QVariant StepperAccessible::currentValue() const {
    return stepper()->value();
}

// As a step of the user's: within the range, and announced to the inspector. A number the
// label cannot show (not finite) is no value at all.
void StepperAccessible::setCurrentValue(const QVariant& value) {
    bool ok = false;
    const double number = value.toDouble(&ok);
    if (ok && std::isfinite(number) && stepper()->isEnabled())
        stepper()->editValue(number);
}

QVariant StepperAccessible::maximumValue() const {
    return stepper()->maximum();
}

QVariant StepperAccessible::minimumValue() const {
    return stepper()->minimum();
}

QVariant StepperAccessible::minimumStepSize() const {
    return stepper()->step();
}

} // namespace corkwheel
