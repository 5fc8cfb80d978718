// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/DiskLabels.h"

#include <cctype>

namespace corkwheel {

namespace {

const QString kLabelDirectory = QStringLiteral("/dev/disk/by-label/");

bool startsHexEscape(const QByteArray& name, qsizetype i) {
    return i + 3 < name.size() && name[i] == '\\' && name[i + 1] == 'x' &&
           std::isxdigit(static_cast<unsigned char>(name[i + 2])) &&
           std::isxdigit(static_cast<unsigned char>(name[i + 3]));
}

} // namespace

QHash<QString, QString> diskLabelsByDevice(const KernelFiles& files) {
    QHash<QString, QString> labels;
    for (const QString& linkName : files.entryNames(kLabelDirectory)) {
        const QString device = files.canonicalPath(kLabelDirectory + linkName);
        if (!device.isEmpty() && !labels.contains(device))
            labels.insert(device, decodeUdevEscapes(linkName));
    }
    return labels;
}

QString decodeUdevEscapes(const QString& linkName) {
    // Escapes stand for bytes, and several of them can make up one UTF-8 character.
    const QByteArray name = linkName.toUtf8();
    QByteArray decoded;
    decoded.reserve(name.size());
    for (qsizetype i = 0; i < name.size(); ++i) {
        if (startsHexEscape(name, i)) {
            decoded.append(char(name.mid(i + 2, 2).toUInt(nullptr, 16)));
            i += 3;
        } else {
            decoded.append(name[i]);
        }
    }
    return QString::fromUtf8(decoded);
}

} // namespace corkwheel
