// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/MountEntry.h"

#include <QByteArrayList>

#include <optional>

namespace corkwheel {

namespace {

// Fields before the optional tags: id, parent id, major:minor, root, mount point, options.
constexpr qsizetype kRootField = 3;
constexpr qsizetype kMountPointField = 4;
constexpr qsizetype kFirstOptionalField = 6;

bool isOctalDigit(char c) {
    return c >= '0' && c <= '7';
}

// "\ooo" stands for a byte, so it goes no higher than "\377"; "\400" and above are kept as
// they are written.
bool startsOctalEscape(QByteArrayView field, qsizetype i) {
    return field[i] == '\\' && i + 3 < field.size() && field[i + 1] >= '0' && field[i + 1] <= '3' &&
           isOctalDigit(field[i + 2]) && isOctalDigit(field[i + 3]);
}

std::optional<MountEntry> parseLine(const QByteArray& line) {
    const QByteArrayList fields = line.split(' ');
    // The optional tags end at a lone "-"; the file system type and source follow it.
    const qsizetype separator = fields.indexOf("-", kFirstOptionalField);
    if (separator < 0 || separator + 2 >= fields.size())
        return std::nullopt;
    return MountEntry{decodeMountInfoEscapes(fields[kRootField]),
                      decodeMountInfoEscapes(fields[kMountPointField]),
                      decodeMountInfoEscapes(fields[separator + 1]),
                      decodeMountInfoEscapes(fields[separator + 2])};
}

} // namespace

QList<MountEntry> parseMountInfo(QByteArrayView mountInfo) {
    QList<MountEntry> entries;
    for (const QByteArray& line : mountInfo.toByteArray().split('\n')) {
        if (const auto entry = parseLine(line))
            entries.append(*entry);
    }
    return entries;
}

QString decodeMountInfoEscapes(QByteArrayView field) {
    QByteArray decoded;
    decoded.reserve(field.size());
    for (qsizetype i = 0; i < field.size(); ++i) {
        if (startsOctalEscape(field, i)) {
            decoded.append(char(((field[i + 1] - '0') << 6) | ((field[i + 2] - '0') << 3) |
                                (field[i + 3] - '0')));
            i += 3;
        } else {
            decoded.append(field[i]);
        }
    }
    return QString::fromUtf8(decoded);
}

} // namespace corkwheel
