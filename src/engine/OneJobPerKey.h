// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/BackgroundTask.h"

#include <QObject>
#include <QSet>
#include <QString>
#include <QThreadPool>

#include <utility>

namespace corkwheel {

// Background jobs, at most one under way for each key. Asking for a key whose job is still
// under way starts nothing, and nothing runs again when that job returns: its result
// answers the asks it took in. So a key whose work never returns (a file on a network
// mount that stopped answering) holds one thread at most.
class OneJobPerKey {
public:
    // Results go to `receiver` on the main thread, and only while it exists; the jobs
    // belong to it.
    explicit OneJobPerKey(QObject* receiver) : m_receiver(receiver) {}

    // Runs `work` on `pool` unless a job of `key` is under way, and tells whether it did.
    // Once `work` returns, the key is free again and `deliver(result)` runs on the main
    // thread.
    template <typename Work, typename Deliver>
    bool run(QThreadPool& pool, const QString& key, Work work, Deliver deliver) {
        if (!start(key))
            return false;
        BackgroundTask::run(pool, m_receiver, std::move(work),
                            [this, key, deliver = std::move(deliver)](auto result) mutable {
                                finish(key);
                                deliver(std::move(result));
                            });
        return true;
    }

    // For a job of more than one piece of work (a download, then its decoding): marks
    // `key` under way unless it already is, and tells whether it did. finish() frees it.
    bool start(const QString& key);
    void finish(const QString& key) { m_underWay.remove(key); }
    bool isUnderWay(const QString& key) const { return m_underWay.contains(key); }

private:
    QObject* m_receiver;
    QSet<QString> m_underWay;
};

} // namespace corkwheel
