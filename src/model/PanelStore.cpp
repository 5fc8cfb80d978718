// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/PanelStore.h"

#include "model/Clock.h"
#include "model/ClockTimer.h"
#include "model/DocumentFile.h"
#include "model/PanelDocument.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <sys/stat.h>

namespace corkwheel {

namespace {

// The document holds commands that run on their own, so nobody but its owner may read or
// change it: the folder Corkwheel makes is 0700 and the file 0600.
void makeOwnerOnlyFolder(const QString& folder) {
    if (QFileInfo::exists(folder))
        return;
    QDir().mkpath(QFileInfo(folder).absolutePath());
    ::mkdir(QFile::encodeName(folder).constData(), S_IRWXU);
}

} // namespace

PanelStore::PanelStore(QObject* parent) : PanelStore(defaultFileLocation(), parent) {}

PanelStore::PanelStore(const QString& fileLocation, QObject* parent)
    : PanelStore(fileLocation, Clock::system(), parent) {}

PanelStore::PanelStore(const QString& fileLocation, const Clock& clock, QObject* parent)
    : QObject(parent), m_fileLocation(fileLocation), m_clock(clock),
      m_saveTimer(clock.makeTimer([this] { persist(); })) {
    load();
}

// A change made just before Corkwheel ends (a drag let go, then the session logs out) is
// not lost to the save delay.
PanelStore::~PanelStore() {
    if (m_saveTimer->isActive())
        persist();
}

QString PanelStore::defaultFileLocation() {
    const QString dataHome = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (dataHome.isEmpty())
        qFatal("Corkwheel: no per-user data directory");
    return dataHome + QStringLiteral("/" CORKWHEEL_APP_NAME "/panels.json");
}

QList<Panel> PanelStore::starterPanels() {
    Panel clock = Panel::makeDefault(PanelType::Clock);
    clock.name = tr("Clock");
    clock.frame = {40, 40, 360, 80};
    clock.style.fontSize = 28;

    Panel stats = Panel::makeDefault(PanelType::SystemStats);
    stats.name = tr("System Stats");
    stats.frame = {40, 140, 280, 210};
    stats.style.showGlassBackground = true;

    Panel uptime = Panel::makeDefault(PanelType::Shell);
    uptime.name = tr("Uptime");
    uptime.frame = {40, 370, 420, 60};
    uptime.shellCommand = QStringLiteral("uptime");

    return {clock, stats, uptime};
}

void PanelStore::load() {
    makeOwnerOnlyFolder(QFileInfo(m_fileLocation).absolutePath());
    DocumentFile::removeLeftovers(m_fileLocation);
    const auto bytes = DocumentFile::readAtMost(m_fileLocation, kMaxDocumentBytes);
    auto decoded = bytes ? PanelDocument::decode(*bytes) : std::nullopt;
    if (!decoded) {
        // An unreadable document is silently replaced by the starter panels.
        m_panels = starterPanels();
        scheduleSave();
        return;
    }
    m_panels = std::move(*decoded);
}

void PanelStore::setEditMode(bool on) {
    if (m_isEditMode == on)
        return;
    m_isEditMode = on;
    Q_EMIT isEditModeChanged(on);
}

void PanelStore::setPanelsHidden(bool hidden) {
    if (m_panelsHidden == hidden)
        return;
    m_panelsHidden = hidden;
    Q_EMIT panelsHiddenChanged(hidden);
}

void PanelStore::addPanel(PanelType type) {
    Panel panel = Panel::makeDefault(type);
    const double cascade = static_cast<double>(m_panels.size() % 6) * 24;
    panel.frame.x += cascade;
    panel.frame.y += cascade;
    m_panels.append(panel);
    Q_EMIT panelsChanged();
    scheduleSave();
}

void PanelStore::removePanel(const QUuid& id) {
    m_panels.removeIf([&id](const Panel& panel) { return panel.id == id; });
    Q_EMIT panelsChanged();
    // Scheduled even when nothing matched: it rewrites the same content.
    scheduleSave();
}

void PanelStore::update(const Panel& panel) {
    const qsizetype index = indexOf(panel.id);
    if (index < 0)
        return;
    m_panels[index] = panel;
    Q_EMIT panelsChanged();
    scheduleSave();
}

void PanelStore::updateFrame(const QUuid& id, const PanelFrame& frame) {
    const qsizetype index = indexOf(id);
    if (index < 0)
        return;
    m_panels[index].frame = frame;
    Q_EMIT panelsChanged();
    scheduleSave();
}

void PanelStore::scheduleSave() {
    m_saveTimer->startFor(m_clock.nowMSecsSinceEpoch() + kSaveDelayMs);
}

void PanelStore::persist() {
    const auto document = PanelDocument::encode(m_panels);
    if (!document)
        return;
    if (!DocumentFile::replaceAtomically(m_fileLocation, *document))
        return;
    Q_EMIT documentWritten();
}

qsizetype PanelStore::indexOf(const QUuid& id) const {
    for (qsizetype i = 0; i < m_panels.size(); ++i) {
        if (m_panels.at(i).id == id)
            return i;
    }
    return -1;
}

} // namespace corkwheel
