// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/DocumentFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

namespace corkwheel::DocumentFile {

namespace {

// The file a replace writes first is ".panels.json.saving-" and six characters that
// mkostemp() picks: hidden, and named so that nothing of the user's ("panels.json.backup")
// is ever taken for one left by a crash.
QString temporaryPrefix(const QFileInfo& document) {
    return document.absolutePath() + QStringLiteral("/.") + document.fileName() +
           QStringLiteral(".saving-");
}

class Descriptor {
public:
    explicit Descriptor(int fd) : m_fd(fd) {}
    ~Descriptor() {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return m_fd; }
    bool close() { return ::close(std::exchange(m_fd, -1)) == 0; }

private:
    int m_fd;
};

bool writeAll(int fd, const QByteArray& bytes) {
    const char* next = bytes.constData();
    qsizetype left = bytes.size();
    while (left > 0) {
        const ssize_t written = ::write(fd, next, static_cast<size_t>(left));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        next += written;
        left -= written;
    }
    return true;
}

// Makes the rename itself last: without this a power cut can bring the old name back.
void syncFolder(const QByteArray& folder) {
    Descriptor directory(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.get() >= 0)
        ::fsync(directory.get());
}

} // namespace

std::optional<QByteArray> readAtMost(const QString& path, qint64 limit) {
    Descriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (file.get() < 0)
        return std::nullopt;
    constexpr qsizetype kChunk = 64 * 1024;
    QByteArray bytes;
    while (bytes.size() <= limit) {
        const qsizetype filled = bytes.size();
        // Grown by doubling: reading chunk by chunk into an exactly sized array would copy
        // the whole document again for every chunk.
        if (bytes.capacity() < filled + kChunk)
            bytes.reserve(std::max(2 * bytes.capacity(), filled + kChunk));
        bytes.resize(filled + kChunk);
        const ssize_t got = ::read(file.get(), bytes.data() + filled, kChunk);
        bytes.resize(filled + std::max<qsizetype>(got, 0));
        if (got == 0)
            return bytes;
        if (got < 0 && errno != EINTR)
            return std::nullopt;
    }
    return std::nullopt;
}

bool replaceAtomically(const QString& path, const QByteArray& bytes) {
    const QByteArray target = QFile::encodeName(path);
    QByteArray temporary = QFile::encodeName(temporaryPrefix(QFileInfo(path))) + "XXXXXX";
    // mkostemp() makes the file readable and writable by its owner alone.
    Descriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
    if (file.get() < 0)
        return false;
    // Flushed before the rename, so that the name never points at data still in flight.
    const bool written = writeAll(file.get(), bytes) && ::fsync(file.get()) == 0 && file.close();
    if (!written || ::rename(temporary.constData(), target.constData()) != 0) {
        ::unlink(temporary.constData());
        return false;
    }
    syncFolder(QFile::encodeName(QFileInfo(path).absolutePath()));
    return true;
}

void removeLeftovers(const QString& path) {
    const QFileInfo leftovers(temporaryPrefix(QFileInfo(path)) + QStringLiteral("??????"));
    QDir folder = leftovers.absoluteDir();
    const QStringList names =
        folder.entryList({leftovers.fileName()}, QDir::Files | QDir::System | QDir::Hidden);
    for (const QString& name : names)
        folder.remove(name);
}

} // namespace corkwheel::DocumentFile
