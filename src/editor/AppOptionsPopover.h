#pragma once

#include <QFrame>
#include <QPointer>

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

    // Shows the popup under `anchor`. A press on `anchor` while it is open only closes it,
    // so the button that opened it closes it again.
    void popUp(QWidget* anchor);
    // Closes it from the button that opened it, so the press that did so stops here.
    void closeWithoutReplay();

    QCheckBox* dockIconBox() const { return m_dockIcon; }
    QCheckBox* menuBarItemBox() const { return m_menuBarItem; }
    QCheckBox* startAtLoginBox() const { return m_startAtLogin; }

    static constexpr int kNoteWidth = 260;

Q_SIGNALS:
    void closed();

protected:
    void showEvent(QShowEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void showSettings();
    void showStartAtLogin();
    void setStartAtLogin(bool enabled);

    AppSettings& m_settings;
    QCheckBox* m_dockIcon = nullptr;
    QCheckBox* m_menuBarItem = nullptr;
    QCheckBox* m_startAtLogin = nullptr;
    QPointer<QWidget> m_anchor;
};

} // namespace corkwheel
