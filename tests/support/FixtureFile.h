// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

namespace corkwheel::test {

// The contents of a file under tests/data; empty when it is missing, which the test's own
// expectations then catch.
inline QByteArray fixtureFile(const QString& relativePath) {
    QFile file(QStringLiteral(CORKWHEEL_TEST_DATA_DIR "/") + relativePath);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

} // namespace corkwheel::test
