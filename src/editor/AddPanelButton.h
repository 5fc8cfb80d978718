// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPushButton>

namespace corkwheel {

class PanelStore;

// "Add Panel": a full-width button whose menu offers every panel type. Choosing one adds a
// panel of that type at the end of the store's list and does nothing else.
class AddPanelButton : public QPushButton {
    Q_OBJECT

public:
    explicit AddPanelButton(PanelStore& store, QWidget* parent = nullptr);
};

} // namespace corkwheel
