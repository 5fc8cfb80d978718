// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>

class QSocketNotifier;

namespace corkwheel {

// Ends the application the way "Quit Corkwheel" does when the process is asked to end:
// SIGTERM (the session logging out, `kill`), SIGINT (Ctrl+C in a terminal) or SIGHUP (the
// terminal closing). The windows close and the event loop returns, instead of the process
// dying where it stands; that matters most when a thread is stuck in a file system that
// stopped answering, which keeps a killed process and its windows around until it answers.
class TerminationSignals : public QObject {
    Q_OBJECT

public:
    // One per process: the signals have one handler each.
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

Q_SIGNALS:
    void terminationRequested();

private:
    QSocketNotifier* m_notifier = nullptr;
};

} // namespace corkwheel
