#include "engine/ShellCommand.h"

#include "engine/Utf8Text.h"

#include <QEventLoop>

#include <optional>

#include <csignal>
#include <sys/types.h>
#include <unistd.h>

namespace corkwheel {

namespace {

// How long the destructor waits for a killed shell to be reaped, so QProcess is never
// destroyed while it still runs.
constexpr int kReapWaitMs = 5000;

std::chrono::milliseconds& timeLimitSetting() {
    static std::chrono::milliseconds limit = ShellCommand::kTimeLimit;
    return limit;
}

QString& shellProgramSetting() {
    static QString program = QStringLiteral("/bin/zsh");
    return program;
}

// Qt names the failed call first ("execvp: No such file or directory"); the user needs
// to see which program could not start, and why.
QString launchFailureText(const QString& program, const QString& qtMessage) {
    const qsizetype separator = qtMessage.lastIndexOf(QStringLiteral(": "));
    const QString reason = separator < 0 ? qtMessage : qtMessage.mid(separator + 2);
    return QStringLiteral("error: cannot start ") + program + QStringLiteral(": ") + reason;
}

} // namespace

ShellCommand::ShellCommand(const QString& command, QObject* parent)
    : QObject(parent), m_process(this), m_timeLimit(this), m_killGrace(this) {
    m_process.setProgram(shellProgramSetting());
    m_process.setArguments({QStringLiteral("-l"), QStringLiteral("-c"), command});
    m_process.setStandardInputFile(QProcess::nullDevice());
    // A session of its own makes the shell lead a new process group, so the time limit
    // can reach everything the command starts.
    m_process.setChildProcessModifier([] { static_cast<void>(::setsid()); });
    connect(&m_process, &QProcess::errorOccurred, this, &ShellCommand::onProcessError);
    connect(&m_process, &QProcess::finished, this, &ShellCommand::onProcessFinished);
    connect(&m_process, &QProcess::readyReadStandardOutput, this,
            &ShellCommand::keepAvailableOutput);
    connect(&m_process, &QProcess::readyReadStandardError, this,
            &ShellCommand::keepAvailableOutput);

    // Precise, so the run is never cut short of its full time.
    m_timeLimit.setTimerType(Qt::PreciseTimer);
    m_timeLimit.setSingleShot(true);
    m_timeLimit.setInterval(timeLimitSetting());
    connect(&m_timeLimit, &QTimer::timeout, this, &ShellCommand::onTimeLimit);
    m_killGrace.setSingleShot(true);
    m_killGrace.setInterval(kKillGrace);
    connect(&m_killGrace, &QTimer::timeout, this, [this] { signalProcessGroup(SIGKILL); });
}

ShellCommand::~ShellCommand() {
    // Nobody is left to take a result, and nothing of an unfinished run may outlive it.
    disconnect(&m_process, nullptr, this, nullptr);
    const bool running = m_process.state() != QProcess::NotRunning;
    if (running || m_timedOut)
        signalProcessGroup(SIGKILL);
    if (running)
        m_process.waitForFinished(kReapWaitMs);
}

void ShellCommand::start() {
    if (m_started)
        return;
    m_started = true;
    m_timeLimit.start();
    m_process.start();
    m_processGroup = m_process.processId();
}

QString ShellCommand::execute(const QString& command) {
    ShellCommand run(command);
    QEventLoop loop;
    std::optional<QString> result;
    connect(&run, &ShellCommand::finished, &loop, [&](const QString& text) {
        result = text;
        loop.quit();
    });
    run.start();
    if (!result)
        loop.exec();
    return result.value_or(QString());
}

void ShellCommand::setTimeLimitForTesting(std::chrono::milliseconds limit) {
    timeLimitSetting() = limit;
}

void ShellCommand::setShellProgramForTesting(const QString& program) {
    shellProgramSetting() = program;
}

void ShellCommand::onProcessError(QProcess::ProcessError error) {
    // A crash or a pipe error still ends in finished(); only a failed launch doesn't.
    if (error == QProcess::FailedToStart)
        report(launchFailureText(m_process.program(), m_process.errorString()));
}

void ShellCommand::onProcessFinished() {
    if (m_timedOut) {
        // Whatever the command wrote before the limit is dropped.
        report(QStringLiteral("error: command timed out"));
        return;
    }
    keepAvailableOutput();
    report(outputText());
}

void ShellCommand::onTimeLimit() {
    m_timedOut = true;
    signalProcessGroup(SIGTERM);
    m_killGrace.start();
}

void ShellCommand::keepAvailableOutput() {
    // Bytes past the limit are still read, so the pipe keeps draining and the command
    // never blocks on a full pipe; they are just not kept.
    const auto keep = [](KeptOutput& kept, const QByteArray& chunk) {
        if (kept.full || chunk.isEmpty())
            return;
        const qsizetype room = kMaxKeptBytes - kept.bytes.size();
        kept.bytes.append(chunk.left(room));
        if (chunk.size() <= room)
            return;
        kept.full = true;
        Utf8Text::chopSplitCharacter(kept.bytes);
    };
    keep(m_stdout, m_process.readAllStandardOutput());
    keep(m_stderr, m_process.readAllStandardError());
}

QString ShellCommand::outputText() const {
    const QString output = Utf8Text::decodeTrimmed(m_stdout.bytes);
    return output.isEmpty() ? Utf8Text::decodeTrimmed(m_stderr.bytes) : output;
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
