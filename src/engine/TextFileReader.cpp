// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/TextFileReader.h"

#include "engine/BackgroundTask.h"
#include "engine/TildePath.h"
#include "engine/Utf8Text.h"

#include <QFile>

#include <fcntl.h>
#include <unistd.h>

namespace corkwheel {

namespace {

// Opened without waiting for a writer, so a FIFO nobody writes to reads as empty instead
// of blocking in open(); reads block again afterwards, so a writer that is on its way still
// has its say within the time limit.
int openForReading(const QString& path) {
    const int fd = ::open(QFile::encodeName(TildePath::expand(path)).constData(),
                          O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd >= 0)
        ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    return fd;
}

} // namespace

TextFileReader::TextFileReader(std::chrono::milliseconds timeLimit, QObject* parent)
    : QObject(parent), m_timeLimit(this), m_reads(this) {
    m_timeLimit.setSingleShot(true);
    m_timeLimit.setInterval(timeLimit);
    connect(&m_timeLimit, &QTimer::timeout, this, [this] { Q_EMIT textRead(timedOutText()); });
}

void TextFileReader::read(const QString& path) {
    if (path == m_latestPath && m_reads.isUnderWay(path))
        return;
    m_latestPath = path;
    m_timeLimit.start();
    m_reads.run(
        BackgroundTask::blockingPool(), path, [path] { return readNow(path); },
        [this, path](const QString& text) {
            if (path != m_latestPath)
                return;
            m_timeLimit.stop();
            Q_EMIT textRead(text);
        });
}

QString TextFileReader::notFoundText() {
    return tr("(file not found)");
}

QString TextFileReader::timedOutText() {
    return tr("error: file read timed out");
}

QString TextFileReader::readNow(const QString& path) {
    const int fd = openForReading(path);
    if (fd < 0)
        return notFoundText();
    QFile file;
    if (!file.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(fd);
        return notFoundText();
    }
    // One byte more than kept tells whether the cut may have split a character.
    const QByteArray bytes = file.read(kMaxBytes + 1);
    if (file.error() != QFileDevice::NoError)
        return notFoundText();
    return Utf8Text::decodeStrict(Utf8Text::prefix(bytes, kMaxBytes)).value_or(notFoundText());
}

} // namespace corkwheel
