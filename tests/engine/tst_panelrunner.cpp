#include "support/FakeMachine.h"
#include "support/HostileImages.h"
#include "support/RecordingWebPage.h"
#include "support/SlowFile.h"

#include "engine/NetworkStatsSampler.h"
#include "engine/PanelRunner.h"
#include "engine/SystemStatsSampler.h"
#include "engine/WebPage.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImageWriter>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

#include <memory>
#include <vector>

#include <csignal>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

// Writes `bytes` to `name` in `folder` and gives the file's path.
QString writeFile(const QTemporaryDir& folder, const QString& name, const QByteArray& bytes) {
    const QString path = folder.filePath(name);
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
    return path;
}

QByteArray pngBytes(const QColor& color) {
    QImage image(4, 3, QImage::Format_ARGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter(&buffer, "png").write(image);
    return bytes;
}

// A one-file web server on loopback: every request gets `body` with `status`.
class TinyHttpServer : public QObject {
public:
    TinyHttpServer() {
        QObject::connect(&m_server, &QTcpServer::newConnection, this, [this] { answer(); });
        m_server.listen(QHostAddress::LocalHost);
    }
    QString url(const QString& path) const {
        return QStringLiteral("http://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(path);
    }
    QByteArray body;
    QByteArray status = "200 OK";
    int requests = 0;

private:
    void answer() {
        while (QTcpSocket* socket = m_server.nextPendingConnection()) {
            ++requests;
            connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                socket->readAll();
                socket->write("HTTP/1.1 " + status +
                              "\r\nContent-Length: " + QByteArray::number(body.size()) +
                              "\r\nConnection: close\r\n\r\n" + body);
                socket->disconnectFromHost();
            });
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    }
    QTcpServer m_server;
};

// A whole second of wall-clock time, in milliseconds since the epoch.
const qint64 kWholeSecondMs =
    QDateTime(QDate(2026, 11, 22), QTime(12, 0, 7), QTimeZone::utc()).toMSecsSinceEpoch();

} // namespace

class PanelRunnerTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<FakeMachine> m_machine;
    QList<RecordingWebPage*> m_pages;

    RunnerServices services() {
        return m_machine->services([this](QObject* parent) {
            auto* page = new RecordingWebPage(parent);
            m_pages.append(page);
            return page;
        });
    }

    static Panel panelOf(PanelType type) { return Panel::makeDefault(type); }

private Q_SLOTS:
    void init() {
        m_machine = std::make_unique<FakeMachine>();
        m_pages.clear();
    }

    void startsEmptyAndDoesNothingUntilStarted() {
        PanelRunner runner(panelOf(PanelType::Text), services());
        QCOMPARE(runner.id(), runner.panel().id);
        QCOMPARE(runner.textOutput(), QString());
        QVERIFY(runner.image().isNull());
        QCOMPARE(runner.stats(), SystemStatsSample::zero());
        QVERIFY(runner.networkHistory().isEmpty());
        QVERIFY(!runner.isRunning());
        QVERIFY(!runner.isTimerActive());
    }

    void timerIsNeverShorterThanOneSecond_data() {
        QTest::addColumn<double>("refreshInterval");
        QTest::addColumn<double>("timer");
        QTest::newRow("0.5") << 0.5 << 1.0;
        QTest::newRow("0") << 0.0 << 1.0;
        QTest::newRow("-3") << -3.0 << 1.0;
        QTest::newRow("2.5") << 2.5 << 2.5;
    }

    void timerIsNeverShorterThanOneSecond() {
        QFETCH(double, refreshInterval);
        QFETCH(double, timer);
        Panel panel = panelOf(PanelType::Text);
        panel.refreshInterval = refreshInterval;
        PanelRunner runner(panel, services());
        runner.start();
        QVERIFY(runner.isTimerActive());
        QCOMPARE(runner.currentTimerInterval(), timer);
        // When the tick comes: the fake clock stands on a whole second.
        const int timerMs = static_cast<int>(timer * 1000);
        QVERIFY2(runner.remainingTimerMs() > timerMs - 100 && runner.remainingTimerMs() <= timerMs,
                 qPrintable(QString::number(runner.remainingTimerMs())));
    }

    void timerRefreshesAgain() {
        Panel panel = panelOf(PanelType::Text);
        panel.refreshInterval = 0.2; // becomes one second
        panel.textTemplate = QStringLiteral("tick");
        PanelRunner runner(panel, services());
        QSignalSpy text(&runner, &PanelRunner::textOutputChanged);
        runner.start();
        QCOMPARE(text.count(), 1);
        QTRY_COMPARE_WITH_TIMEOUT(text.count(), 2, 3000);
    }

    void stoppedRunnerNoLongerRefreshes() {
        Panel panel = panelOf(PanelType::Text);
        panel.refreshInterval = 1;
        PanelRunner runner(panel, services());
        QSignalSpy text(&runner, &PanelRunner::textOutputChanged);
        runner.start();
        runner.stop();
        QVERIFY(!runner.isTimerActive());
        QTest::qWait(1300);
        QCOMPARE(text.count(), 1);
    }

    void styleOrFrameChangeDoesNotRefresh() {
        Panel panel = panelOf(PanelType::Text);
        PanelRunner runner(panel, services());
        QSignalSpy text(&runner, &PanelRunner::textOutputChanged);
        runner.start();
        QCOMPARE(text.count(), 1);
        panel.style.fontSize = 40;
        panel.frame.x = 500;
        panel.name = QStringLiteral("Renamed");
        panel.isEnabled = false;
        runner.apply(panel);
        QCOMPARE(text.count(), 1);
        QCOMPARE(runner.panel(), panel);
    }

    void templateChangeRefreshesWithoutRestartingTimer() {
        Panel panel = panelOf(PanelType::Text);
        panel.refreshInterval = 60;
        PanelRunner runner(panel, services());
        runner.start();
        QTest::qWait(300);
        panel.textTemplate = QStringLiteral("Year {date:yyyy}");
        runner.apply(panel);
        QCOMPARE(runner.textOutput(), QStringLiteral("Year 2026"));
        QVERIFY(runner.isTimerActive());
        QVERIFY(runner.remainingTimerMs() <= 59'750);
    }

    void intervalChangeRestartsTimerAndRefreshes() {
        Panel panel = panelOf(PanelType::Text);
        panel.refreshInterval = 60;
        PanelRunner runner(panel, services());
        QSignalSpy text(&runner, &PanelRunner::textOutputChanged);
        runner.start();
        QTest::qWait(300);
        panel.refreshInterval = 30;
        runner.apply(panel);
        QCOMPARE(text.count(), 2);
        QCOMPARE(runner.currentTimerInterval(), 30.0);
        QVERIFY(runner.remainingTimerMs() > 29'500);
    }

    void firstTimedRefreshComesAWholeIntervalLater_data() {
        QTest::addColumn<double>("interval");
        QTest::addColumn<qint64>("sinceWholeSecond");
        QTest::addColumn<qint64>("delay");
        QTest::newRow("1 s, on the second") << 1.0 << qint64(0) << qint64(1000);
        QTest::newRow("1 s, 300 ms past") << 1.0 << qint64(300) << qint64(1700);
        QTest::newRow("1 s, 999 ms past") << 1.0 << qint64(999) << qint64(1001);
        QTest::newRow("5 s, 250 ms past") << 5.0 << qint64(250) << qint64(5750);
        QTest::newRow("2.5 s keeps its length") << 2.5 << qint64(300) << qint64(2500);
        QTest::newRow("under 1 s waits 1 s") << 0.2 << qint64(0) << qint64(1000);
    }

    void firstTimedRefreshComesAWholeIntervalLater() {
        QFETCH(double, interval);
        QFETCH(qint64, sinceWholeSecond);
        QFETCH(qint64, delay);
        const qint64 now = kWholeSecondMs + sinceWholeSecond;
        QCOMPARE(PanelRunner::firstRefreshDue(interval, now) - now, delay);
    }

    void nextRefreshCountsFromWhenTheLastWasDue_data() {
        QTest::addColumn<double>("interval");
        QTest::addColumn<qint64>("due");
        QTest::addColumn<qint64>("now");
        QTest::addColumn<qint64>("next");
        QTest::newRow("a second after a quick refresh")
            << 1.0 << qint64(1000) << qint64(1003) << qint64(2000);
        QTest::newRow("a timer that woke a little late")
            << 1.0 << qint64(1000) << qint64(1040) << qint64(2000);
        QTest::newRow("two and a half seconds, not drifting by a slow refresh")
            << 2.5 << qint64(2500) << qint64(2640) << qint64(5000);
        QTest::newRow("refreshes missed while asleep are skipped")
            << 1.0 << qint64(1000) << qint64(4300) << qint64(5000);
        QTest::newRow("the wall clock set back an hour")
            << 1.0 << qint64(1000) << qint64(-3'600'000) << qint64(-3'599'000);
    }

    void nextRefreshCountsFromWhenTheLastWasDue() {
        QFETCH(double, interval);
        QFETCH(qint64, due);
        QFETCH(qint64, now);
        QFETCH(qint64, next);
        QCOMPARE(PanelRunner::nextRefreshDue(interval, kWholeSecondMs + due, kWholeSecondMs + now),
                 kWholeSecondMs + next);
    }

    void refreshStartedJustBeforeASecondWaitsAWholeSecond() {
        // Started a millisecond before a whole second, the next refresh does not follow a
        // millisecond later (a shell command would run twice back to back).
        m_machine->advanceClock(0.999);
        Panel panel = panelOf(PanelType::Text);
        panel.refreshInterval = 1;
        PanelRunner runner(panel, services());
        QSignalSpy text(&runner, &PanelRunner::textOutputChanged);
        runner.start();
        QVERIFY(runner.remainingTimerMs() > 950);
        QTest::qWait(300);
        QCOMPARE(text.count(), 1);
        // And the same after a change of interval, which starts the timer again.
        panel.refreshInterval = 2;
        runner.apply(panel);
        QVERIFY(runner.remainingTimerMs() > 1950);
    }

    void systemClockGivesTheSameTimeInMilliseconds() {
        const Clock& clock = Clock::system();
        const qint64 before = clock.now().toMSecsSinceEpoch();
        const qint64 reading = clock.nowMSecsSinceEpoch();
        const qint64 after = clock.now().toMSecsSinceEpoch();
        QVERIFY(before <= reading);
        QVERIFY(reading <= after);
    }

    void clockTurnsWithTheSecondItShows() {
        // Started 300 ms into a second, a clock refreshes on a whole second, the first that
        // is a whole second away: 1.7 s later.
        m_machine->advanceClock(0.3);
        PanelRunner runner(panelOf(PanelType::Clock), services());
        runner.start();
        QVERIFY(runner.isTimerActive());
        QCOMPARE(runner.currentTimerInterval(), 1.0);
        QVERIFY(runner.remainingTimerMs() <= 1700);
        QVERIFY(runner.remainingTimerMs() > 1500);
    }

    void applyBeforeStartStarts() {
        PanelRunner runner(panelOf(PanelType::Text), services());
        runner.apply(runner.panel());
        QVERIFY(runner.isTimerActive());
        QVERIFY(!runner.textOutput().isEmpty());
    }

    void textPanelExpandsTokensAtTheClocksTime() {
        Panel panel = panelOf(PanelType::Text);
        panel.textTemplate = QStringLiteral("{date:yyyy-MM-dd} at {date:HH:mm}");
        PanelRunner runner(panel, services());
        runner.start();
        QCOMPARE(runner.textOutput(), QStringLiteral("2026-01-02 at 03:04"));
    }

    void clockPanelFormatsTheClocksTime() {
        Panel panel = panelOf(PanelType::Clock);
        panel.clockFormat = QStringLiteral("HH:mm:ss");
        PanelRunner runner(panel, services());
        runner.start();
        QCOMPARE(runner.textOutput(), QStringLiteral("03:04:05"));
    }

    void blankShellCommandClearsOutputAndStartsNothing() {
        Panel panel = panelOf(PanelType::Shell);
        panel.shellCommand = QStringLiteral("echo before");
        PanelRunner runner(panel, services());
        runner.start();
        QTRY_COMPARE(runner.textOutput(), QStringLiteral("before"));
        QSignalSpy running(&runner, &PanelRunner::isRunningChanged);
        panel.shellCommand = QStringLiteral("  \n\t ");
        runner.apply(panel);
        QCOMPARE(runner.textOutput(), QString());
        QVERIFY(!runner.isRunning());
        QCOMPARE(running.count(), 0);
    }

    void shellCommandIsRunningUntilItsTextArrives() {
        Panel panel = panelOf(PanelType::Shell);
        panel.shellCommand = QStringLiteral("sleep 0.3; echo done");
        PanelRunner runner(panel, services());
        QSignalSpy running(&runner, &PanelRunner::isRunningChanged);
        runner.start();
        QVERIFY(runner.isRunning());
        QCOMPARE(runner.textOutput(), QString());
        QTRY_COMPARE(runner.textOutput(), QStringLiteral("done"));
        QVERIFY(!runner.isRunning());
        QCOMPARE(running.count(), 2);
    }

    void overlappingRunStopsRunningWhenTheFirstFinishes() {
        Panel panel = panelOf(PanelType::Shell);
        panel.shellCommand = QStringLiteral("sleep 0.3; echo first");
        PanelRunner runner(panel, services());
        runner.start();
        // A second run, still going when the first one ends.
        panel.shellCommand = QStringLiteral("sleep 2; echo second");
        runner.apply(panel);
        QVERIFY(runner.isRunning());
        QTRY_COMPARE(runner.textOutput(), QStringLiteral("first"));
        QVERIFY(!runner.isRunning());
        QTRY_COMPARE_WITH_TIMEOUT(runner.textOutput(), QStringLiteral("second"), 5000);
        QVERIFY(!runner.isRunning());
    }

    void runnerDestroyedWhileCommandRunsDropsTheResult() {
        QTemporaryDir folder;
        const QString marker = folder.filePath(QStringLiteral("pid"));
        Panel panel = panelOf(PanelType::Shell);
        panel.shellCommand = QStringLiteral("echo $$ > '%1'; sleep 30; echo late").arg(marker);
        auto* runner = new PanelRunner(panel, services());
        QSignalSpy text(runner, &PanelRunner::textOutputChanged);
        runner->start();
        QTRY_VERIFY(QFile(marker).size() > 0);
        QFile file(marker);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const qint64 pid = file.readAll().trimmed().toLongLong();
        delete runner;
        QTest::qWait(100);
        QTRY_VERIFY(::kill(static_cast<pid_t>(pid), 0) != 0);
    }

    void emptyFilePathShowsEmptyText() {
        QTemporaryDir folder;
        const QString note = folder.filePath(QStringLiteral("note.txt"));
        QFile file(note);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("before");
        file.close();
        Panel panel = panelOf(PanelType::File);
        panel.filePath = note;
        PanelRunner runner(panel, services());
        runner.start();
        QTRY_COMPARE(runner.textOutput(), QStringLiteral("before"));

        QSignalSpy text(&runner, &PanelRunner::textOutputChanged);
        panel.filePath.clear();
        runner.apply(panel);
        QCOMPARE(runner.textOutput(), QString());
        // Long after any read would have come back, nothing else arrived.
        QTest::qWait(300);
        QCOMPARE(text.count(), 1);
        QCOMPARE(runner.textOutput(), QString());
    }

    void missingFileShowsFileNotFound() {
        Panel panel = panelOf(PanelType::File);
        panel.filePath = QStringLiteral("/nonexistent/corkwheel/note.txt");
        PanelRunner runner(panel, services());
        runner.start();
        QTRY_COMPARE(runner.textOutput(), QStringLiteral("(file not found)"));
    }

    void fileIsShownTrimmed() {
        QTemporaryDir folder;
        const QString path =
            writeFile(folder, QStringLiteral("note.txt"), "\n\n  first line\n\nlast line  \n\n");
        Panel panel = panelOf(PanelType::File);
        panel.filePath = path;
        PanelRunner runner(panel, services());
        runner.start();
        QTRY_COMPARE(runner.textOutput(), QStringLiteral("first line\n\nlast line"));
    }

    void tildePathReadsUnderTheHomeDirectory() {
        QTemporaryDir home;
        const QByteArray oldHome = qgetenv("HOME");
        qputenv("HOME", QFile::encodeName(home.path()));
        writeFile(home, QStringLiteral(".corkwheel_note.txt"), "from home");
        Panel panel = panelOf(PanelType::File);
        panel.filePath = QStringLiteral("~/.corkwheel_note.txt");
        PanelRunner runner(panel, services());
        runner.start();
        QTRY_COMPARE(runner.textOutput(), QStringLiteral("from home"));
        qputenv("HOME", oldHome);
    }

    void fileThatIsNotUtf8ShowsFileNotFound() {
        QTemporaryDir folder;
        const QString path = writeFile(folder, QStringLiteral("latin1.txt"), "caf\xE9");
        Panel panel = panelOf(PanelType::File);
        panel.filePath = path;
        PanelRunner runner(panel, services());
        runner.start();
        QTRY_COMPARE(runner.textOutput(), QStringLiteral("(file not found)"));
    }

    void hugeFileShowsOnlyItsBeginning() {
        QTemporaryDir folder;
        // 'a' then two-byte characters, so the 4 MiB cut falls inside one of them.
        const QString path = writeFile(folder, QStringLiteral("big.txt"),
                                       "a" + QString(3 * 1024 * 1024, QChar(0x00E9)).toUtf8());
        Panel panel = panelOf(PanelType::File);
        panel.filePath = path;
        PanelRunner runner(panel, services());
        runner.start();
        QTRY_VERIFY(!runner.textOutput().isEmpty());
        QCOMPARE(runner.textOutput().size(), 1 + (4 * 1024 * 1024 - 1) / 2);
        QVERIFY(runner.textOutput().endsWith(QChar(0x00E9)));
    }

    void runnerDestroyedWhileFileIsReadDropsTheText() {
        Panel panel = panelOf(PanelType::File);
        panel.filePath = QStringLiteral("/proc/self/status");
        for (int i = 0; i < 20; ++i) {
            auto* runner = new PanelRunner(panel, services());
            runner->start();
            delete runner;
        }
        QTest::qWait(200);
    }

    void historyKeepsTheNewest40Samples() {
        PanelRunner runner(panelOf(PanelType::SystemStats), services());
        runner.start();
        for (int i = 1; i <= 40; ++i) {
            m_machine->advanceClock(1);
            m_machine->setCounters(static_cast<quint64>(i) * (i + 1) / 2 * 1000, 0);
            runner.refreshNow();
        }
        // 41 refreshes: the baseline has gone, the 40 newest remain, rates 1000 ... 40000.
        const QList<NetworkSample> history = runner.networkHistory();
        QCOMPARE(history.size(), 40);
        QCOMPARE(history.first().downBytesPerSec, 1000.0);
        QCOMPARE(history.last().downBytesPerSec, 40000.0);
        QCOMPARE(history.last().displayName, QStringLiteral("Ethernet"));
    }

    void statsPanelPublishesMemoryCpuAndDisks() {
        PanelRunner runner(panelOf(PanelType::SystemStats), services());
        QSignalSpy stats(&runner, &PanelRunner::statsChanged);
        runner.start();
        QCOMPARE(stats.count(), 1);
        QCOMPARE(runner.stats().memoryTotalGB, 8.0);
        QCOMPARE(runner.stats().memoryUsedGB, 4.0);
        QCOMPARE(runner.stats().memoryUsedFraction, 0.5);
        QCOMPARE(runner.stats().cpuUsage, 0.0); // the first reading is a baseline
        m_machine->system().setFile(QStringLiteral("/proc/stat"),
                                    "cpu  175 0 125 900 0 0 0 0 0 0\n");
        m_machine->advanceClock(1);
        runner.refreshNow();
        QCOMPARE(runner.stats().cpuUsage, 0.5);
    }

    void statsPanelShowsItsFiguresWhileAShareIsStuck() {
        m_machine->setShares(2);
        m_machine->system().makeCapacityStuck(QStringLiteral("/mnt/share1"));
        PanelRunner runner(panelOf(PanelType::SystemStats), services());
        QSignalSpy stats(&runner, &PanelRunner::statsChanged);
        runner.start();
        QVERIFY(stats.wait());
        QCOMPARE(runner.stats().memoryTotalGB, 8.0);
        QCOMPARE(runner.stats().disks.size(), 1);
        QCOMPARE(runner.stats().disks.first().id, QStringLiteral("/mnt/share2"));
        m_machine->advanceClock(1);
        runner.refreshNow();
        QTRY_COMPARE(stats.count(), 2);
        QCOMPARE(runner.stats().disks.size(), 1);
    }

    void statsPanelsRefreshedTogetherAllShowTheMachinesFigures_data() {
        QTest::addColumn<int>("panels");
        QTest::newRow("two panels") << 2;
        QTest::newRow("three panels") << 3;
    }

    // Whole-second intervals share wake-ups, so panels ask the shared samplers one right
    // after another; each must show the load since the last wake-up, not since the panel
    // before it.
    void statsPanelsRefreshedTogetherAllShowTheMachinesFigures() {
        QFETCH(int, panels);
        std::vector<std::unique_ptr<PanelRunner>> runners;
        for (int i = 0; i < panels; ++i) {
            runners.push_back(
                std::make_unique<PanelRunner>(panelOf(PanelType::SystemStats), services()));
            runners.back()->start();
        }
        m_machine->advanceClock(1);
        m_machine->system().setFile(QStringLiteral("/proc/stat"),
                                    "cpu  175 0 125 900 0 0 0 0 0 0\n");
        m_machine->setCounters(2000, 1000);
        for (const auto& runner : runners)
            runner->refreshNow();
        for (const auto& runner : runners) {
            QCOMPARE(runner->stats().cpuUsage, 0.5);
            QCOMPARE(runner->networkHistory().last().downBytesPerSec, 2000.0);
            QCOMPARE(runner->networkHistory().last().upBytesPerSec, 1000.0);
        }
    }

    void localImageLoads() {
        QTemporaryDir folder;
        const QString path = writeFile(folder, QStringLiteral("red.png"), pngBytes(Qt::red));
        Panel panel = panelOf(PanelType::Image);
        panel.imageSource = path;
        PanelRunner runner(panel, services());
        runner.start();
        QTRY_COMPARE(runner.image().size(), QSize(4, 3));
        QCOMPARE(runner.image().pixelColor(0, 0), QColor(Qt::red));
    }

    void missingLocalImageShowsNone() {
        Panel panel = panelOf(PanelType::Image);
        panel.imageSource = QStringLiteral("/nonexistent/picture.png");
        PanelRunner runner(panel, services());
        QSignalSpy image(&runner, &PanelRunner::imageChanged);
        runner.start();
        QVERIFY(image.wait());
        QVERIFY(runner.image().isNull());
    }

    void emptyImageSourceClearsTheImage() {
        QTemporaryDir folder;
        const QString path = writeFile(folder, QStringLiteral("red.png"), pngBytes(Qt::red));
        Panel panel = panelOf(PanelType::Image);
        panel.imageSource = path;
        PanelRunner runner(panel, services());
        runner.start();
        QTRY_VERIFY(!runner.image().isNull());
        panel.imageSource.clear();
        runner.apply(panel);
        QVERIFY(runner.image().isNull());
    }

    void hostileLocalImageFilesShowNoImage_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("png declaring 100000 x 100000") << pngDeclaring(100000, 100000);
        QTest::newRow("jpeg declaring 65000 x 65000") << jpegDeclaring(65000, 65000);
        QTest::newRow("svg of nested entities") << svgOfNestedEntities();
        QTest::newRow("truncated png") << truncatedPng();
        QTest::newRow("not an image") << QByteArray("#!/bin/sh\necho hello\n");
    }

    void hostileLocalImageFilesShowNoImage() {
        QFETCH(QByteArray, bytes);
        QTemporaryDir folder;
        Panel panel = panelOf(PanelType::Image);
        panel.imageSource = writeFile(folder, QStringLiteral("hostile.png"), pngBytes(Qt::red));
        PanelRunner runner(panel, services());
        runner.start();
        QTRY_VERIFY(!runner.image().isNull());
        panel.imageSource = writeFile(folder, QStringLiteral("hostile.img"), bytes);
        runner.apply(panel);
        QTRY_VERIFY(runner.image().isNull());
    }

    void localImageSlowToReadDoesNotHoldUpTheRunner() {
        QTemporaryDir folder;
        SlowFile slow(folder.filePath(QStringLiteral("slow.png")), pngBytes(Qt::red));
        Panel panel = panelOf(PanelType::Image);
        panel.imageSource = slow.path();
        PanelRunner runner(panel, services());
        runner.start();
        slow.release();
        QTRY_VERIFY(!runner.image().isNull());
        QCOMPARE(runner.image().pixelColor(0, 0), QColor(Qt::red));
        slow.finish();
        QVERIFY(slow.wasHeldUntilReleased());
    }

    void slowEarlierLocalImageDoesNotReplaceALaterOne() {
        QTemporaryDir folder;
        SlowFile slow(folder.filePath(QStringLiteral("slow.png")), pngBytes(Qt::red));
        Panel panel = panelOf(PanelType::Image);
        panel.imageSource = slow.path();
        PanelRunner runner(panel, services());
        runner.start();
        panel.imageSource = writeFile(folder, QStringLiteral("quick.png"), pngBytes(Qt::blue));
        runner.apply(panel);
        QTRY_VERIFY(!runner.image().isNull());
        QCOMPARE(runner.image().pixelColor(0, 0), QColor(Qt::blue));

        QSignalSpy changes(&runner, &PanelRunner::imageChanged);
        slow.release();
        slow.finish();
        QTest::qWait(300);
        QCOMPARE(changes.count(), 0);
        QCOMPARE(runner.image().pixelColor(0, 0), QColor(Qt::blue));
    }

    void downloadedImageIsShown() {
        TinyHttpServer server;
        server.body = pngBytes(Qt::blue);
        Panel panel = panelOf(PanelType::Image);
        panel.imageSource = server.url(QStringLiteral("/blue.png"));
        PanelRunner runner(panel, services());
        runner.start();
        QTRY_VERIFY(!runner.image().isNull());
        QCOMPARE(runner.image().pixelColor(1, 1), QColor(Qt::blue));
    }

    void failedDownloadKeepsThePreviousImage() {
        TinyHttpServer server;
        server.body = pngBytes(Qt::blue);
        Panel panel = panelOf(PanelType::Image);
        panel.imageSource = server.url(QStringLiteral("/blue.png"));
        PanelRunner runner(panel, services());
        runner.start();
        QTRY_VERIFY(!runner.image().isNull());

        server.status = "404 Not Found";
        server.body = "gone";
        runner.refreshNow();
        QTRY_COMPARE(server.requests, 2);
        QTest::qWait(300);
        QCOMPARE(runner.image().pixelColor(1, 1), QColor(Qt::blue));

        server.status = "200 OK";
        server.body = "not an image";
        runner.refreshNow();
        QTRY_COMPARE(server.requests, 3);
        QTest::qWait(300);
        QCOMPARE(runner.image().pixelColor(1, 1), QColor(Qt::blue));
    }

    void capitalisedSchemeIsAFilePathNotADownload() {
        TinyHttpServer server;
        server.body = pngBytes(Qt::blue);
        Panel panel = panelOf(PanelType::Image);
        panel.imageSource =
            server.url(QStringLiteral("/blue.png")).replace(0, 4, QStringLiteral("HTTP"));
        PanelRunner runner(panel, services());
        runner.start();
        QTest::qWait(300);
        QCOMPARE(server.requests, 0);
        QVERIFY(runner.image().isNull());
    }

    void oversizedDownloadIsDropped() {
        TinyHttpServer server;
        server.body = pngBytes(Qt::blue) + QByteArray(33 * 1024 * 1024, '\0');
        Panel panel = panelOf(PanelType::Image);
        panel.imageSource = server.url(QStringLiteral("/huge.png"));
        PanelRunner runner(panel, services());
        QSignalSpy image(&runner, &PanelRunner::imageChanged);
        runner.start();
        QTRY_COMPARE(server.requests, 1);
        QTest::qWait(1000);
        QCOMPARE(image.count(), 0);
    }

    void runnerDestroyedWhileDownloadingDropsTheImage() {
        TinyHttpServer server;
        server.body = pngBytes(Qt::blue);
        Panel panel = panelOf(PanelType::Image);
        panel.imageSource = server.url(QStringLiteral("/blue.png"));
        auto* runner = new PanelRunner(panel, services());
        runner->start();
        delete runner;
        QTest::qWait(300);
    }

    void addressWithoutSchemeLoadsOverHttps() {
        Panel panel = panelOf(PanelType::Webpage);
        panel.webpageURL = QStringLiteral("  example.com/news \n");
        PanelRunner runner(panel, services());
        runner.start();
        QCOMPARE(m_pages.size(), 1);
        QCOMPARE(runner.webPage(), m_pages.first());
        QCOMPARE(m_pages.first()->loads,
                 QList<QUrl>{QUrl(QStringLiteral("https://example.com/news"))});
        QCOMPARE(m_pages.first()->lastTimeout, std::chrono::seconds(60));
    }

    void addressWithSchemeIsKept() {
        Panel panel = panelOf(PanelType::Webpage);
        panel.webpageURL = QStringLiteral("http://localhost:8080/status");
        PanelRunner runner(panel, services());
        runner.start();
        QCOMPARE(m_pages.first()->loads.first(),
                 QUrl(QStringLiteral("http://localhost:8080/status")));
    }

    void blankAddressLoadsNothing() {
        Panel panel = panelOf(PanelType::Webpage);
        panel.webpageURL = QStringLiteral("   ");
        PanelRunner runner(panel, services());
        runner.start();
        QVERIFY(m_pages.isEmpty());
        QCOMPARE(runner.webPage(), nullptr);
    }

    void emptyAddressSaysNothing() {
        Panel panel = panelOf(PanelType::Webpage);
        panel.webpageURL = QString();
        PanelRunner runner(panel, services());
        runner.start();
        QVERIFY(m_pages.isEmpty());
        QCOMPARE(runner.textOutput(), QString());
    }

    void addressThatIsNoWebAddressSaysSo() {
        Panel panel = panelOf(PanelType::Webpage);
        panel.webpageURL = QStringLiteral("   ");
        PanelRunner runner(panel, services());
        runner.start();
        QCOMPARE(runner.textOutput(), QStringLiteral("error: not a web address"));
        panel.webpageURL = QStringLiteral("exa mple.org");
        runner.apply(panel);
        QCOMPARE(runner.textOutput(), QStringLiteral("error: not a web address: exa mple.org"));
        QVERIFY(m_pages.isEmpty());
    }

    void webEngineThatCannotBeLoadedSaysSo() {
        Panel panel = panelOf(PanelType::Webpage);
        panel.webpageURL = QStringLiteral("https://example.org");
        RunnerServices withoutEngine = services();
        withoutEngine.createWebPage = [](QObject*) -> WebPage* { return nullptr; };
        PanelRunner runner(panel, withoutEngine);
        runner.start();
        QCOMPARE(runner.textOutput(), QStringLiteral("error: the web engine could not be loaded"));
        QCOMPARE(runner.webPage(), nullptr);
    }

    void everyRefreshLoadsThePageAgain() {
        Panel panel = panelOf(PanelType::Webpage);
        panel.webpageURL = QStringLiteral("https://example.org");
        PanelRunner runner(panel, services());
        QSignalSpy created(&runner, &PanelRunner::webPageCreated);
        runner.start();
        runner.refreshNow();
        QCOMPARE(created.count(), 1);
        QCOMPARE(m_pages.size(), 1);
        QCOMPARE(m_pages.first()->loads.size(), 2);
    }

    void otherPanelTypesNeverMakeAWebPage() {
        for (PanelType type : allPanelTypes()) {
            if (type == PanelType::Webpage)
                continue;
            Panel panel = panelOf(type);
            panel.webpageURL = QStringLiteral("https://example.org");
            panel.shellCommand = QStringLiteral("true");
            PanelRunner runner(panel, services());
            runner.start();
            QCOMPARE(runner.webPage(), nullptr);
        }
        QVERIFY(m_pages.isEmpty());
    }

    void engineDoesNotBringTheWebEngineIntoTheProcess() {
        QFile maps(QStringLiteral("/proc/self/maps"));
        QVERIFY(maps.open(QIODevice::ReadOnly));
        QVERIFY(!maps.readAll().contains("WebEngine"));
    }
};

QTEST_MAIN(PanelRunnerTest)
#include "tst_panelrunner.moc"
