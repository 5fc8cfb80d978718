// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/Clock.h"
#include "model/Panel.h"
#include "model/PanelDocument.h"
#include "model/PanelStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QList>
#include <QTemporaryDir>

#include <memory>

namespace corkwheel::test {

// A store whose document, in a folder of its own, already holds `panels`; it saves on
// `clock`, which must outlive it.
class StoreFixture {
    // First, so that it outlives the store.
    QTemporaryDir m_folder;

public:
    explicit StoreFixture(const QList<Panel>& panels, const Clock& clock = Clock::system()) {
        const QString location = documentPath();
        QDir().mkpath(QFileInfo(location).absolutePath());
        QFile file(location);
        if (file.open(QIODevice::WriteOnly))
            file.write(PanelDocument::encode(panels).value_or(QByteArray()));
        file.close();
        store = std::make_unique<PanelStore>(location, clock);
    }

    QString documentPath() const { return m_folder.filePath(QStringLiteral("panels.json")); }

    QList<Panel> savedPanels() const {
        QFile file(documentPath());
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return PanelDocument::decode(file.readAll()).value_or(QList<Panel>());
    }

    std::unique_ptr<PanelStore> store;
};

} // namespace corkwheel::test
