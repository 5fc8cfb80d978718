// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/TildePath.h"

#include <QDir>

namespace corkwheel::TildePath {

QString expand(const QString& path) {
    if (path == u'~')
        return QDir::homePath();
    if (path.startsWith(QStringLiteral("~/")))
        return QDir::homePath() + path.mid(1);
    return path;
}

} // namespace corkwheel::TildePath
