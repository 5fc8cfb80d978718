// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/NetworkSample.h"
#include "engine/RunnerServices.h"
#include "engine/StyledText.h"
#include "engine/SystemStatsSample.h"
#include "model/Panel.h"

#include <QImage>
#include <QList>
#include <QObject>

#include <memory>

namespace corkwheel {

class ClockTimer;
class ImageLoader;
class TextFileReader;
class WebPage;

// Produces what one panel shows, again and again on its refresh timer, and publishes it
// for the views: the text of shell, file, text and clock panels, the picture of an image
// panel, the readings of a system-stats panel, and the web page of a webpage panel.
class PanelRunner : public QObject {
    Q_OBJECT

public:
    PanelRunner(const Panel& panel, RunnerServices services, QObject* parent = nullptr);
    ~PanelRunner() override;

    QUuid id() const { return m_id; }
    const Panel& panel() const { return m_panel; }

    // The text a shell, file, text or clock panel shows, without the colours.
    QString textOutput() const { return m_textOutput.text; }
    // The same text with the colours and attributes of a shell or file panel's output.
    const StyledText& styledTextOutput() const { return m_textOutput; }
    QImage image() const { return m_image; }
    SystemStatsSample stats() const { return m_stats; }
    // Oldest first, at most kMaxHistory samples.
    QList<NetworkSample> networkHistory() const { return m_networkHistory; }
    bool isRunning() const { return m_isRunning; }
    // None until a webpage panel first loads its page.
    WebPage* webPage() const { return m_webPage; }

    // Refreshes at once and (re)starts the refresh timer. A whole number of seconds is
    // kept in step with the wall clock's seconds: a clock turns with the second it shows,
    // and panels that refresh in the same second wake Corkwheel once between them.
    void start();
    // Takes a new copy of the panel; refreshes when what it shows changed, and restarts
    // the timer when the interval changed.
    void apply(const Panel& panel);
    void refreshNow();
    // Stops the refresh timer, for a panel whose window is going away.
    void stop();

    // The timer's interval: the panel's refresh interval, but never under one second.
    static double timerInterval(double refreshInterval);
    // The timer's step in milliseconds: at least one second, and no longer than a timer
    // can wait.
    static qint64 intervalMs(double interval);
    // When (wall-clock milliseconds since the epoch) the first timed refresh is due after
    // the immediate one at `nowMs`: a whole interval later, moved on to the next whole
    // second when the interval is a whole number of seconds, so no panel refreshes twice
    // within less than its interval.
    static qint64 firstRefreshDue(double interval, qint64 nowMs);
    // When the refresh after the one due at `dueMs` is due, seen at `nowMs`.
    static qint64 nextRefreshDue(double interval, qint64 dueMs, qint64 nowMs);

    static constexpr qsizetype kMaxHistory = 40;

Q_SIGNALS:
    void textOutputChanged(const QString& text);
    void imageChanged(const QImage& image);
    void statsChanged(const SystemStatsSample& stats);
    void networkHistoryChanged(const QList<NetworkSample>& history);
    void isRunningChanged(bool running);
    // Once, when a webpage panel first loads and its page comes into being.
    void webPageCreated(WebPage* page);

private:
    void setTextOutput(const QString& text);
    void setTextOutput(StyledText text);
    // Output of a program or file, whose escape sequences are interpreted as a terminal would.
    void setTerminalOutput(const QString& output);
    void setImage(const QImage& image);
    void setRunning(bool running);
    void runShell(const QString& command);
    void readFile(const QString& path);
    void refreshStats();
    void loadWebpage(const QString& address);
    void armTimerFor(qint64 dueMs);

    QUuid m_id;
    Panel m_panel;
    RunnerServices m_services;
    StyledText m_textOutput;
    QImage m_image;
    SystemStatsSample m_stats;
    QList<NetworkSample> m_networkHistory;
    bool m_isRunning = false;
    WebPage* m_webPage = nullptr;
    ImageLoader* m_imageLoader = nullptr;
    TextFileReader* m_fileReader = nullptr;
    // Single-shot, armed again after each refresh, so its phase follows the wall clock.
    std::unique_ptr<ClockTimer> m_timer;
    double m_timerInterval = 1.0;
    // When the refresh the timer waits for is due, in wall-clock milliseconds.
    qint64 m_dueMs = 0;
};

} // namespace corkwheel
