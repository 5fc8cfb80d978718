// SPDX-License-Identifier: GPL-3.0-or-later

#include "FuzzInput.h"
#include "engine/MountEntry.h"
#include "engine/MountedVolumes.h"
#include "engine/UserVisibleMounts.h"
#include "support/FakeSystemSource.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <QSet>

#include <string>

using namespace corkwheel;

namespace {

bool isOctal(char c) {
    return c >= '0' && c <= '7';
}

// A field as the kernel writes it: space, tab, newline and backslash as "\ooo".
QByteArray escaped(const std::string& raw) {
    QByteArray field;
    for (const char c : raw) {
        if (c != ' ' && c != '\t' && c != '\n' && c != '\\') {
            field += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        field += '\\';
        field += char('0' + (byte >> 6));
        field += char('0' + ((byte >> 3) & 7));
        field += char('0' + (byte & 7));
    }
    return field;
}

// What escaped() undoes: "\ooo" of a byte (\000 to \377) is that byte, anything else is
// itself.
QString unescaped(QByteArrayView field) {
    QByteArray raw;
    for (qsizetype i = 0; i < field.size(); ++i) {
        const QByteArrayView escape =
            field.sliced(i).first(std::min<qsizetype>(4, field.size() - i));
        if (escape.size() == 4 && escape[0] == '\\' && escape[1] >= '0' && escape[1] <= '3' &&
            isOctal(escape[2]) && isOctal(escape[3])) {
            raw += char((escape[1] - '0') * 64 + (escape[2] - '0') * 8 + (escape[3] - '0'));
            i += 3;
        } else {
            raw += field[i];
        }
    }
    return QString::fromUtf8(raw);
}

// Whether a mountinfo line says this: "id parent major:minor root mount-point options
// [tags...] - type source super-options", the tags ending at the first lone "-".
bool lineSays(QByteArrayView line, const MountEntry& entry) {
    const QList<QByteArrayView> fields = fuzz::piecesBetween(line, ' ');
    qsizetype separator = 6;
    while (separator < fields.size() && fields[separator] != "-")
        ++separator;
    return separator + 2 < fields.size() && unescaped(fields[3]) == entry.root &&
           unescaped(fields[4]) == entry.mountPoint &&
           unescaped(fields[separator + 1]) == entry.fileSystemType &&
           unescaped(fields[separator + 2]) == entry.source;
}

// Each entry comes from a line of its own, in the table's order.
bool entriesFollowLines(const QList<MountEntry>& entries, const QList<QByteArrayView>& lines) {
    qsizetype line = 0;
    for (const MountEntry& entry : entries) {
        while (line < lines.size() && !lineSays(lines[line], entry))
            ++line;
        if (line++ == lines.size())
            return false;
    }
    return true;
}

bool isDisk(const MountEntry& mount) {
    return mount.source.startsWith(u"/dev/") && mount.fileSystemType != u"squashfs";
}

bool isSubsequence(const QList<MountEntry>& part, const QList<MountEntry>& whole) {
    qsizetype next = 0;
    for (const MountEntry& mount : whole) {
        if (next < part.size() && part[next] == mount)
            ++next;
    }
    return next == part.size();
}

// The volumes of a table, in its order: every network share, and of the rest disks only,
// each device once; every disk device of the table shows.
bool volumesAreSharesAndDisksOnce(const QList<MountEntry>& mounts,
                                  const QList<MountEntry>& visible) {
    if (!isSubsequence(visible, mounts))
        return false;
    QSet<QString> shown;
    QSet<QString> shownAsDisk;
    for (const MountEntry& mount : visible) {
        shown.insert(mount.source);
        if (isNetworkFileSystem(mount.fileSystemType))
            continue;
        if (!isDisk(mount) || shownAsDisk.contains(mount.source))
            return false;
        shownAsDisk.insert(mount.source);
    }
    for (const MountEntry& mount : mounts) {
        if (isNetworkFileSystem(mount.fileSystemType)
                ? !visible.contains(mount)
                : isDisk(mount) && !shown.contains(mount.source))
            return false;
    }
    return true;
}

} // namespace

// Any text as /proc/self/mountinfo, followed by a well-formed line with fields taken from the
// same bytes, on a machine with no other file. The last entry is that line's, each entry is
// read from a line of its own, and the volumes listed are the mounts a user thinks of as
// volumes, each under its mount point.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider bytes(data, size);
    const std::string root = bytes.ConsumeRandomLengthString();
    const std::string mountPoint = bytes.ConsumeRandomLengthString();
    const std::string type = bytes.ConsumeRandomLengthString();
    const std::string source = bytes.ConsumeRandomLengthString();
    const QByteArray table = fuzz::inputText(data, size).toByteArray() + "\n36 35 98:0 " +
                             escaped(root) + ' ' + escaped(mountPoint) +
                             " rw,noatime master:1 shared:2 - " + escaped(type) + ' ' +
                             escaped(source) + " rw,errors=continue\n";
    const QList<QByteArrayView> lines = fuzz::piecesBetween(table, '\n');

    const QList<MountEntry> mounts = parseMountInfo(table);
    fuzz::require(mounts.size() <= lines.size() && entriesFollowLines(mounts, lines));
    fuzz::require(!mounts.isEmpty() &&
                  mounts.last() ==
                      MountEntry{QString::fromStdString(root), QString::fromStdString(mountPoint),
                                 QString::fromStdString(type), QString::fromStdString(source)});

    const QList<MountEntry> visible = userVisibleMounts(mounts);
    fuzz::require(volumesAreSharesAndDisksOnce(mounts, visible));
    test::FakeSystemSource machine;
    machine.setFile(QStringLiteral("/proc/self/mountinfo"), table);
    const QList<VolumeReading> volumes = readMountedVolumes(machine);
    fuzz::require(volumes.size() == visible.size());
    for (qsizetype i = 0; i < volumes.size(); ++i)
        fuzz::require(volumes[i].mountPoint == visible[i].mountPoint &&
                      volumes[i].name == visible[i].mountPoint);
    return 0;
}
