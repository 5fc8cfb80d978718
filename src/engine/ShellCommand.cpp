// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/ShellCommand.h"

#include "engine/Utf8Text.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

namespace corkwheel {

namespace {

// How long the destructor waits for a killed shell to be reaped, so QProcess is never
// destroyed while it still runs.
constexpr int kReapWaitMs = 5000;

// Qt names the failed call first ("execvp: No such file or directory"); the user needs
// to see which program could not start, and why.
QString launchFailureText(const QString& program, const QString& qtMessage) {
    const qsizetype separator = qtMessage.lastIndexOf(QStringLiteral(": "));
    const QString reason = separator < 0 ? qtMessage : qtMessage.mid(separator + 2);
    return ShellCommand::tr("error: cannot start %1: %2").arg(program, reason);
}

} // namespace

ShellCommand::ShellCommand(const QString& command, const Setup& setup, QObject* parent)
    : QObject(parent), m_process(this), m_timeLimit(this), m_killGrace(this) {
    m_process.setProgram(setup.shell);
    m_process.setArguments({QStringLiteral("-l"), QStringLiteral("-c"), command});
    m_process.setStandardInputFile(QProcess::nullDevice());
    // The output goes to pipes of this run's own (see start()): QProcess stops reading its
    // pipes when the shell exits, and a background child's later output would be lost.
    m_process.setProcessChannelMode(QProcess::ForwardedChannels);
    connect(&m_process, &QProcess::errorOccurred, this, &ShellCommand::onProcessError);
    connect(&m_process, &QProcess::finished, this, &ShellCommand::onProcessFinished);

    // Precise, so the run is never cut short of its full time.
    m_timeLimit.setTimerType(Qt::PreciseTimer);
    m_timeLimit.setSingleShot(true);
    m_timeLimit.setInterval(setup.timeLimit);
    connect(&m_timeLimit, &QTimer::timeout, this, &ShellCommand::onTimeLimit);
    m_killGrace.setSingleShot(true);
    m_killGrace.setInterval(kKillGrace);
    connect(&m_killGrace, &QTimer::timeout, this, [this] { signalProcessGroup(SIGKILL); });
}

ShellCommand::~ShellCommand() {
    // Nobody is left to take a result, and nothing of an unfinished run may outlive it.
    disconnect(&m_process, nullptr, this, nullptr);
    const bool running = m_process.state() != QProcess::NotRunning;
    const bool outputHeld = m_stdout.fd >= 0 || m_stderr.fd >= 0;
    if (running || m_timedOut || outputHeld)
        signalProcessGroup(SIGKILL);
    if (running)
        m_process.waitForFinished(kReapWaitMs);
    closePipe(m_stdout);
    closePipe(m_stderr);
}

void ShellCommand::start() {
    if (m_started)
        return;
    m_started = true;
    m_timeLimit.start();
    int writeEnds[2] = {-1, -1};
    if (!openPipes(writeEnds)) {
        QMetaObject::invokeMethod(
            this, [this] { report(tr("error: cannot open a pipe")); }, Qt::QueuedConnection);
        return;
    }
    // A session of its own makes the shell lead a new process group, so the time limit
    // can reach everything the command starts.
    m_process.setChildProcessModifier([writeEnds] {
        ::dup2(writeEnds[0], STDOUT_FILENO);
        ::dup2(writeEnds[1], STDERR_FILENO);
        static_cast<void>(::setsid());
    });
    m_process.start();
    m_processGroup = m_process.processId();
    // Only the command holds the write ends now, so the reads end when it lets go of them.
    ::close(writeEnds[0]);
    ::close(writeEnds[1]);
}

bool ShellCommand::openPipes(int (&writeEnds)[2]) {
    for (OutputPipe* pipe : {&m_stdout, &m_stderr}) {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) != 0) {
            closePipe(m_stdout);
            if (writeEnds[0] >= 0)
                ::close(writeEnds[0]);
            return false;
        }
        ::fcntl(ends[0], F_SETFL, ::fcntl(ends[0], F_GETFL) | O_NONBLOCK);
        pipe->fd = ends[0];
        pipe->notifier = new QSocketNotifier(ends[0], QSocketNotifier::Read, this);
        connect(pipe->notifier, &QSocketNotifier::activated, this, [this, pipe] {
            readPipe(*pipe);
            reportOutputOnceRead();
        });
        writeEnds[pipe == &m_stdout ? 0 : 1] = ends[1];
    }
    return true;
}

void ShellCommand::onProcessError(QProcess::ProcessError error) {
    // A crash or a pipe error still ends in finished(); only a failed launch doesn't.
    if (error == QProcess::FailedToStart)
        report(launchFailureText(m_process.program(), m_process.errorString()));
}

void ShellCommand::onProcessFinished() {
    if (m_timedOut) {
        // Whatever the command wrote before the limit is dropped.
        report(tr("error: command timed out"));
        return;
    }
    m_shellEnded = true;
    reportOutputOnceRead();
}

void ShellCommand::onTimeLimit() {
    if (m_shellEnded) {
        // The command is over; something it left behind still holds the output.
        signalProcessGroup(SIGKILL);
        readPipe(m_stdout);
        readPipe(m_stderr);
        report(outputText());
        return;
    }
    m_timedOut = true;
    signalProcessGroup(SIGTERM);
    m_killGrace.start();
}

void ShellCommand::readPipe(OutputPipe& pipe) {
    // Bytes past the limit are still read, so the pipe keeps draining and the command
    // never blocks on a full pipe; they are just not kept.
    char chunk[65536];
    while (pipe.fd >= 0) {
        const ssize_t count = ::read(pipe.fd, chunk, sizeof chunk);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0 && errno == EAGAIN)
            return;
        if (count <= 0) {
            closePipe(pipe);
            return;
        }
        KeptOutput& kept = pipe.kept;
        if (kept.full)
            continue;
        const qsizetype room = kMaxKeptBytes - kept.bytes.size();
        kept.bytes.append(chunk, std::min<qsizetype>(count, room));
        if (count > room) {
            kept.full = true;
            Utf8Text::chopSplitCharacter(kept.bytes);
        }
    }
}

void ShellCommand::closePipe(OutputPipe& pipe) {
    // Often closed from the notifier's own signal, so it goes once that has returned.
    if (pipe.notifier) {
        pipe.notifier->setEnabled(false);
        pipe.notifier->deleteLater();
    }
    pipe.notifier = nullptr;
    if (pipe.fd >= 0)
        ::close(pipe.fd);
    pipe.fd = -1;
}

// The output is complete once the shell has ended and both pipes reached their end.
void ShellCommand::reportOutputOnceRead() {
    if (m_shellEnded && !m_timedOut && m_stdout.fd < 0 && m_stderr.fd < 0)
        report(outputText());
}

QString ShellCommand::outputText() const {
    const QString output = Utf8Text::decodeTrimmed(m_stdout.kept.bytes);
    return output.isEmpty() ? Utf8Text::decodeTrimmed(m_stderr.kept.bytes) : output;
}

void ShellCommand::signalProcessGroup(int signal) {
    if (m_processGroup <= 0)
        return;
    const auto group = static_cast<pid_t>(m_processGroup);
    // Before the child has called setsid() its group doesn't exist, but then it hasn't
    // started the shell either, and signalling the child alone is enough. Only while the
    // shell is unreaped is its pid sure to be still ours.
    if (::killpg(group, signal) != 0 && m_process.state() != QProcess::NotRunning)
        ::kill(group, signal);
}

void ShellCommand::report(const QString& text) {
    if (m_reported)
        return;
    m_reported = true;
    m_timeLimit.stop();
    Q_EMIT finished(text);
}

} // namespace corkwheel
