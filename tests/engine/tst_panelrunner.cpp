// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/RunnerFixture.h"

#include "engine/PanelRunner.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimeZone>

using namespace corkwheel;
using namespace corkwheel::test;

// When the runners of panels refresh, and what text and clock panels show.

namespace {

// A whole second of wall-clock time, in milliseconds since the epoch.
const qint64 kWholeSecondMs =
    QDateTime(QDate(2026, 11, 22), QTime(12, 0, 7), QTimeZone::utc()).toMSecsSinceEpoch();

} // namespace

class PanelRunnerTest : public QObject, private RunnerFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { resetMachine(); }

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
};

QTEST_MAIN(PanelRunnerTest)
#include "tst_panelrunner.moc"
