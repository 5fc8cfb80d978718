// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QObject>
#include <QProcess>
#include <QSocketNotifier>
#include <QString>
#include <QTimer>

#include <chrono>

namespace corkwheel {

// One run of a shell panel's command, as "<shell> -l -c <command>" (a login shell, so the
// user's profile is read) with the application's environment and working directory. The
// event loop drives the process, so no thread waits for it.
//
// The text shown is the trimmed standard output, or the trimmed standard error when the
// output is empty; the exit status doesn't matter. Both are read to their end, also after
// the shell has exited, so what a background child writes before it lets go of them shows
// too. Each stream keeps its first kMaxKeptBytes and drains the rest, so a command that
// never stops writing can't eat the application's memory. Output that isn't valid UTF-8
// counts as empty.
//
// The shell leads a process group of its own. At the time limit the whole group gets
// SIGTERM, then SIGKILL after kKillGrace, and the run ends with "error: command timed out",
// or, when the shell itself had ended and only something it left behind still held the
// output, with the output read until then; nothing the command started outlives the run. Destroying
// a run that is still under way kills its whole group at once and reports nothing.
class ShellCommand : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds kTimeLimit{10'000};
    static constexpr std::chrono::milliseconds kKillGrace{500};
    static constexpr qsizetype kMaxKeptBytes = 1024 * 1024;

    // The shell a command runs in, and how long it may run; a shell panel's are these.
    struct Setup {
        QString shell = QStringLiteral("/bin/zsh");
        std::chrono::milliseconds timeLimit = kTimeLimit;
    };

    ShellCommand(const QString& command, const Setup& setup, QObject* parent = nullptr);
    ~ShellCommand() override;

    // Launches the command once; finished() follows exactly once, from the event loop.
    // A receiver that wants to get rid of the run uses deleteLater().
    void start();

Q_SIGNALS:
    void finished(const QString& text);

private:
    // What is kept of one stream: a prefix of at most kMaxKeptBytes, cut before a
    // character the limit would split.
    struct KeptOutput {
        QByteArray bytes;
        bool full = false;
    };

    // The read end of the pipe one stream goes to; closed at its end of file.
    struct OutputPipe {
        int fd = -1;
        QSocketNotifier* notifier = nullptr;
        KeptOutput kept;
    };

    void onProcessError(QProcess::ProcessError error);
    void onProcessFinished();
    void onTimeLimit();
    bool openPipes(int (&writeEnds)[2]);
    void readPipe(OutputPipe& pipe);
    static void closePipe(OutputPipe& pipe);
    void reportOutputOnceRead();
    QString outputText() const;
    void signalProcessGroup(int signal);
    void report(const QString& text);

    QProcess m_process;
    QTimer m_timeLimit;
    QTimer m_killGrace;
    OutputPipe m_stdout;
    OutputPipe m_stderr;
    qint64 m_processGroup = 0;
    bool m_started = false;
    bool m_timedOut = false;
    bool m_shellEnded = false;
    bool m_reported = false;
};

} // namespace corkwheel
