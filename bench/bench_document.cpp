// SPDX-License-Identifier: GPL-3.0-or-later

// Encoding and decoding the panel document, and one frame update in a large store.
//
//   build/bench/bench_document

#include "BenchTimer.h"

#include "model/PanelDocument.h"
#include "model/PanelStore.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <nlohmann/json.hpp>

using namespace corkwheel;

namespace {

QList<Panel> makePanels(int count) {
    QList<Panel> panels;
    for (int i = 0; i < count; ++i) {
        const PanelType type = allPanelTypes().at(i % allPanelTypes().size());
        Panel panel = Panel::makeDefault(type);
        panel.frame.x += i;
        panel.shellCommand = QStringLiteral("df -h / | tail -n 1");
        panels.append(panel);
    }
    return panels;
}

void benchDocument(int count) {
    const QList<Panel> panels = makePanels(count);
    const QByteArray document = *PanelDocument::encode(panels);
    const int rounds = count >= 1000 ? 200 : 2000;
    char label[64];
    std::snprintf(label, sizeof label, "encode %d panels (%lld bytes)", count,
                  static_cast<long long>(document.size()));
    bench::measure(label, rounds, [&] { (void)PanelDocument::encode(panels); });
    std::snprintf(label, sizeof label, "decode %d panels", count);
    bench::measure(label, rounds, [&] { (void)PanelDocument::decode(document); });
    // What the JSON parser alone costs on the same bytes: the floor under decoding.
    std::snprintf(label, sizeof label, "  nlohmann::json::accept, same bytes");
    bench::measure(label, rounds,
                   [&] { (void)nlohmann::json::accept(document.begin(), document.end()); });
}

void benchUpdateFrame() {
    QTemporaryDir folder;
    const QString location = folder.filePath(QStringLiteral("panels.json"));
    {
        QFile file(location);
        file.open(QIODevice::WriteOnly);
        file.write(*PanelDocument::encode(makePanels(1000)));
    }
    PanelStore store(location);
    const QUuid last = store.panels().last().id;
    double x = 0;
    bench::measure("updateFrame in a store of 1000 panels", 20000, [&] {
        store.updateFrame(last, {x += 1, 10, 300, 200});
    });
}

} // namespace

int main(int argc, char* argv[]) {
    QCoreApplication app(argc, argv);
    for (int count : {1, 100, 1000})
        benchDocument(count);
    benchUpdateFrame();
    return 0;
}
