// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/BackgroundWork.h"
#include "support/RunnerFixture.h"
#include "support/TemporaryFiles.h"

#include "engine/BackgroundTask.h"
#include "engine/PanelRunner.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <vector>

#include <csignal>

using namespace corkwheel;
using namespace corkwheel::test;

// What the runners of shell, file and statistics panels show.

class PanelRunnerSourcesTest : public QObject, private RunnerFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { resetMachine(); }

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
        runner->start();
        QTRY_VERIFY(QFile(marker).size() > 0);
        QFile file(marker);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const qint64 pid = file.readAll().trimmed().toLongLong();
        QVERIFY(::kill(static_cast<pid_t>(pid), 0) == 0);
        delete runner;
        // The panel's command goes with it: no process of it is left running.
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
        // Once any read would have come back, nothing else arrived.
        waitForBackgroundWork();
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
        // Panels deleted while their file was read leave nothing behind: every read ends,
        // and a panel of the same file shows its text.
        PanelRunner kept(panel, services());
        kept.start();
        QTRY_VERIFY(kept.textOutput().startsWith(QStringLiteral("Name:")));
        QTRY_COMPARE(BackgroundTask::blockingPool().activeThreadCount(), 0);
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
        // The reading waits for the stuck share until its time limit, which passes on the
        // machine's clock as real time goes by.
        QVERIFY(QTest::qWaitFor(
            [&] {
                m_machine->clock().runFor(0.01);
                return stats.count() > 0;
            },
            5000));
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
};

QTEST_MAIN(PanelRunnerSourcesTest)
#include "tst_panelrunnersources.moc"
