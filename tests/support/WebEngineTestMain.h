// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// The main() of a test that runs the web engine. Webpage panels keep their web data under
// the XDG cache folder; a test keeps it in a home folder of its own, removed when the test
// ends, so nothing is left behind in the real one.

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace corkwheel::test {

// Set before the application is made, so that Qt and the web engine only ever see these.
inline void useTemporaryHome(const QTemporaryDir& home) {
    const QDir folder(home.path());
    qputenv("HOME", QFile::encodeName(folder.path()));
    qputenv("XDG_CACHE_HOME", QFile::encodeName(folder.filePath(QStringLiteral(".cache"))));
    qputenv("XDG_DATA_HOME", QFile::encodeName(folder.filePath(QStringLiteral(".local/share"))));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder.filePath(QStringLiteral(".config"))));
}

} // namespace corkwheel::test

#define CORKWHEEL_WEBENGINE_TEST_MAIN(TestObject, Application)                                     \
    int main(int argc, char* argv[]) {                                                             \
        QTemporaryDir home;                                                                        \
        corkwheel::test::useTemporaryHome(home);                                                   \
        Application app(argc, argv);                                                               \
        TestObject test;                                                                           \
        QTEST_SET_MAIN_SOURCE_PATH                                                                 \
        return QTest::qExec(&test, argc, argv);                                                    \
    }
