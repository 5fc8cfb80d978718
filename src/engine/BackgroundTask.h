// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoreApplication>
#include <QObject>
#include <QPointer>
#include <QThreadPool>

#include <utility>

namespace corkwheel::BackgroundTask {

// Threads for work that may block for a long time or for good: reading a file or asking a
// file system that sits on a network mount that stopped answering, or a FIFO nobody writes
// to. The pool grows past the number of cores so that stuck work never holds up other work,
// and it is never destroyed, so quitting never waits for a thread that will not return.
QThreadPool& blockingPool();

// Runs `work` on `pool`, then `deliver(result)` on the main thread, but only if `receiver`
// still exists by then. `work` must not touch shared state.
template <typename Work, typename Deliver>
void run(QThreadPool& pool, QObject* receiver, Work work, Deliver deliver) {
    QPointer<QObject> guard(receiver);
    pool.start([guard, work = std::move(work), deliver = std::move(deliver)]() mutable {
        auto result = work();
        // The application object outlives every receiver, so it carries the result to
        // the main thread, where the guard tells whether anyone still wants it.
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [guard, deliver = std::move(deliver), result = std::move(result)]() mutable {
                if (guard)
                    deliver(std::move(result));
            },
            Qt::QueuedConnection);
    });
}

// The same on the global thread pool, for work that only computes.
template <typename Work, typename Deliver> void run(QObject* receiver, Work work, Deliver deliver) {
    run(*QThreadPool::globalInstance(), receiver, std::move(work), std::move(deliver));
}

} // namespace corkwheel::BackgroundTask
