// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/TerminationSignals.h"

#include <QSignalSpy>
#include <QTest>

#include <csignal>

using namespace corkwheel;

class TerminationSignalsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void endingSignalAsksToQuitInsteadOfKilling_data() {
        QTest::addColumn<int>("signal");
        QTest::newRow("SIGTERM, as at logout") << SIGTERM;
        QTest::newRow("SIGINT, as Ctrl+C") << SIGINT;
        QTest::newRow("SIGHUP, as a closed terminal") << SIGHUP;
    }

    void endingSignalAsksToQuitInsteadOfKilling() {
        QFETCH(int, signal);
        TerminationSignals signals;
        QSignalSpy requested(&signals, &TerminationSignals::terminationRequested);
        // Without a handler this would end the test process here.
        QCOMPARE(::raise(signal), 0);
        QVERIFY(requested.wait());
        QCOMPARE(requested.count(), 1);
    }

    void signalsAskOnceEachTime() {
        TerminationSignals signals;
        QSignalSpy requested(&signals, &TerminationSignals::terminationRequested);
        ::raise(SIGTERM);
        QVERIFY(requested.wait());
        ::raise(SIGTERM);
        QVERIFY(requested.wait());
        QCOMPARE(requested.count(), 2);
    }
};

QTEST_GUILESS_MAIN(TerminationSignalsTest)
#include "tst_terminationsignals.moc"
