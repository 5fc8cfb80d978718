// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>

class QAbstractButton;

namespace corkwheel {

// Lets Return (and Enter) press the button it watches, as Space does. Qt's buttons take
// Return only as a dialog's default button, and the editor is no dialog: without this, a
// keyboard user's Return on "Add Panel", a toolbar button or a colour well would do nothing.
class ReturnClicks : public QObject {
    Q_OBJECT

public:
    // Watches `button`, which owns the filter.
    static void install(QAbstractButton* button);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    using QObject::QObject;
};

} // namespace corkwheel
