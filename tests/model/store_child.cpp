// SPDX-License-Identifier: GPL-3.0-or-later

// A panel store in a process of its own, for the tests that kill it during a save, starve its
// disk or hand it a file that could hang it or fill its memory:
//
//   store_child save PATH        removes the first panel, prints "changed", then "written"
//                                once the document is saved, and exits
//   store_child load PATH        prints "panels N starter 0|1" once loaded, waits past the
//                                save delay, prints "written" or "not written" and exits
//   store_child change PATH OUT  adds a panel, waits past the save delay, writes the panels it
//                                holds to OUT, prints "written" or "not written" and exits
#include "StoreTesting.h"
#include "model/PanelDocument.h"
#include "model/PanelStore.h"

#include <QCoreApplication>
#include <QFile>
#include <QTimer>

#include <cstdio>

#include <sys/resource.h>

using namespace corkwheel;

namespace {

void say(const QByteArray& line) {
    std::fputs(line.constData(), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

// A store that reads without bound fails here instead of taking the machine's memory.
// AddressSanitizer reserves far more address space than this, so it goes without.
void limitMemory() {
#ifndef __SANITIZE_ADDRESS__
    constexpr rlim_t kLimit = rlim_t{2} * 1024 * 1024 * 1024;
    const rlimit limit{kLimit, kLimit};
    setrlimit(RLIMIT_AS, &limit);
#endif
}

int save(PanelStore& store) {
    QObject::connect(&store, &PanelStore::documentWritten, [] {
        say("written");
        QCoreApplication::exit(0);
    });
    store.removePanel(store.panels().first().id);
    say("changed");
    return QCoreApplication::exec();
}

int reportAfterSaveDelay(PanelStore& store, const QString& panelsOut) {
    bool written = false;
    QObject::connect(&store, &PanelStore::documentWritten, [&written] { written = true; });
    QTimer::singleShot(PanelStore::kSaveDelayMs + 300, [&] {
        if (!panelsOut.isEmpty()) {
            QFile out(panelsOut);
            if (out.open(QIODevice::WriteOnly))
                out.write(PanelDocument::encode(store.panels()).value_or(QByteArray()));
        }
        say(written ? "written" : "not written");
        QCoreApplication::exit(0);
    });
    return QCoreApplication::exec();
}

int load(PanelStore& store) {
    const bool starter = test::areStarterPanels(store.panels());
    say("panels " + QByteArray::number(store.panels().size()) + " starter " +
        QByteArray::number(starter ? 1 : 0));
    return reportAfterSaveDelay(store, QString());
}

int change(PanelStore& store, const QString& panelsOut) {
    store.addPanel(PanelType::Text);
    return reportAfterSaveDelay(store, panelsOut);
}

} // namespace

int main(int argc, char* argv[]) {
    limitMemory();
    QCoreApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    if (args.size() < 3)
        return 2;
    const QString& mode = args.at(1);
    PanelStore store(args.at(2));
    if (mode == QLatin1String("save") && !store.panels().isEmpty())
        return save(store);
    if (mode == QLatin1String("load"))
        return load(store);
    if (mode == QLatin1String("change") && args.size() == 4)
        return change(store, args.at(3));
    return 2;
}
