// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QString>

namespace corkwheel::test {

// Where the machines of tests/data/machines keep their /proc and /sys: one folder per
// machine, holding the kernel's files at their own paths below it.
inline QString machineTreeFolder(const QString& machine) {
    return QStringLiteral(CORKWHEEL_TEST_DATA_DIR "/machines/") + machine;
}

// Puts every file and folder of a machine's tree into a fake of the kernel's files, at the
// path it has on that machine ("proc/stat" at /proc/stat).
template <class Files> void loadMachineTree(Files& files, const QString& machine) {
    const QDir root(machineTreeFolder(machine));
    QDirIterator it(root.path(), QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        const QString onMachine = u'/' + root.relativeFilePath(path);
        if (it.fileInfo().isDir()) {
            files.setDirectory(onMachine);
            continue;
        }
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            files.setFile(onMachine, file.readAll());
    }
}

} // namespace corkwheel::test
