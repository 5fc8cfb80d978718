// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArrayView>
#include <QList>
#include <QString>

namespace corkwheel {

// One line of /proc/self/mountinfo, reduced to what deciding on volumes needs.
struct MountEntry {
    // The directory inside the file system that is mounted; "/" for the whole of it.
    QString root;
    QString mountPoint;
    QString fileSystemType;
    // The device or remote share, such as "/dev/sda1" or "server:/export".
    QString source;

    bool operator==(const MountEntry&) const = default;
};

// Every well-formed line of a mountinfo table, in the kernel's order (parents before the
// mounts on top of them). Malformed lines are skipped.
QList<MountEntry> parseMountInfo(QByteArrayView mountInfo);

// The kernel writes space, tab, newline and backslash in paths as "\ooo" octal escapes.
QString decodeMountInfoEscapes(QByteArrayView field);

} // namespace corkwheel
