// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/OneJobPerKey.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>

namespace corkwheel {

// Reads a file panel's file off the main thread and hands its text over on the main
// thread, one read at a time. A read that has not returned within the time limit (a FIFO
// whose writer never writes, a file on a network mount that stopped answering) shows
// timedOutText(), and no further read of that file starts until it returns, so one stuck
// file holds one thread at most.
class TextFileReader : public QObject {
    Q_OBJECT

public:
    // A read that takes longer than `timeLimit` shows timedOutText(); a file panel's reads
    // have kTimeLimit.
    explicit TextFileReader(std::chrono::milliseconds timeLimit, QObject* parent = nullptr);

    // Starts reading `path` unless a read of the same path is still under way; a read of
    // another path takes over, and the earlier read's text is dropped. A path read again
    // while its earlier read is stuck shows that read's text once it returns.
    void read(const QString& path);

    // The text a file panel shows for `path` (a leading "~/" means the home directory): the
    // file's first kMaxBytes as UTF-8, trimmed, or notFoundText() when it cannot be read or is
    // not UTF-8. Blocking, for as long as the file takes.
    static QString readNow(const QString& path);

    // At most this much of a file is read, so one huge or endless file cannot fill the memory.
    static constexpr qsizetype kMaxBytes = 4 * 1024 * 1024;
    static constexpr std::chrono::milliseconds kTimeLimit{10'000};
    // In the user's language, so asked for when shown rather than kept from the start.
    static QString notFoundText();
    static QString timedOutText();

Q_SIGNALS:
    void textRead(const QString& text);

private:
    QTimer m_timeLimit;
    OneJobPerKey m_reads;
    // The path whose text shows; the text of a read of any other is dropped.
    QString m_latestPath;
};

} // namespace corkwheel
