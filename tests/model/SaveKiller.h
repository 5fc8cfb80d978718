// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QProcess>
#include <QRandomGenerator>
#include <QSocketNotifier>
#include <QTimer>

#include <algorithm>
#include <optional>

#include <sys/inotify.h>
#include <unistd.h>

// Starts stores that each save a shorter panel list over a longer one (store_child save),
// sixteen at a time, and kills each with SIGKILL at a random moment of its save. The save is
// watched through its folder: a kill falls a random time after the first file of the save
// appears or changes there, from at once to a little after a typical save has ended, so the
// kills land in the writing itself, which lasts a few milliseconds of a save that mostly
// encodes.
class SaveKiller : public QObject {
public:
    // Without kills: the median time from the first change in a child's folder to its end.
    static int typicalSaveMs(const QStringList& documents) {
        SaveKiller timing(documents, std::nullopt);
        timing.run();
        std::sort(timing.m_saveTimes.begin(), timing.m_saveTimes.end());
        return timing.m_saveTimes.isEmpty() ? 0
                                            : timing.m_saveTimes.at(timing.m_saveTimes.size() / 2);
    }

    // Kills fall from 0 to `latestKillMs` after a save starts.
    SaveKiller(QStringList documents, std::optional<int> latestKillMs)
        : m_documents(std::move(documents)), m_latestKillMs(latestKillMs),
          m_inotify(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)),
          m_notifier(m_inotify, QSocketNotifier::Read) {
        connect(&m_notifier, &QSocketNotifier::activated, this, &SaveKiller::readEvents);
    }

    ~SaveKiller() override { ::close(m_inotify); }

    void run() {
        QEventLoop loop;
        m_loop = &loop;
        while (m_running < kAtOnce && m_next < m_documents.size())
            startNext();
        if (m_running > 0)
            loop.exec();
    }

private:
    static constexpr int kAtOnce = 16;

    struct Child {
        QProcess* process = nullptr;
        QElapsedTimer sinceSaveStarted;
    };

    void startNext() {
        const QString folder = QFileInfo(m_documents.at(m_next)).absolutePath();
        const int watch = inotify_add_watch(m_inotify, QFile::encodeName(folder).constData(),
                                            IN_CREATE | IN_MODIFY | IN_MOVED_TO);
        auto* process = new QProcess(this);
        m_children.insert(watch, {process, {}});
        connect(process, &QProcess::finished, this, [this, watch] { finish(watch); });
        ++m_running;
        process->start(QStringLiteral(CORKWHEEL_STORE_CHILD),
                       {QStringLiteral("save"), m_documents.at(m_next++)});
    }

    void readEvents() {
        alignas(inotify_event) char buffer[4096];
        ssize_t length = 0;
        while ((length = ::read(m_inotify, buffer, sizeof buffer)) > 0) {
            for (ssize_t at = 0; at < length;) {
                const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
                saveStarted(event->wd);
                at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
            }
        }
    }

    void saveStarted(int watch) {
        const auto child = m_children.find(watch);
        if (child == m_children.end() || child->sinceSaveStarted.isValid())
            return;
        child->sinceSaveStarted.start();
        if (!m_latestKillMs)
            return;
        const int delay = QRandomGenerator::global()->bounded(*m_latestKillMs + 1);
        if (delay == 0)
            child->process->kill();
        else
            QTimer::singleShot(delay, Qt::PreciseTimer, child->process, &QProcess::kill);
    }

    void finish(int watch) {
        const Child child = m_children.take(watch);
        inotify_rm_watch(m_inotify, watch);
        if (child.sinceSaveStarted.isValid())
            m_saveTimes.append(static_cast<int>(child.sinceSaveStarted.elapsed()));
        child.process->deleteLater();
        --m_running;
        if (m_next < m_documents.size())
            startNext();
        else if (m_running == 0)
            m_loop->quit();
    }

    QStringList m_documents;
    std::optional<int> m_latestKillMs;
    int m_inotify;
    QSocketNotifier m_notifier;
    QHash<int, Child> m_children;
    QList<int> m_saveTimes;
    qsizetype m_next = 0;
    int m_running = 0;
    QEventLoop* m_loop = nullptr;
};
