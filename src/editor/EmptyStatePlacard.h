// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QWidget>

namespace corkwheel {

// What the editor's detail column shows when no existing panel is selected: a symbol, a
// title and a line that says what to do next.
class EmptyStatePlacard : public QWidget {
    Q_OBJECT

public:
    explicit EmptyStatePlacard(QWidget* parent = nullptr);

    QString title() const;
    QString description() const;
};

} // namespace corkwheel
