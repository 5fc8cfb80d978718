// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAccessibleWidget>

namespace corkwheel {

class StepperLabel;

// A stepper as a spin control: named for what it sets, read out as its label reads
// ("Refresh every 5s"), with the number, its range and its step for a screen reader to
// change. Its parts are the two buttons; the label is its value rather than a part.
class StepperAccessible : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit StepperAccessible(StepperLabel* stepper);

    QString text(QAccessible::Text text) const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;

    QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;
    QVariant maximumValue() const override;
    QVariant minimumValue() const override;
    QVariant minimumStepSize() const override;

private:
    StepperLabel* stepper() const;
    QList<QWidget*> buttons() const;
};

} // namespace corkwheel
