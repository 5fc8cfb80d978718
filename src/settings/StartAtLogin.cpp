// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/StartAtLogin.h"

#include "settings/InstalledDesktopEntry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>

namespace corkwheel {

namespace {

// An Exec value as the desktop entry format wants it: a path with spaces or other reserved
// characters is quoted, with the characters that stay special inside quotes escaped.
QString execValue(const QString& executable) {
    static const QString reserved = QStringLiteral(" \t\n\"'\\><~|&;$*?#()`");
    const bool needsQuotes = std::any_of(executable.cbegin(), executable.cend(),
                                         [](QChar c) { return reserved.contains(c); });
    if (!needsQuotes)
        return executable;
    QString escaped;
    for (const QChar c : executable) {
        if (c == u'"' || c == u'`' || c == u'$' || c == u'\\')
            escaped += u'\\';
        escaped += c;
    }
    // The desktop entry format reads backslashes once more as a string value.
    escaped.replace(QStringLiteral("\\"), QStringLiteral("\\\\"));
    return u'"' + escaped + u'"';
}

} // namespace

QString StartAtLogin::entryPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/autostart/corkwheel.desktop");
}

bool StartAtLogin::isEnabled() {
    return QFileInfo::exists(entryPath());
}

bool StartAtLogin::setEnabled(bool enabled, const QString& executable) {
    const QString path = entryPath();
    if (!enabled)
        return !QFileInfo::exists(path) || QFile::remove(path);
    if (!QDir().mkpath(QFileInfo(path).absolutePath()))
        return false;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(entryText(executable));
    return file.commit();
}

QByteArray StartAtLogin::entryText(const QString& executable) {
    const QString mainGroup = QStringLiteral("[Desktop Entry]");
    QString text = mainGroup + u'\n';
    bool inMainGroup = false;
    for (const QString& line : QString::fromUtf8(kInstalledDesktopEntry).split(u'\n')) {
        if (line.startsWith(u'[')) {
            inMainGroup = line == mainGroup;
            continue;
        }
        // The launcher's actions are groups of their own, which an autostart entry leaves
        // out, and so their list.
        if (!inMainGroup || line.isEmpty() || line.startsWith(u'#') ||
            line.startsWith(QStringLiteral("Actions=")))
            continue;
        text += line.startsWith(QStringLiteral("Exec="))
                    ? QStringLiteral("Exec=") + execValue(executable)
                    : line;
        text += u'\n';
    }
    text += QStringLiteral("X-GNOME-Autostart-enabled=true\n");
    return text.toUtf8();
}

} // namespace corkwheel
