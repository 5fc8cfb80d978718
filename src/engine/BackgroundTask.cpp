// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/BackgroundTask.h"

namespace corkwheel::BackgroundTask {

namespace {

// Each stuck question holds one thread; the callers ask again only once their previous
// question returned, so this many is reached only with that many stuck files at once.
constexpr int kMaxBlockingThreads = 64;

} // namespace

QThreadPool& blockingPool() {
    // Deliberately never deleted: QThreadPool's destructor waits for every thread.
    static QThreadPool* const pool = [] {
        auto* created = new QThreadPool;
        created->setMaxThreadCount(kMaxBlockingThreads);
        return created;
    }();
    return *pool;
}

} // namespace corkwheel::BackgroundTask
