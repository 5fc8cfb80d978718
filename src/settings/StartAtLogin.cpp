// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/StartAtLogin.h"

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
    return QStringLiteral("[Desktop Entry]\n"
                          "Type=Application\n"
                          "Name=Corkwheel\n"
                          "Comment=Show small information panels on your desktop\n"
                          "Exec=%1\n"
                          "Icon=io.github.corkwheel.Corkwheel\n"
                          "Terminal=false\n"
                          "X-GNOME-Autostart-enabled=true\n")
        .arg(execValue(executable))
        .toUtf8();
}

} // namespace corkwheel
