// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

namespace corkwheel::test {

// Writes `bytes` to `name` in `folder` and gives the file's path.
inline QString writeFile(const QTemporaryDir& folder, const QString& name,
                         const QByteArray& bytes) {
    const QString path = folder.filePath(name);
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
    return path;
}

} // namespace corkwheel::test
