// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QWidget>

class QFrame;
class QLabel;

namespace corkwheel {

// One section of a grouped form: a header over a framed box that holds the section's rows.
// The rows go into `body()`.
class FormSection : public QWidget {
    Q_OBJECT

public:
    explicit FormSection(const QString& title, QWidget* parent = nullptr);

    QString title() const;
    QWidget* body() const;

private:
    QLabel* m_header;
    QFrame* m_body;
};

} // namespace corkwheel
