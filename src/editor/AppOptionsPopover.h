#pragma once

#include <QFrame>
#include <QPointer>

class QCheckBox;

namespace corkwheel {

class AppSettings;

// The small popup under the editor's "App Options" button with the two preferences. It
// never refuses a change itself: AppSettings keeps at least one of them on, and the boxes
// show whatever it decides.
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

    static constexpr int kNoteWidth = 260;

Q_SIGNALS:
    void closed();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void showSettings();

    AppSettings& m_settings;
    QCheckBox* m_dockIcon = nullptr;
    QCheckBox* m_menuBarItem = nullptr;
    QPointer<QWidget> m_anchor;
};

} // namespace corkwheel
