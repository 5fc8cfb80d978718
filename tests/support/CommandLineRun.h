// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// The corkwheel command run to its end beside a running CorkwheelProcess, in the same session:
// the same XDG folders, display and session bus.

#include "support/CorkwheelProcess.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>

namespace corkwheel::test {

struct CommandLineRun {
    int exitCode = -1;
    QString standardOutput;
    QString standardError;
};

// The folder holding the XDG folders of a CorkwheelProcess, found from its document's path.
inline QString homeOf(const CorkwheelProcess& corkwheel) {
    return QFileInfo(corkwheel.documentPath()).dir().absoluteFilePath(QStringLiteral("../.."));
}

inline QProcessEnvironment sessionEnvironment(const QString& home) {
    const QDir folder(home);
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("XDG_DATA_HOME"), folder.filePath(QStringLiteral("data")));
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), folder.filePath(QStringLiteral("config")));
    env.insert(QStringLiteral("XDG_CACHE_HOME"), folder.filePath(QStringLiteral("cache")));
    env.insert(QStringLiteral("XDG_RUNTIME_DIR"), folder.filePath(QStringLiteral("runtime")));
    return env;
}

inline CommandLineRun runCorkwheel(const QStringList& arguments,
                                   const QProcessEnvironment& environment) {
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(CORKWHEEL_BINARY), arguments);
    CommandLineRun result;
    if (!process.waitForFinished(kWait * 2)) {
        process.kill();
        process.waitForFinished(kWait);
        return result;
    }
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.standardOutput = QString::fromLocal8Bit(process.readAllStandardOutput());
    result.standardError = QString::fromLocal8Bit(process.readAllStandardError());
    return result;
}

} // namespace corkwheel::test
