// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QWidget>

class QLabel;
class QLineEdit;

namespace corkwheel {

// A short dimmed label and a field that edits one number as the user's locale writes it. A
// screen reader calls the field `name`, which says in words what the label abbreviates.
// Every keystroke that leaves a readable number announces it; one that doesn't (an empty
// field, a lone minus sign) announces nothing, and leaving the field shows the number again.
class LabeledField : public QWidget {
    Q_OBJECT

public:
    LabeledField(const QString& label, const QString& name, QWidget* parent = nullptr);

    // Shows `value` without announcing it. Text the user is typing that already reads as
    // `value` ("12." for 12) is left as it stands.
    void setValue(double value);
    double value() const { return m_value; }

    QString label() const;
    QLabel* labelWidget() const { return m_label; }
    QLineEdit* lineEdit() const { return m_field; }

    static constexpr int kLabelWidth = 14;

Q_SIGNALS:
    void valueEdited(double value);

protected:
    void changeEvent(QEvent* event) override;

private:
    void textEdited(const QString& text);
    void showValue();

    double m_value = 0;
    QLabel* m_label;
    QLineEdit* m_field;
};

} // namespace corkwheel
