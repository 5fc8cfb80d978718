// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFile>
#include <QSettings>
#include <QString>
#include <QTemporaryDir>

namespace corkwheel::test {

// XDG_CONFIG_HOME in a folder of its own while the test runs, so that the preferences and
// the autostart entry it writes never reach the user's.
class PrivateConfigHome {
public:
    // QSettings fixes its folders on first use, so this comes before any of them.
    bool use() {
        if (!m_folder.isValid())
            return false;
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_folder.path()));
        return true;
    }

    QString path() const { return m_folder.path(); }

    // Forgets the preferences an earlier test function stored.
    static void clearPreferences() {
        QSettings settings(QSettings::NativeFormat, QSettings::UserScope,
                           QStringLiteral("Corkwheel"), QStringLiteral("Corkwheel"));
        settings.clear();
        settings.sync();
    }

private:
    QTemporaryDir m_folder;
};

} // namespace corkwheel::test
