// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QFile>
#include <QSemaphore>
#include <QString>

#include <atomic>
#include <chrono>
#include <thread>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corkwheel::test {

// A file that cannot be read until the test releases it, like one on a network mount that
// hangs: a named pipe, whose reader waits until a thread of this class writes the contents.
// That thread waits for release() at most kPatience, so a test whose main thread is stuck
// reading the pipe still ends, and wasHeldUntilReleased() then tells.
class SlowFile {
public:
    static constexpr std::chrono::seconds kPatience{10};

    SlowFile(const QString& path, const QByteArray& contents) : m_path(path) {
        ::mkfifo(QFile::encodeName(path).constData(), 0600);
        m_writer = std::thread([this, contents] { hand(contents); });
    }
    ~SlowFile() {
        release();
        finish();
    }
    SlowFile(const SlowFile&) = delete;
    SlowFile& operator=(const SlowFile&) = delete;

    QString path() const { return m_path; }

    void release() {
        if (!m_released.exchange(true))
            m_go.release();
    }

    // Waits until the contents have been handed to a reader, or no reader came.
    void finish() {
        if (m_writer.joinable())
            m_writer.join();
    }

    bool wasHeldUntilReleased() const { return m_heldUntilReleased; }

private:
    void hand(const QByteArray& contents) {
        using namespace std::chrono;
        m_heldUntilReleased = m_go.tryAcquire(1, int(milliseconds(kPatience).count()));
        const int fd = openForWriting(steady_clock::now() + kPatience);
        if (fd < 0)
            return;
        ::fcntl(fd, F_SETFL, 0);
        qsizetype written = 0;
        while (written < contents.size()) {
            const ssize_t step =
                ::write(fd, contents.constData() + written, size_t(contents.size() - written));
            if (step <= 0)
                break;
            written += step;
        }
        ::close(fd);
    }

    // A pipe without a reader refuses a non-blocking writer, so the writer tries again
    // until one comes or time is up.
    int openForWriting(std::chrono::steady_clock::time_point deadline) const {
        const QByteArray name = QFile::encodeName(m_path);
        while (std::chrono::steady_clock::now() < deadline) {
            const int fd = ::open(name.constData(), O_WRONLY | O_NONBLOCK);
            if (fd >= 0 || errno != ENXIO)
                return fd;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return -1;
    }

    QString m_path;
    QSemaphore m_go;
    std::atomic<bool> m_released = false;
    std::atomic<bool> m_heldUntilReleased = false;
    std::thread m_writer;
};

} // namespace corkwheel::test
