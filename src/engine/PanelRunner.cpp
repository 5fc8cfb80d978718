// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/PanelRunner.h"

#include "engine/DateTokenFormatter.h"
#include "engine/ImageLoader.h"
#include "engine/NetworkStatsSampler.h"
#include "engine/ShellCommand.h"
#include "engine/SystemStatsSampler.h"
#include "engine/TerminalText.h"
#include "engine/TextFileReader.h"
#include "engine/WebAddress.h"
#include "engine/WebPage.h"
#include "model/Clock.h"
#include "model/ClockTimer.h"
#include "model/PanelLimits.h"

#include <QTimeZone>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <memory>

namespace corkwheel {

namespace {

// Whether two records of a panel show different content; name, frame, style and the
// enabled flag do not count.
bool contentDiffers(const Panel& a, const Panel& b) {
    return a.type != b.type || a.shellCommand != b.shellCommand || a.filePath != b.filePath ||
           a.textTemplate != b.textTemplate || a.clockFormat != b.clockFormat ||
           a.imageSource != b.imageSource || a.webpageURL != b.webpageURL ||
           a.systemStats.rows != b.systemStats.rows;
}

constexpr std::chrono::seconds kWebpageTimeout{60};

} // namespace

PanelRunner::PanelRunner(const Panel& panel, RunnerServices services, QObject* parent)
    : QObject(parent), m_id(panel.id), m_panel(panel), m_services(std::move(services)),
      m_stats(SystemStatsSample::zero()), m_timer(m_services.clock->makeTimer([this] {
          refreshNow();
          armTimerFor(
              nextRefreshDue(m_timerInterval, m_dueMs, m_services.clock->nowMSecsSinceEpoch()));
      })) {}

PanelRunner::~PanelRunner() = default;

double PanelRunner::timerInterval(double refreshInterval) {
    return std::max(refreshInterval, PanelLimits::kShortestRefreshInterval);
}

qint64 PanelRunner::intervalMs(double interval) {
    // Within what a timer can wait; an interval that is not a number waits the least.
    constexpr double kShortestMs = PanelLimits::kShortestRefreshInterval * 1000;
    const double boundedMs = std::isnan(interval)
                                 ? kShortestMs
                                 : std::clamp(interval * 1000, kShortestMs,
                                              static_cast<double>(std::numeric_limits<int>::max()));
    return static_cast<qint64>(std::llround(boundedMs));
}

// A whole number of seconds falls on the wall clock's whole seconds: a clock turns with the
// second it shows, and panels that refresh in the same second share one wake-up.
qint64 PanelRunner::firstRefreshDue(double interval, qint64 nowMs) {
    const qint64 step = intervalMs(interval);
    const qint64 due = nowMs + step;
    if (step % 1000 != 0)
        return due;
    const qint64 pastWholeSecond = ((due % 1000) + 1000) % 1000;
    return pastWholeSecond == 0 ? due : due + 1000 - pastWholeSecond;
}

// Counted from when the last refresh was due, not from when it ended, so the time refreshes
// take never adds up; a timer that woke very late skips the refreshes it missed.
qint64 PanelRunner::nextRefreshDue(double interval, qint64 dueMs, qint64 nowMs) {
    const qint64 step = intervalMs(interval);
    // The wall clock was set back: start again from now.
    if (dueMs > nowMs + step)
        return firstRefreshDue(interval, nowMs);
    const qint64 missed = nowMs >= dueMs + step ? (nowMs - dueMs) / step : 0;
    return dueMs + (missed + 1) * step;
}

void PanelRunner::start() {
    m_timer->stop();
    refreshNow();
    m_timerInterval = timerInterval(m_panel.refreshInterval);
    armTimerFor(firstRefreshDue(m_timerInterval, m_services.clock->nowMSecsSinceEpoch()));
}

void PanelRunner::stop() {
    m_timer->stop();
}

void PanelRunner::armTimerFor(qint64 dueMs) {
    m_dueMs = dueMs;
    m_timer->startFor(dueMs);
}

void PanelRunner::apply(const Panel& panel) {
    const bool contentChanged = contentDiffers(m_panel, panel);
    const bool intervalChanged = panel.refreshInterval != m_panel.refreshInterval;
    m_panel = panel;
    if (!intervalChanged && m_timer->isActive()) {
        if (contentChanged)
            refreshNow();
        return;
    }
    start();
}

void PanelRunner::refreshNow() {
    switch (m_panel.type) {
    case PanelType::Shell:
        runShell(m_panel.shellCommand);
        break;
    case PanelType::File:
        readFile(m_panel.filePath);
        break;
    case PanelType::Text:
        setTextOutput(DateTokenFormatter::expand(m_panel.textTemplate, m_services.clock->now()));
        break;
    case PanelType::Clock:
        setTextOutput(DateTokenFormatter::format(m_panel.clockFormat, m_services.clock->now(),
                                                 QTimeZone::systemTimeZone()));
        break;
    case PanelType::Image:
        if (!m_imageLoader) {
            m_imageLoader = new ImageLoader(this);
            connect(m_imageLoader, &ImageLoader::imageLoaded, this, &PanelRunner::setImage);
        }
        m_imageLoader->load(m_panel.imageSource);
        break;
    case PanelType::SystemStats:
        refreshStats();
        break;
    case PanelType::Webpage:
        loadWebpage(m_panel.webpageURL);
        break;
    }
}

void PanelRunner::setTextOutput(const QString& text) {
    setTextOutput(StyledText{text, {}});
}

void PanelRunner::setTextOutput(StyledText text) {
    m_textOutput = std::move(text);
    Q_EMIT textOutputChanged(m_textOutput.text);
}

void PanelRunner::setTerminalOutput(const QString& output) {
    setTextOutput(TerminalText::parse(output));
}

void PanelRunner::setImage(const QImage& image) {
    m_image = image;
    Q_EMIT imageChanged(image);
}

void PanelRunner::setRunning(bool running) {
    if (m_isRunning == running)
        return;
    m_isRunning = running;
    Q_EMIT isRunningChanged(running);
}

void PanelRunner::runShell(const QString& command) {
    if (command.trimmed().isEmpty()) {
        setTextOutput(QString());
        return;
    }
    // Runs may overlap when a command takes longer than the interval; each one's text
    // replaces the output when it arrives, and the panel stops showing that it runs as
    // soon as one has finished.
    setRunning(true);
    auto* run = new ShellCommand(command, m_services.shellCommands, this);
    connect(run, &ShellCommand::finished, this, [this, run](const QString& text) {
        run->deleteLater();
        setRunning(false);
        setTerminalOutput(text);
    });
    run->start();
}

void PanelRunner::readFile(const QString& path) {
    if (path.isEmpty()) {
        setTextOutput(QString());
        return;
    }
    if (!m_fileReader) {
        m_fileReader = new TextFileReader(m_services.fileReadTimeLimit, this);
        connect(m_fileReader, &TextFileReader::textRead, this, &PanelRunner::setTerminalOutput);
    }
    m_fileReader->read(path);
}

// Only the rows the panel shows are read: a panel that asks for none reads what it always
// did. The sensors, the batteries and the volumes answer in their own time, on other
// threads; the figures are published together once all of them did.
void PanelRunner::refreshStats() {
    SystemStatsSampler& sampler = *m_services.systemStats;
    const StatsRows rows = m_panel.systemStats.rows;
    auto sample = std::make_shared<SystemStatsSample>();
    const MemoryReading memory = sampler.sampleMemory();
    sample->cpuUsage = sampler.sampleCPU();
    sample->memoryUsedFraction = memory.usedFraction;
    sample->memoryUsedGB = memory.usedGB;
    sample->memoryTotalGB = memory.totalGB;
    sample->rowsRead = rows;
    if (rows.cores)
        sample->coreUsages = sampler.sampleCores();
    if (rows.load) {
        sample->load = sampler.sampleLoad();
        sample->onlineCpus = sampler.onlineCpuCount();
    }
    if (rows.swap)
        sample->swap = sampler.sampleSwap();

    auto unanswered =
        std::make_shared<int>(1 + int(rows.temperatures) + int(rows.fans) + int(rows.battery));
    const auto answered = [this, sample, unanswered] {
        if (--*unanswered > 0)
            return;
        m_stats = *sample;
        Q_EMIT statsChanged(m_stats);
    };
    if (rows.temperatures)
        sampler.sampleTemperatures(this, [sample, answered](const auto& temperatures) {
            sample->temperatures = temperatures;
            answered();
        });
    if (rows.fans)
        sampler.sampleFans(this, [sample, answered](const auto& fans) {
            sample->fans = fans;
            answered();
        });
    if (rows.battery)
        sampler.sampleBattery(this, [sample, answered](const auto& battery) {
            sample->battery = battery;
            answered();
        });
    sampler.sampleDisks(this, [sample, answered](const QList<DiskInfo>& disks) {
        sample->disks = disks;
        answered();
    });

    m_networkHistory.append(m_services.networkStats->sample());
    if (m_networkHistory.size() > kMaxHistory)
        m_networkHistory.remove(0, m_networkHistory.size() - kMaxHistory);
    Q_EMIT networkHistoryChanged(m_networkHistory);
}

// An empty address shows the placeholder; one that can't be loaded says why in the text,
// where the view shows it instead of the page.
void PanelRunner::loadWebpage(const QString& address) {
    if (address.isEmpty()) {
        setTextOutput(QString());
        return;
    }
    const auto url = WebAddress::normalizedURL(address);
    if (!url) {
        const QString typed = address.trimmed();
        setTextOutput(typed.isEmpty() ? tr("error: not a web address")
                                      : tr("error: not a web address: %1").arg(typed));
        return;
    }
    if (!m_webPage && m_services.createWebPage) {
        m_webPage = m_services.createWebPage(this);
        if (m_webPage)
            Q_EMIT webPageCreated(m_webPage);
    }
    if (!m_webPage) {
        setTextOutput(tr("error: the web engine could not be loaded"));
        return;
    }
    setTextOutput(QString());
    m_webPage->load(*url, kWebpageTimeout);
}

} // namespace corkwheel
