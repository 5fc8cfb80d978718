#pragma once

#include <QCoreApplication>
#include <QObject>
#include <QPointer>
#include <QThreadPool>

#include <utility>

namespace corkwheel::BackgroundTask {

// Runs `work` on the global thread pool, then `deliver(result)` on the main thread, but
// only if `receiver` still exists by then. `work` must not touch shared state.
template <typename Work, typename Deliver> void run(QObject* receiver, Work work, Deliver deliver) {
    QPointer<QObject> guard(receiver);
    QThreadPool::globalInstance()->start(
        [guard, work = std::move(work), deliver = std::move(deliver)]() mutable {
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

} // namespace corkwheel::BackgroundTask
