#pragma once

#include "engine/Clock.h"
#include "engine/RunnerServices.h"
#include "model/Panel.h"
#include "model/PanelDocument.h"
#include "model/PanelStore.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace corkwheel {

inline char* toString(const PanelFrame& frame) {
    return QTest::toString(QStringLiteral("PanelFrame(%1, %2, %3 x %4)")
                               .arg(frame.x)
                               .arg(frame.y)
                               .arg(frame.width)
                               .arg(frame.height));
}

} // namespace corkwheel

namespace corkwheel::test {

// Text panels read nothing but the clock, so the runners of these tests touch neither the
// machine's statistics nor a shell.
inline RunnerServices clockOnlyServices() {
    RunnerServices services;
    services.clock = &Clock::system();
    return services;
}

inline Panel textPanel(const QString& name, const PanelFrame& frame, bool enabled = true) {
    Panel panel = Panel::makeDefault(PanelType::Text);
    panel.name = name;
    panel.frame = frame;
    panel.isEnabled = enabled;
    panel.textTemplate = name;
    return panel;
}

// A store whose document, in a folder of its own, already holds `panels`.
class StoreFixture {
    // First, so that it outlives the store.
    QTemporaryDir m_folder;

public:
    explicit StoreFixture(const QList<Panel>& panels) {
        const QString location = documentPath();
        QDir().mkpath(QFileInfo(location).absolutePath());
        QFile file(location);
        if (file.open(QIODevice::WriteOnly))
            file.write(PanelDocument::encode(panels).value_or(QByteArray()));
        file.close();
        store = std::make_unique<PanelStore>(location);
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
