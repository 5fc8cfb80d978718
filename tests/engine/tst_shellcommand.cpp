// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/RunnerServices.h"
#include "engine/ShellCommand.h"

#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <memory>
#include <optional>

#include <cerrno>
#include <csignal>
#include <sys/types.h>

using namespace corkwheel;
using namespace std::chrono_literals;

namespace {

const QString kTimedOut = QStringLiteral("error: command timed out");

// Gone, or dead and only waiting for whoever adopted it to collect it.
bool processIsGone(qint64 pid) {
    if (::kill(static_cast<pid_t>(pid), 0) != 0)
        return errno == ESRCH;
    QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!stat.open(QIODevice::ReadOnly))
        return true;
    const QByteArray line = stat.readAll();
    const qsizetype nameEnd = line.lastIndexOf(')');
    return nameEnd >= 0 && line.mid(nameEnd + 2, 1) == QByteArrayLiteral("Z");
}

// The process ids a command wrote to `path`, one a line.
QList<qint64> pidsIn(const QString& path) {
    QFile file(path);
    QList<qint64> pids;
    if (!file.open(QIODevice::ReadOnly))
        return pids;
    for (const QByteArray& line : file.readAll().split('\n')) {
        bool ok = false;
        const qint64 pid = line.trimmed().toLongLong(&ok);
        if (ok)
            pids.append(pid);
    }
    return pids;
}

qint64 residentKiB() {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').value(0).toLongLong();
    }
    return -1;
}

// The largest resident size while `run` goes on, in KiB: a run's buffers are freed once it
// is over.
template <typename Run> qint64 peakResidentKiBDuring(Run run) {
    qint64 peak = residentKiB();
    QTimer sampler;
    QObject::connect(&sampler, &QTimer::timeout, [&peak] { peak = std::max(peak, residentKiB()); });
    sampler.start(20);
    run();
    return peak;
}

// Runs `command` to its end or to the time limit and returns the text it shows.
QString execute(const QString& command, const ShellCommand::Setup& setup = {}) {
    ShellCommand run(command, setup);
    QEventLoop loop;
    std::optional<QString> result;
    QObject::connect(&run, &ShellCommand::finished, &loop, [&](const QString& text) {
        result = text;
        loop.quit();
    });
    run.start();
    if (!result)
        loop.exec();
    return result.value_or(QString());
}

ShellCommand::Setup withTimeLimit(std::chrono::milliseconds limit) {
    ShellCommand::Setup setup;
    setup.timeLimit = limit;
    return setup;
}

QString quoted(const QString& path) {
    return QLatin1Char('\'') + path + QLatin1Char('\'');
}

} // namespace

class ShellCommandTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();

    void standardOutputWinsOverStandardError();
    void standardErrorShowsWhenOutputIsEmpty();
    void outputIsTrimmedKeepingInnerBlankLines();
    void blankCommandShowsEmptyText();
    void commandRunsInLoginZsh();
    void environmentAndWorkingDirectoryAreInherited();
    void standardInputIsEmpty();
    void silentFailureShowsEmptyText();
    void failingCommandStillShowsItsOutput();
    void commandKilledBySignalStillShowsItsOutput();
    void outputOfABackgroundChildAfterTheShellExitsIsShown();
    void outputHeldOpenPastTheLimitShowsWhatWasReadAndEndsTheHolder();
    void outputLargerThanPipeCapacityCompletes();
    void fiveMegabytesOfOutputShowFirstMebibyte();
    void keptOutputIsCutBeforeSplitCharacter();
    void invalidUtf8CountsAsEmpty_data();
    void invalidUtf8CountsAsEmpty();
    void missingShellShowsError();
    void asynchronousRunReportsExactlyOnce();
    void sleepingThirtySecondsTimesOutAfterTenSeconds();
    void outputBeforeTimeLimitIsDiscarded();
    void endlessOutputTimesOutWithinBoundedMemory();
    void timeOutEndsEveryProcessOfTheGroup();
    void commandsHaveTenSecondsAndHalfASecondToEnd();
    void timeOutAsksWithTermBeforeItKills();
    void timeOutKillsChildrenThatIgnoreTerm();
    void destroyingRunningCommandReportsNothingAndLeavesNoProcess();
    void destroyingCommandRightAfterStartRunsNothingFurther();
    void gibibyteOfBinaryOutputShowsNothingWithinBoundedMemory();
    void nulBytesStayInTheText();
    void tenMegabyteLineShowsItsFirstMebibyte();
    void fiftySleepingChildrenAllEndAtTheTimeLimit();
    void childDetachedIntoANewSessionIsBeyondReach();

private:
    QTemporaryDir m_dir;
};

void ShellCommandTest::init() {
    // Failures must show only as text: not even Qt may complain, say about a process
    // destroyed while still running.
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
    QVERIFY(m_dir.isValid());
}

void ShellCommandTest::standardOutputWinsOverStandardError() {
    QCOMPARE(execute(QStringLiteral("echo hi; echo err >&2")), QStringLiteral("hi"));
}

void ShellCommandTest::standardErrorShowsWhenOutputIsEmpty() {
    QCOMPARE(execute(QStringLiteral("echo err >&2")), QStringLiteral("err"));
    // Output that trims to nothing counts as empty too.
    QCOMPARE(execute(QStringLiteral("printf ' \\n\\t\\n'; echo err >&2")), QStringLiteral("err"));
}

void ShellCommandTest::outputIsTrimmedKeepingInnerBlankLines() {
    QCOMPARE(execute(QStringLiteral("printf '\\n\\n  first\\n\\n\\nsecond \\t\\n\\n'")),
             QStringLiteral("first\n\n\nsecond"));
}

void ShellCommandTest::blankCommandShowsEmptyText() {
    QCOMPARE(execute(QStringLiteral("  \n\t \n")), QString());
}

void ShellCommandTest::commandRunsInLoginZsh() {
    QCOMPARE(execute(QStringLiteral("print -r -- $ZSH_NAME; [[ -o login ]] && echo login")),
             QStringLiteral("zsh\nlogin"));
}

void ShellCommandTest::environmentAndWorkingDirectoryAreInherited() {
    qputenv("CORKWHEEL_TEST_MARKER", "marker-42");
    const QString text = execute(QStringLiteral("echo $CORKWHEEL_TEST_MARKER; pwd"));
    qunsetenv("CORKWHEEL_TEST_MARKER");
    QCOMPARE(text, QStringLiteral("marker-42\n") + QDir::currentPath());
}

void ShellCommandTest::standardInputIsEmpty() {
    // A command that reads its input ends at once instead of waiting for the time limit.
    QCOMPARE(execute(QStringLiteral("cat; echo done")), QStringLiteral("done"));
}

void ShellCommandTest::silentFailureShowsEmptyText() {
    QCOMPARE(execute(QStringLiteral("exit 3")), QString());
}

void ShellCommandTest::failingCommandStillShowsItsOutput() {
    QCOMPARE(execute(QStringLiteral("echo partial; exit 1")), QStringLiteral("partial"));
}

void ShellCommandTest::commandKilledBySignalStillShowsItsOutput() {
    QCOMPARE(execute(QStringLiteral("echo before; kill -KILL $$")), QStringLiteral("before"));
}

void ShellCommandTest::outputLargerThanPipeCapacityCompletes() {
    // Far more than a pipe holds (64 KiB), on both streams at once.
    const QString text = execute(
        QStringLiteral("head -c 300000 /dev/zero | tr '\\0' e >&2; head -c 300000 /dev/zero "
                       "| tr '\\0' o"));
    QCOMPARE(text, QString(300000, QLatin1Char('o')));
}

void ShellCommandTest::fiveMegabytesOfOutputShowFirstMebibyte() {
    const QString text = execute(QStringLiteral("head -c 5000000 /dev/zero | tr '\\0' a"));
    QCOMPARE(text.size(), 1024 * 1024);
    QCOMPARE(text, QString(1024 * 1024, QLatin1Char('a')));
}

void ShellCommandTest::keptOutputIsCutBeforeSplitCharacter() {
    // Lines of "é\n" are three bytes each, so the 1 MiB limit falls right after the first
    // byte of an "é"; that half character goes, and the rest is still valid text.
    const QString text = execute(QStringLiteral("yes é | head -c 5000000"));
    const qsizetype wholeLines = 1024 * 1024 / 3;
    QString expected = QStringLiteral("\u00e9\n").repeated(wholeLines);
    expected.chop(1);
    QCOMPARE(text.size(), expected.size());
    QCOMPARE(text, expected);
}

void ShellCommandTest::invalidUtf8CountsAsEmpty_data() {
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("expected");
    QTest::newRow("invalid bytes") << QStringLiteral("printf 'ok \\xff\\xfe'") << QString();
    QTest::newRow("falls back to standard error")
        << QStringLiteral("printf 'ok \\xff'; echo err >&2") << QStringLiteral("err");
    QTest::newRow("invalid standard error")
        << QStringLiteral("printf 'bad \\xc3' >&2") << QString();
    QTest::newRow("half a character at the end")
        << QStringLiteral("printf 'ok \\xc3'; echo err >&2") << QStringLiteral("err");
}

void ShellCommandTest::invalidUtf8CountsAsEmpty() {
    QFETCH(QString, command);
    QFETCH(QString, expected);
    QCOMPARE(execute(command), expected);
}

void ShellCommandTest::missingShellShowsError() {
    ShellCommand::Setup setup;
    setup.shell = QStringLiteral("/nonexistent/zsh");
    const QString text = execute(QStringLiteral("echo hi"), setup);
    QCOMPARE(text,
             QStringLiteral("error: cannot start /nonexistent/zsh: No such file or directory"));
}

void ShellCommandTest::asynchronousRunReportsExactlyOnce() {
    ShellCommand run(QStringLiteral("echo hi"), {});
    ShellCommand later(QStringLiteral("sleep 0.3; echo later"), {});
    QSignalSpy spy(&run, &ShellCommand::finished);
    QSignalSpy laterSpy(&later, &ShellCommand::finished);
    run.start();
    later.start();
    QVERIFY(spy.isEmpty());
    QVERIFY(spy.wait(5000));
    QCOMPARE(spy.at(0).at(0).toString(), QStringLiteral("hi"));
    // Anything more of the first run's would come before the report of a command that
    // ended well after it.
    QTRY_COMPARE_WITH_TIMEOUT(laterSpy.count(), 1, 5000);
    QCOMPARE(spy.count(), 1);
}

void ShellCommandTest::sleepingThirtySecondsTimesOutAfterTenSeconds() {
    QElapsedTimer elapsed;
    elapsed.start();
    QCOMPARE(execute(QStringLiteral("sleep 30")), kTimedOut);
    // Not before the limit, and without waiting for the command itself.
    QVERIFY2(elapsed.elapsed() >= 10'000, qPrintable(QString::number(elapsed.elapsed())));
    QVERIFY2(elapsed.elapsed() < 25'000, qPrintable(QString::number(elapsed.elapsed())));
}

void ShellCommandTest::outputBeforeTimeLimitIsDiscarded() {
    QCOMPARE(execute(QStringLiteral("echo partial; echo err >&2; sleep 30"), withTimeLimit(500ms)),
             kTimedOut);
}

void ShellCommandTest::endlessOutputTimesOutWithinBoundedMemory() {
    const qint64 before = residentKiB();
    QVERIFY(before > 0);
    QString text;
    const qint64 peak = peakResidentKiBDuring(
        [&text] { text = execute(QStringLiteral("yes"), withTimeLimit(1500ms)); });
    QCOMPARE(text, kTimedOut);
    const qint64 grownKiB = peak - before;
    QVERIFY2(grownKiB < 50 * 1024, qPrintable(QStringLiteral("grew %1 KiB").arg(grownKiB)));
}

void ShellCommandTest::outputOfABackgroundChildAfterTheShellExitsIsShown() {
    QCOMPARE(execute(QStringLiteral("(sleep 0.5; echo late) & echo early")),
             QStringLiteral("early\nlate"));
}

void ShellCommandTest::outputHeldOpenPastTheLimitShowsWhatWasReadAndEndsTheHolder() {
    const QString pidFile = m_dir.filePath(QStringLiteral("holder.pid"));
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(execute(QStringLiteral("sleep 300 & echo $! > %1; echo early").arg(quoted(pidFile)),
                     withTimeLimit(1000ms)),
             QStringLiteral("early"));
    QVERIFY(timer.elapsed() < 5000);
    const QList<qint64> pids = pidsIn(pidFile);
    QCOMPARE(pids.size(), 1);
    QTRY_VERIFY(processIsGone(pids.first()));
}

void ShellCommandTest::timeOutEndsEveryProcessOfTheGroup() {
    const QString pidFile = m_dir.filePath(QStringLiteral("group.pid"));
    QCOMPARE(
        execute(QStringLiteral("sleep 300 & echo $! > %1; sleep 300; wait").arg(quoted(pidFile)),
                withTimeLimit(500ms)),
        kTimedOut);
    const QList<qint64> pids = pidsIn(pidFile);
    QCOMPARE(pids.size(), 1);
    QTRY_VERIFY(processIsGone(pids.first()));
}

// What users and scripts rely on: a command has ten seconds, and then its whole group is
// asked to end (SIGTERM) and, half a second later, made to (SIGKILL).
void ShellCommandTest::commandsHaveTenSecondsAndHalfASecondToEnd() {
    QCOMPARE(ShellCommand::Setup{}.timeLimit, 10s);
    QCOMPARE(RunnerServices{}.shellCommands.timeLimit, 10s);
    QCOMPARE(RunnerServices{}.fileReadTimeLimit, 10s);
    QCOMPARE(ShellCommand::kKillGrace, 500ms);
}

// At the time limit the command is first asked to end: a command that traps SIGTERM hears
// it and lives on until SIGKILL comes (a SIGKILL straight away would leave no "term" line).
void ShellCommandTest::timeOutAsksWithTermBeforeItKills() {
    const QString log = m_dir.filePath(QStringLiteral("signals.log"));
    QCOMPARE(execute(QStringLiteral("trap 'echo term >> %1' TERM; "
                                    "while true; do echo alive >> %1; sleep 0.05; done")
                         .arg(quoted(log)),
                     withTimeLimit(500ms)),
             kTimedOut);
    QFile file(log);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = file.readAll().split('\n');
    const qsizetype term = lines.indexOf("term");
    QVERIFY2(term > 0, "no SIGTERM was heard before the command ended");
    // It went on for the grace period after SIGTERM, heartbeats every 50 ms.
    QVERIFY2(lines.count("alive") - lines.mid(0, term).count("alive") >= 3,
             lines.join(' ').constData());
}

void ShellCommandTest::timeOutKillsChildrenThatIgnoreTerm() {
    const QString pidFile = m_dir.filePath(QStringLiteral("stubborn.pid"));
    // The run stays alive after its result, so only the grace period's SIGKILL can end
    // the child.
    ShellCommand run(
        QStringLiteral("(trap '' TERM; exec sleep 300) & echo $! > %1; wait").arg(quoted(pidFile)),
        withTimeLimit(500ms));
    QSignalSpy spy(&run, &ShellCommand::finished);
    run.start();
    QTRY_COMPARE(pidsIn(pidFile).size(), 1);
    const qint64 child = pidsIn(pidFile).first();
    QVERIFY(spy.wait(5000));
    QCOMPARE(spy.at(0).at(0).toString(), kTimedOut);
    QTRY_VERIFY(processIsGone(child));
}

void ShellCommandTest::destroyingRunningCommandReportsNothingAndLeavesNoProcess() {
    const QString pidFile = m_dir.filePath(QStringLiteral("running.pid"));
    // As the panel runner holds a run: the run dies with its owner.
    auto owner = std::make_unique<QObject>();
    auto* run = new ShellCommand(
        QStringLiteral("echo $$ > %1; sleep 300 & echo $! >> %1; wait").arg(quoted(pidFile)), {},
        owner.get());
    QSignalSpy spy(run, &ShellCommand::finished);
    run->start();
    QTRY_COMPARE(pidsIn(pidFile).size(), 2);
    const QList<qint64> pids = pidsIn(pidFile);

    owner.reset();
    QTRY_VERIFY(processIsGone(pids.at(0)));
    QTRY_VERIFY(processIsGone(pids.at(1)));
    // Ended, the shell would have been reported by now.
    QCOMPARE(spy.count(), 0);
}

void ShellCommandTest::destroyingCommandRightAfterStartRunsNothingFurther() {
    const QString marker = m_dir.filePath(QStringLiteral("still-ran"));
    const QString kept = m_dir.filePath(QStringLiteral("kept-ran"));
    auto run = std::make_unique<ShellCommand>(
        QStringLiteral("sleep 0.3; touch %1").arg(quoted(marker)), ShellCommand::Setup{});
    // The same command, kept and a little slower: once it has run, the other would have.
    ShellCommand keptRun(QStringLiteral("sleep 0.6; touch %1").arg(quoted(kept)),
                         ShellCommand::Setup{});
    run->start();
    keptRun.start();
    run.reset();
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(kept), 10000);
    QVERIFY(!QFile::exists(marker));
}

void ShellCommandTest::gibibyteOfBinaryOutputShowsNothingWithinBoundedMemory() {
    const qint64 before = residentKiB();
    QString text = QStringLiteral("unset");
    const qint64 peak = peakResidentKiBDuring([&text] {
        // Time enough for a gibibyte through a pipe on a busy machine: the limit is not
        // what this is about.
        text = execute(QStringLiteral("yes $'\\xff\\x00\\xfe binary' | head -c 1073741824"),
                       withTimeLimit(120s));
    });
    // Not UTF-8, so nothing to show; whatever it was, only a mebibyte of it was kept.
    QCOMPARE(text, QString());
    const qint64 grownKiB = peak - before;
    QVERIFY2(grownKiB < 50 * 1024, qPrintable(QStringLiteral("grew %1 KiB").arg(grownKiB)));
}

void ShellCommandTest::nulBytesStayInTheText() {
    QCOMPARE(execute(QStringLiteral("printf 'a\\0b'")), QStringView(u"a\0b", 3).toString());
}

void ShellCommandTest::tenMegabyteLineShowsItsFirstMebibyte() {
    const QString text = execute(QStringLiteral("head -c 10485760 /dev/zero | tr '\\0' x"));
    QCOMPARE(text.size(), ShellCommand::kMaxKeptBytes);
    QVERIFY(text.startsWith(u'x') && text.endsWith(u'x'));
}

void ShellCommandTest::fiftySleepingChildrenAllEndAtTheTimeLimit() {
    const QString pidFile = m_dir.filePath(QStringLiteral("fifty.pid"));
    QCOMPARE(execute(QStringLiteral("for i in {1..50}; do sleep 300 & echo $! >> %1; done; wait")
                         .arg(quoted(pidFile)),
                     withTimeLimit(1000ms)),
             kTimedOut);
    const QList<qint64> pids = pidsIn(pidFile);
    QCOMPARE(pids.size(), 50);
    for (qint64 pid : pids)
        QTRY_VERIFY(processIsGone(pid));
}

// A child that leaves the command's session with setsid is out of reach of the run's process
// group, and outlives the run; the README says so. The test ends it itself.
void ShellCommandTest::childDetachedIntoANewSessionIsBeyondReach() {
    const QString pidFile = m_dir.filePath(QStringLiteral("detached.pid"));
    const QString groupPidFile = m_dir.filePath(QStringLiteral("group.pid"));
    QCOMPARE(execute(QStringLiteral("setsid sh -c 'echo $$ > %1; exec sleep 300' >/dev/null 2>&1 & "
                                    "echo $$ > %2; exec sleep 300")
                         .arg(quoted(pidFile), quoted(groupPidFile)),
                     withTimeLimit(1000ms)),
             kTimedOut);
    QTRY_COMPARE(pidsIn(pidFile).size(), 1);
    const qint64 detached = pidsIn(pidFile).first();
    // The run's own process group is ended, so the signals have been dealt out.
    QCOMPARE(pidsIn(groupPidFile).size(), 1);
    QTRY_VERIFY(processIsGone(pidsIn(groupPidFile).first()));
    const bool survived = !processIsGone(detached);
    ::kill(static_cast<pid_t>(detached), SIGKILL);
    QVERIFY(survived);
}

QTEST_GUILESS_MAIN(ShellCommandTest)
#include "tst_shellcommand.moc"
