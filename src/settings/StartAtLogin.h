// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace corkwheel {

// Whether Corkwheel starts when the user logs in: an entry in the user's XDG autostart
// folder, which every freedesktop session starts. The file is the only record, so removing
// it by hand turns the option off.
class StartAtLogin {
public:
    // $XDG_CONFIG_HOME/autostart/corkwheel.desktop.
    static QString entryPath();

    static bool isEnabled();
    // Writes the entry (starting `executable`) or removes it; false when that failed.
    static bool setEnabled(bool enabled, const QString& executable);

    // The autostart entry that starts `executable`: the installed desktop entry, without
    // its launcher actions, starting `executable` itself when the session starts.
    static QByteArray entryText(const QString& executable);
};

} // namespace corkwheel
