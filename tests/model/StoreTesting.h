// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Shared by the store's tests: files read and written whole, a data folder of the test's
// own, where the store's default document lies, and panels compared without their ids.

#include "model/Panel.h"
#include "model/PanelStore.h"

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QString>
#include <QTemporaryDir>

namespace corkwheel::test {

inline QByteArray readFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline bool writeFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

// Drops the ids, which are random, so lists can be compared with the starter panels.
inline QList<Panel> withoutIds(QList<Panel> panels) {
    for (Panel& panel : panels)
        panel.id = QUuid();
    return panels;
}

inline bool areStarterPanels(const QList<Panel>& panels) {
    return withoutIds(panels) == withoutIds(PanelStore::starterPanels());
}

// XDG_DATA_HOME points into a folder of its own for as long as this lives.
class PrivateDataHome {
public:
    PrivateDataHome() { qputenv("XDG_DATA_HOME", QFile::encodeName(m_folder.path())); }

    bool isValid() const { return m_folder.isValid(); }
    QString path() const { return m_folder.path(); }
    QString filePath(const QString& name) const { return m_folder.filePath(name); }

private:
    QTemporaryDir m_folder;
};

} // namespace corkwheel::test
