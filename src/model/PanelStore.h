// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/Panel.h"

#include <QList>
#include <QObject>
#include <QTimer>
#include <QUuid>

namespace corkwheel {

// The single owner of the user's panels and of the two run-time flags. It loads the
// document when it is made (or seeds the starter panels), and writes the whole list back
// 0.4 s after the last change. The flags are never saved.
class PanelStore : public QObject {
    Q_OBJECT

public:
    // Uses the document in the user's data directory; stops the program when there is none.
    explicit PanelStore(QObject* parent = nullptr);
    // Uses the document at `fileLocation`; its folder is created when missing.
    explicit PanelStore(const QString& fileLocation, QObject* parent = nullptr);

    // $XDG_DATA_HOME/Corkwheel/panels.json.
    static QString defaultFileLocation();
    static QList<Panel> starterPanels();

    const QList<Panel>& panels() const { return m_panels; }
    QString fileLocation() const { return m_fileLocation; }

    bool isEditMode() const { return m_isEditMode; }
    void setEditMode(bool on);
    bool panelsHidden() const { return m_panelsHidden; }
    void setPanelsHidden(bool hidden);

    void addPanel(PanelType type);
    void removePanel(const QUuid& id);
    void update(const Panel& panel);
    void updateFrame(const QUuid& id, const PanelFrame& frame);

    // Restarts the 0.4 s save timer, so a burst of changes gives one write.
    void scheduleSave();
    // Writes at once what the save timer is still waiting to write, if anything: the timer
    // ends with the process, and the changes it waits for with it.
    void savePendingChanges();

    static constexpr int kSaveDelayMs = 400;
    // A longer file is unreadable, like any other that does not decode: a hundred thousand
    // panels take about 60 MB, and a file without end (a device, say) must not be read
    // into memory without end.
    static constexpr qint64 kMaxDocumentBytes = 64 * 1024 * 1024;

Q_SIGNALS:
    void panelsChanged();
    void isEditModeChanged(bool on);
    void panelsHiddenChanged(bool hidden);
    // After the document was written to disk.
    void documentWritten();

private:
    void load();
    void persist();
    qsizetype indexOf(const QUuid& id) const;

    QList<Panel> m_panels;
    bool m_isEditMode = false;
    bool m_panelsHidden = false;
    QString m_fileLocation;
    QTimer m_saveTimer;
};

} // namespace corkwheel
