// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QSettings>

namespace corkwheel {

class DockPolicy;

// The two user preferences, kept in $XDG_CONFIG_HOME/Corkwheel/Corkwheel.conf. At least
// one of them always stays on, so the settings window can always be reached.
class AppSettings : public QObject {
    Q_OBJECT

public:
    explicit AppSettings(QObject* parent = nullptr);

    bool showDockIcon() const { return m_showDockIcon; }
    void setShowDockIcon(bool show);
    bool showMenuBarItem() const { return m_showMenuBarItem; }
    void setShowMenuBarItem(bool show);

    // Not owned; may be null until a window exists to carry the policy.
    void setDockPolicy(DockPolicy* policy) { m_dockPolicy = policy; }
    void applyDockPolicy();

    static inline const QString kShowDockIconKey = QStringLiteral("showDockIcon");
    static inline const QString kShowMenuBarItemKey = QStringLiteral("showMenuBarItem");

Q_SIGNALS:
    void showDockIconChanged(bool show);
    void showMenuBarItemChanged(bool show);

private:
    QSettings m_settings;
    bool m_showDockIcon = true;
    bool m_showMenuBarItem = true;
    DockPolicy* m_dockPolicy = nullptr;
};

} // namespace corkwheel
