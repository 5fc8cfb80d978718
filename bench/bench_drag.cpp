// SPDX-License-Identifier: GPL-3.0-or-later

// A title-bar drag among 500 panels, one step per 60 Hz frame as a mouse delivers them: how
// long one store change and the reconcile pass it causes take, and whether each step, with
// everything the event loop had to handle since the step before (the window system's
// answers to the moves, redraws), fits in its frame. A step that misses its frame is shown
// with where the time of the frame went: on Corkwheel's CPU, waiting for a CPU (another
// process, such as the compositor, had both cores), or neither (asleep, waiting for the X
// server to answer, or idle until the frame began).
//
//   QT_QPA_PLATFORM=xcb build/bench/bench_drag      (under an X server, real windows)
//   QT_QPA_PLATFORM=offscreen build/bench/bench_drag
//
// With --editor, the editor is open on the dragged panel throughout, as when a user drags a
// panel while its inspector shows where it is: every step then also reaches the sidebar and
// the inspector, which follow the store's whole list.

#include "desktop/DesktopPanelController.h"
#include "desktop/DesktopPanelHostView.h"
#include "desktop/DesktopWindowsManager.h"
#include "editor/EditorView.h"
#include "editor/EditorWindow.h"
#include "model/Clock.h"
#include "model/PanelDocument.h"
#include "model/PanelStore.h"
#include "platform/DesktopPlatform.h"
#include "settings/AppSettings.h"

#include <QAbstractNativeEventFilter>
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <vector>

using namespace corkwheel;

namespace {

constexpr int kPanels = 500;
constexpr int kSteps = 100;
constexpr double kFrameMs = 1000.0 / 60.0;

QList<Panel> manyPanels() {
    QList<Panel> panels;
    for (int i = 0; i < kPanels; ++i) {
        Panel panel = Panel::makeDefault(PanelType::Text);
        panel.name = QStringLiteral("Panel %1").arg(i);
        panel.textTemplate = panel.name;
        panel.frame = {double(i % 20) * 90, double(i / 20) * 40, 120, 50};
        panels.append(panel);
    }
    return panels;
}

void report(const char* label, std::vector<double> ms) {
    std::sort(ms.begin(), ms.end());
    std::printf("%-40s median %8.3f ms   max %8.3f ms\n", label, ms[ms.size() / 2], ms.back());
}

// How long this thread has run on a CPU and waited for one, in milliseconds, as the
// kernel's scheduler counts them.
struct SchedulerTimes {
    double running = 0;
    double waiting = 0;

    static SchedulerTimes now() {
        SchedulerTimes times;
        if (std::FILE* file = std::fopen("/proc/thread-self/schedstat", "r")) {
            unsigned long long running = 0;
            unsigned long long waiting = 0;
            if (std::fscanf(file, "%llu %llu", &running, &waiting) == 2)
                times = {double(running) / 1e6, double(waiting) / 1e6};
            std::fclose(file);
        }
        return times;
    }
};

// When the window system last sent anything.
class Quiet : public QAbstractNativeEventFilter {
public:
    Quiet() { m_sinceLast.start(); }
    bool nativeEventFilter(const QByteArray&, void*, qintptr*) override {
        m_sinceLast.restart();
        return false;
    }
    qint64 quietMs() const { return m_sinceLast.elapsed(); }

private:
    QElapsedTimer m_sinceLast;
};

void waitForEvents(int ms) {
    QEventLoop loop;
    QTimer::singleShot(ms, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

double elapsedMs(const QElapsedTimer& clock) {
    return double(clock.nsecsElapsed()) / 1e6;
}

// Handles events until `dueMs` on `clock`; later when one of them takes longer.
void waitUntil(const QElapsedTimer& clock, double dueMs) {
    for (double left = dueMs - elapsedMs(clock); left > 0; left = dueMs - elapsedMs(clock))
        waitForEvents(std::max(1, static_cast<int>(left)));
}

// The window manager and the compositor take a while to take in 500 windows and their
// switch to edit mode; the drag starts once the window system has been quiet for two seconds.
double settle(const Quiet& quiet) {
    QElapsedTimer settling;
    settling.start();
    while (settling.elapsed() < 60'000 && (settling.elapsed() < 2000 || quiet.quietMs() < 2000))
        waitForEvents(50);
    return double(settling.elapsed()) / 1000;
}

} // namespace

int main(int argc, char* argv[]) {
    QTemporaryDir folder;
    // The editor's preferences, apart from the user's own.
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder.filePath(QStringLiteral("config"))));
    QApplication app(argc, argv);
    const bool withEditor = QApplication::arguments().contains(QStringLiteral("--editor"));
    Quiet quiet;
    app.installNativeEventFilter(&quiet);
    const QString location = folder.filePath(QStringLiteral("panels.json"));
    QFile file(location);
    file.open(QIODevice::WriteOnly);
    file.write(*PanelDocument::encode(manyPanels()));
    file.close();

    PanelStore store(location);
    auto platform = DesktopPlatform::create();
    RunnerServices services;
    services.clock = &Clock::system();
    DesktopWindowsManager manager(store, *platform, services);
    const Panel dragged = store.panels().at(kPanels / 2);
    AppSettings settings;
    std::unique_ptr<EditorWindow> editor;
    if (withEditor) {
        editor = std::make_unique<EditorWindow>(store, settings, services);
        editor->show();
        editor->view().select(dragged.id);
    }
    store.setEditMode(true);
    const double settled = settle(quiet);

    DesktopPanelHostView* host = manager.controller(dragged.id)->hostView();

    std::vector<double> reconcile;
    std::vector<double> step;
    int dropped = 0;
    QElapsedTimer clock;
    clock.start();
    SchedulerTimes before = SchedulerTimes::now();
    for (int i = 1; i <= kSteps; ++i) {
        const double due = i * kFrameMs;
        waitUntil(clock, due);
        const double started = elapsedMs(clock);
        // The store changes once per step; the windows manager reconciles all 500 panels.
        Q_EMIT host->moveDragged(QPointF(i, i));
        reconcile.push_back(elapsedMs(clock) - started);
        QApplication::processEvents();
        // From when the step was due, so a frame spent waiting on anything counts.
        const double total = elapsedMs(clock) - due;
        const SchedulerTimes after = SchedulerTimes::now();
        step.push_back(total);
        if (total > kFrameMs) {
            ++dropped;
            const double running = after.running - before.running;
            const double waiting = after.waiting - before.waiting;
            std::printf("step %3d: done %6.1f ms after it was due (reconcile %5.2f ms); since "
                        "the step before: on the CPU %5.1f ms, waiting for a CPU %5.1f ms\n",
                        i, total, reconcile.back(), running, waiting);
        }
        before = after;
    }
    Q_EMIT host->moveDragEnded();

    std::printf("%d panels, %d drag steps, platform %s, editor %s, settled in %.1f s\n", kPanels,
                kSteps, qPrintable(QGuiApplication::platformName()),
                withEditor ? "open on the dragged panel" : "closed", settled);
    report("drag step: store change + reconcile", reconcile);
    report("drag step: done after it was due", step);
    std::printf("steps over one 60 Hz frame (%.1f ms): %d\n", kFrameMs, dropped);
    return 0;
}
