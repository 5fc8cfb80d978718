// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFrame>

class QCheckBox;

namespace corkwheel {

class AppSettings;

// The small popup under the editor's "App Options" button with the two preferences and the
// start at login option. It never refuses a change itself: AppSettings keeps at least one
// of the two preferences on, and the boxes show whatever it decides.
class AppOptionsPopover : public QFrame {
    Q_OBJECT

public:
    explicit AppOptionsPopover(AppSettings& settings, QWidget* parent = nullptr);

    // Shows the popup under `anchor`. Like any popup it closes on a press outside it, and
    // Qt keeps a press on the button that opened it from reaching that button again.
    void popUp(QWidget* anchor);

    QCheckBox* dockIconBox() const { return m_dockIcon; }
    QCheckBox* menuBarItemBox() const { return m_menuBarItem; }
    QCheckBox* startAtLoginBox() const { return m_startAtLogin; }

    static constexpr int kNoteWidth = 260;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void showSettings();
    void showStartAtLogin();
    void setStartAtLogin(bool enabled);

    AppSettings& m_settings;
    QCheckBox* m_dockIcon = nullptr;
    QCheckBox* m_menuBarItem = nullptr;
    QCheckBox* m_startAtLogin = nullptr;
};

} // namespace corkwheel
