#include "engine/PanelRunner.h"

#include "engine/Clock.h"
#include "engine/DateTokenFormatter.h"
#include "engine/ImageLoader.h"
#include "engine/NetworkStatsSampler.h"
#include "engine/ShellCommand.h"
#include "engine/SystemStatsSampler.h"
#include "engine/TextFileReader.h"
#include "engine/WebAddress.h"
#include "engine/WebPage.h"

#include <QTimeZone>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>

namespace corkwheel {

namespace {

// Whether two records of a panel show different content; name, frame, style and the
// enabled flag do not count.
bool contentDiffers(const Panel& a, const Panel& b) {
    return a.type != b.type || a.shellCommand != b.shellCommand || a.filePath != b.filePath ||
           a.textTemplate != b.textTemplate || a.clockFormat != b.clockFormat ||
           a.imageSource != b.imageSource || a.webpageURL != b.webpageURL;
}

constexpr std::chrono::seconds kWebpageTimeout{60};

} // namespace

PanelRunner::PanelRunner(const Panel& panel, QObject* parent)
    : PanelRunner(panel, RunnerServices::shared(), parent) {}

PanelRunner::PanelRunner(const Panel& panel, RunnerServices services, QObject* parent)
    : QObject(parent), m_id(panel.id), m_panel(panel), m_services(std::move(services)),
      m_stats(SystemStatsSample::zero()) {
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        refreshNow();
        scheduleNextRefresh();
    });
}

PanelRunner::~PanelRunner() = default;

double PanelRunner::timerInterval(double refreshInterval) {
    return std::max(refreshInterval, 1.0);
}

qint64 PanelRunner::msUntilNextRefresh(double interval, qint64 nowMs) {
    // Within what a timer can wait; an interval that is not a number waits the least.
    const double boundedMs = std::isnan(interval)
                                 ? 1000.0
                                 : std::clamp(interval * 1000, 1000.0,
                                              static_cast<double>(std::numeric_limits<int>::max()));
    const auto intervalMs = static_cast<qint64>(std::llround(boundedMs));
    if (intervalMs % 1000 != 0)
        return intervalMs;
    // The refresh falls on the last whole second within the interval: a timer that woke
    // late doesn't push the next one later, and a clock turns with the second it shows.
    const qint64 sinceWholeSecond = ((nowMs % 1000) + 1000) % 1000;
    return intervalMs - sinceWholeSecond;
}

double PanelRunner::currentTimerInterval() const {
    return m_timerInterval;
}

void PanelRunner::start() {
    m_timer.stop();
    refreshNow();
    m_timerInterval = timerInterval(m_panel.refreshInterval);
    scheduleNextRefresh();
}

void PanelRunner::scheduleNextRefresh() {
    const qint64 delay =
        msUntilNextRefresh(m_timerInterval, m_services.clock->nowMSecsSinceEpoch());
    m_timer.start(static_cast<int>(std::clamp<qint64>(delay, 0, std::numeric_limits<int>::max())));
}

void PanelRunner::apply(const Panel& panel) {
    const bool contentChanged = contentDiffers(m_panel, panel);
    const bool intervalChanged = panel.refreshInterval != m_panel.refreshInterval;
    m_panel = panel;
    if (!intervalChanged && m_timer.isActive()) {
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
    m_textOutput = text;
    Q_EMIT textOutputChanged(text);
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
    // replaces the output when it arrives.
    ++m_runningShells;
    setRunning(true);
    auto* run = new ShellCommand(command, this);
    connect(run, &ShellCommand::finished, this, [this, run](const QString& text) {
        run->deleteLater();
        --m_runningShells;
        setRunning(m_runningShells > 0);
        setTextOutput(text);
    });
    run->start();
}

void PanelRunner::readFile(const QString& path) {
    if (path.isEmpty()) {
        setTextOutput(QString());
        return;
    }
    TextFileReader::readLater(path, this, [this](const QString& text) { setTextOutput(text); });
}

void PanelRunner::refreshStats() {
    SystemStatsSample sample;
    const MemoryReading memory = m_services.systemStats->sampleMemory();
    sample.cpuUsage = m_services.systemStats->sampleCPU();
    sample.memoryUsedFraction = memory.usedFraction;
    sample.memoryUsedGB = memory.usedGB;
    sample.memoryTotalGB = memory.totalGB;
    sample.disks = m_services.systemStats->sampleDisks();
    m_stats = sample;
    Q_EMIT statsChanged(m_stats);

    m_networkHistory.append(m_services.networkStats->sample());
    if (m_networkHistory.size() > kMaxHistory)
        m_networkHistory.remove(0, m_networkHistory.size() - kMaxHistory);
    Q_EMIT networkHistoryChanged(m_networkHistory);
}

void PanelRunner::loadWebpage(const QString& address) {
    const auto url = WebAddress::normalizedURL(address);
    if (!url)
        return;
    if (!m_webPage && m_services.createWebPage) {
        m_webPage = m_services.createWebPage(this);
        if (m_webPage)
            Q_EMIT webPageCreated(m_webPage);
    }
    if (m_webPage)
        m_webPage->load(*url, kWebpageTimeout);
}

} // namespace corkwheel
