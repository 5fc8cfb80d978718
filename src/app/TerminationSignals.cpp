// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/TerminationSignals.h"

#include <QSocketNotifier>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace corkwheel {

namespace {

constexpr int kSignals[] = {SIGTERM, SIGINT, SIGHUP};

// The handler may only make async-signal-safe calls, so it just wakes the event loop through
// a pipe whose read end a socket notifier watches.
int g_pipe[2] = {-1, -1};

void wakeEventLoop(int) {
    const int savedErrno = errno;
    const char byte = 1;
    static_cast<void>(::write(g_pipe[1], &byte, 1));
    errno = savedErrno;
}

void setHandler(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (int signal : kSignals)
        ::sigaction(signal, &action, nullptr);
}

} // namespace

TerminationSignals::TerminationSignals(QObject* parent) : QObject(parent) {
    if (::pipe2(g_pipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = new QSocketNotifier(g_pipe[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, [this] {
        char drained[16];
        while (::read(g_pipe[0], drained, sizeof drained) > 0) {
        }
        Q_EMIT terminationRequested();
    });
    setHandler(wakeEventLoop);
}

TerminationSignals::~TerminationSignals() {
    if (!m_notifier)
        return;
    setHandler(SIG_DFL);
    delete m_notifier;
    ::close(g_pipe[0]);
    ::close(g_pipe[1]);
    g_pipe[0] = g_pipe[1] = -1;
}

} // namespace corkwheel
