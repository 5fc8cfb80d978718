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

    // How many times the runner's text was refreshed while `seconds` passed on the clock.
    int refreshesWithin(const PanelRunner& runner, double seconds) {
        QSignalSpy text(&runner, &PanelRunner::textOutputChanged);
        m_machine->clock().runFor(seconds);
        return static_cast<int>(text.count());
    }

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
        QCOMPARE(refreshesWithin(runner, 5), 0);
        QCOMPARE(runner.textOutput(), QString());
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
        // The fake clock stands on a whole second, so each tick comes a whole timer later.
        QCOMPARE(refreshesWithin(runner, timer - 0.001), 0);
        QCOMPARE(refreshesWithin(runner, 0.001), 1);
        QCOMPARE(refreshesWithin(runner, timer - 0.001), 0);
        QCOMPARE(refreshesWithin(runner, 0.001), 1);
    }

    void timerRefreshesAgain() {
        Panel panel = panelOf(PanelType::Text);
        panel.refreshInterval = 0.2; // becomes one second
        panel.textTemplate = QStringLiteral("tick");
        PanelRunner runner(panel, services());
        QSignalSpy text(&runner, &PanelRunner::textOutputChanged);
        runner.start();
        QCOMPARE(text.count(), 1);
        QCOMPARE(refreshesWithin(runner, 3), 3);
        QCOMPARE(runner.textOutput(), QStringLiteral("tick"));
    }

    void stoppedRunnerNoLongerRefreshes() {
        Panel panel = panelOf(PanelType::Text);
        panel.refreshInterval = 1;
        PanelRunner runner(panel, services());
        QSignalSpy text(&runner, &PanelRunner::textOutputChanged);
        runner.start();
        runner.stop();
        QCOMPARE(refreshesWithin(runner, 5), 0);
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
        m_machine->clock().runFor(0.3);
        panel.textTemplate = QStringLiteral("Year {date:yyyy}");
        runner.apply(panel);
        QCOMPARE(runner.textOutput(), QStringLiteral("Year 2026"));
        // Still the tick a minute after the start, not a minute after the change.
        QCOMPARE(refreshesWithin(runner, 59.7 - 0.001), 0);
        QCOMPARE(refreshesWithin(runner, 0.001), 1);
    }

    void intervalChangeRestartsTimerAndRefreshes() {
        Panel panel = panelOf(PanelType::Text);
        panel.refreshInterval = 60;
        PanelRunner runner(panel, services());
        QSignalSpy text(&runner, &PanelRunner::textOutputChanged);
        runner.start();
        m_machine->clock().runFor(0.3);
        panel.refreshInterval = 30;
        runner.apply(panel);
        QCOMPARE(text.count(), 2);
        // Every 30 s from the change on, on the whole second that is 30 s away.
        QCOMPARE(refreshesWithin(runner, 30.7 - 0.001), 0);
        QCOMPARE(refreshesWithin(runner, 0.001), 1);
        QCOMPARE(refreshesWithin(runner, 30), 1);
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
        QCOMPARE(refreshesWithin(runner, 1.0), 0);
        QCOMPARE(refreshesWithin(runner, 0.001), 1);
        QCOMPARE(text.count(), 2);
        // And the same after a change of interval, which starts the timer again.
        m_machine->clock().runFor(0.998);
        panel.refreshInterval = 2;
        runner.apply(panel);
        QCOMPARE(refreshesWithin(runner, 2.001), 0);
        QCOMPARE(refreshesWithin(runner, 0.001), 1);
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
        QCOMPARE(refreshesWithin(runner, 1.7 - 0.001), 0);
        QCOMPARE(refreshesWithin(runner, 0.001), 1);
        QCOMPARE(refreshesWithin(runner, 1), 1);
    }

    void applyBeforeStartStarts() {
        PanelRunner runner(panelOf(PanelType::Text), services());
        runner.apply(runner.panel());
        QVERIFY(!runner.textOutput().isEmpty());
        QVERIFY(refreshesWithin(runner, runner.panel().refreshInterval + 1) > 0);
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
