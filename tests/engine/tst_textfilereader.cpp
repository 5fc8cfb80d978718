// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/BackgroundWork.h"

#include "engine/BackgroundTask.h"
#include "engine/TextFileReader.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

// What a file panel shows for a read that does not return in time, as users read it.
const QString kFileReadTimedOut = QStringLiteral("error: file read timed out");

constexpr std::chrono::milliseconds kShortLimit{300};

// A FIFO in a folder of the test's own.
QString makeFifo(const QTemporaryDir& folder) {
    const QString path = folder.filePath(QStringLiteral("pipe"));
    return ::mkfifo(QFile::encodeName(path).constData(), 0600) == 0 ? path : QString();
}

// Holds a FIFO open for writing, as a program that has yet to write would.
class SilentWriter {
public:
    explicit SilentWriter(const QString& fifo)
        : m_fd(::open(QFile::encodeName(fifo).constData(), O_RDWR | O_CLOEXEC)) {}
    ~SilentWriter() { close(); }
    SilentWriter(const SilentWriter&) = delete;
    SilentWriter& operator=(const SilentWriter&) = delete;
    bool isOpen() const { return m_fd >= 0; }
    void writeAndClose(const QByteArray& bytes) {
        static_cast<void>(::write(m_fd, bytes.constData(), size_t(bytes.size())));
        close();
    }
    void close() {
        if (m_fd >= 0)
            ::close(m_fd);
        m_fd = -1;
    }

private:
    int m_fd;
};

// A note file in `folder`.
QString writeNote(const QTemporaryDir& folder) {
    const QString path = folder.filePath(QStringLiteral("note.txt"));
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write("a note");
    return path;
}

// A reader whose read of a FIFO that nobody writes to is taken over by a read of a note.
struct TakenOverRead {
    QTemporaryDir folder;
    QString fifo = makeFifo(folder);
    SilentWriter writer{fifo};
    QString note = writeNote(folder);
    TextFileReader reader{kShortLimit};
    QSignalSpy text{&reader, &TextFileReader::textRead};

    // Reads the FIFO, then the note; true once the note's text showed.
    bool start() {
        reader.read(fifo);
        reader.read(note);
        return QTest::qWaitFor([this] { return text.count() == 1; });
    }
};

} // namespace

class TextFileReaderTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void fifoWithoutWriterShowsEmptyText() {
        QTemporaryDir folder;
        const QString fifo = makeFifo(folder);
        QVERIFY(!fifo.isEmpty());
        TextFileReader reader(kShortLimit);
        QSignalSpy text(&reader, &TextFileReader::textRead);
        reader.read(fifo);
        QVERIFY(text.wait());
        QCOMPARE(text.first().first().toString(), QString());
    }

    void fifoWhoseWriterNeverWritesTimesOutAndIsReadOnceAtATime() {
        QTemporaryDir folder;
        const QString fifo = makeFifo(folder);
        SilentWriter writer(fifo);
        QVERIFY(writer.isOpen());
        TextFileReader reader(kShortLimit);
        QSignalSpy text(&reader, &TextFileReader::textRead);
        reader.read(fifo);
        QVERIFY(text.wait());
        QCOMPARE(text.last().first().toString(), kFileReadTimedOut);

        // Refreshes while the read is stuck start nothing more.
        for (int refresh = 0; refresh < 5; ++refresh)
            reader.read(fifo);
        QTest::qWait(int(kShortLimit.count()));
        QCOMPARE(BackgroundTask::blockingPool().activeThreadCount(), 1);
        QCOMPARE(text.count(), 1);

        // The writer's late text still shows, and the thread is free again.
        writer.writeAndClose("at last\n");
        QTRY_COMPARE(text.last().first().toString(), QStringLiteral("at last"));
        QTRY_COMPARE(BackgroundTask::blockingPool().activeThreadCount(), 0);
    }

    void readOfAnotherPathTakesOverFromAStuckOne() {
        TakenOverRead read;
        QVERIFY(read.start());
        QCOMPARE(read.text.last().first().toString(), QStringLiteral("a note"));
        // The stuck read's text, when it comes, is no longer wanted.
        read.writer.writeAndClose("old pipe");
        QTRY_COMPARE(BackgroundTask::blockingPool().activeThreadCount(), 0);
        // What the read sent before its thread was free is delivered now.
        waitForBackgroundWork();
        QCOMPARE(read.text.count(), 1);
    }

    void stuckFileReadAgainAfterAnotherWaitsForItsFirstRead() {
        TakenOverRead read;
        QVERIFY(read.start());
        // Back to the stuck file: no second thread waits on it, and it times out again.
        read.reader.read(read.fifo);
        QTRY_COMPARE(read.text.count(), 2);
        QCOMPARE(read.text.last().first().toString(), kFileReadTimedOut);
        QCOMPARE(BackgroundTask::blockingPool().activeThreadCount(), 1);
        // Its first read's late text is what shows.
        read.writer.writeAndClose("at last\n");
        QTRY_COMPARE(read.text.count(), 3);
        QCOMPARE(read.text.last().first().toString(), QStringLiteral("at last"));
        QTRY_COMPARE(BackgroundTask::blockingPool().activeThreadCount(), 0);
    }

    void endlessZeroDeviceShowsABoundedText() {
        const QString text = TextFileReader::readNow(QStringLiteral("/dev/zero"));
        QVERIFY(!text.isEmpty());
        // A file panel shows at most the first 4 MiB of a file.
        QVERIFY(text.size() <= 4 * 1024 * 1024);
    }

    void endlessRandomDeviceShowsFileNotFound() {
        QCOMPARE(TextFileReader::readNow(QStringLiteral("/dev/urandom")),
                 TextFileReader::notFoundText());
    }

    void directoryShowsFileNotFound() {
        QTemporaryDir folder;
        QCOMPARE(TextFileReader::readNow(folder.path()), TextFileReader::notFoundText());
    }
};

QTEST_GUILESS_MAIN(TextFileReaderTest)
#include "tst_textfilereader.moc"
