// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Waiting for the work Corkwheel hands to other threads, rather than for a time: once it has
// ended and its results have reached the main thread, a check that nothing more came is
// sound.

#include "engine/BackgroundTask.h"

#include <QCoreApplication>
#include <QThreadPool>

namespace corkwheel::test {

// Waits until decoding (on Qt's pool) and blocking reads (on Corkwheel's own pool) have ended,
// then delivers what they sent to the main thread.
inline void waitForBackgroundWork() {
    QThreadPool::globalInstance()->waitForDone(30000);
    BackgroundTask::blockingPool().waitForDone(30000);
    QCoreApplication::sendPostedEvents();
}

} // namespace corkwheel::test
