// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/UserVisibleMounts.h"

#include <QHash>
#include <QSet>

namespace corkwheel {

namespace {

bool isDiskMount(const MountEntry& mount) {
    return mount.source.startsWith(u"/dev/") && mount.fileSystemType != u"squashfs";
}

// How far below the top of its file system a mount starts: 0 for the whole file system.
qsizetype rootDepth(const MountEntry& mount) {
    return mount.root == u"/" ? 0 : mount.root.count(u'/');
}

// A device mounted several times (bind mounts, subvolumes) is listed once, under the mount
// that shows the most of it (its whole file system when that is mounted), the first of
// equals. That keeps a bind-mounted single file from standing in for the disk.
QSet<qsizetype> oneMountPerDevice(const QList<MountEntry>& mounts) {
    QHash<QString, qsizetype> chosenBySource;
    for (qsizetype i = 0; i < mounts.size(); ++i) {
        if (!isDiskMount(mounts[i]))
            continue;
        const auto it = chosenBySource.constFind(mounts[i].source);
        if (it == chosenBySource.cend())
            chosenBySource.insert(mounts[i].source, i);
        else if (rootDepth(mounts[i]) < rootDepth(mounts[*it]))
            chosenBySource.insert(mounts[i].source, i);
    }
    const QList<qsizetype> chosen = chosenBySource.values();
    return QSet<qsizetype>(chosen.cbegin(), chosen.cend());
}

} // namespace

bool isNetworkFileSystem(const QString& fileSystemType) {
    static const QSet<QString> kNetworkTypes{QStringLiteral("nfs"), QStringLiteral("nfs4"),
                                             QStringLiteral("cifs"), QStringLiteral("smb3"),
                                             QStringLiteral("fuse.sshfs")};
    return kNetworkTypes.contains(fileSystemType);
}

QList<MountEntry> userVisibleMounts(const QList<MountEntry>& mounts) {
    const QSet<qsizetype> disks = oneMountPerDevice(mounts);
    QList<MountEntry> visible;
    for (qsizetype i = 0; i < mounts.size(); ++i) {
        if (disks.contains(i) || isNetworkFileSystem(mounts[i].fileSystemType))
            visible.append(mounts[i]);
    }
    return visible;
}

} // namespace corkwheel
