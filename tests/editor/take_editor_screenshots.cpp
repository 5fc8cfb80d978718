// SPDX-License-Identifier: GPL-3.0-or-later

// Takes the editor screenshots shown in the README: one per panel type, each with that
// panel selected and its live preview, on the X display it runs on. Not a test; run it
// with scripts/editor-screenshots.sh.
//
//   take_editor_screenshots <output folder> <image file> <web page file>

#include "editor/EditorView.h"
#include "editor/EditorWindow.h"
#include "model/PanelDocument.h"
#include "model/PanelStore.h"
#include "settings/AppSettings.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <cstdio>

using namespace corkwheel;

namespace {

QList<Panel> oneOfEachType(const QString& notePath, const QString& image, const QString& page) {
    QList<Panel> panels;
    for (PanelType type : allPanelTypes()) {
        Panel panel = Panel::makeDefault(type);
        panel.filePath = notePath;
        panel.shellCommand = QStringLiteral("uptime");
        panel.imageSource = image;
        panel.webpageURL = QUrl::fromLocalFile(page).toString();
        panels.append(panel);
    }
    return panels;
}

void writeFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
}

} // namespace

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4) {
        std::fputs("usage: take_editor_screenshots <output folder> <image> <web page>\n", stderr);
        return 2;
    }
    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.filePath(QStringLiteral("config"))));
    const QString notePath = home.filePath(QStringLiteral("note.txt"));
    writeFile(notePath, "Water the plants.\nCall the bakery about Saturday.\n");
    const QList<Panel> panels = oneOfEachType(notePath, arguments.at(2), arguments.at(3));
    const QString document = home.filePath(QStringLiteral("panels.json"));
    writeFile(document, PanelDocument::encode(panels).value_or(QByteArray()));

    PanelStore store(document);
    AppSettings settings;
    EditorWindow editor(store, settings);
    editor.show();
    if (!QTest::qWaitForWindowExposed(&editor))
        return 1;
    const QDir output(arguments.at(1));
    for (const Panel& panel : panels) {
        editor.view().select(panel.id);
        // Long enough for a command to run, a page to load and two statistics readings.
        QTest::qWait(panel.type == PanelType::SystemStats ? 4500 : 2500);
        const QString name = QStringLiteral("editor-%1.png").arg(rawValue(panel.type));
        if (!editor.grab().save(output.filePath(name)))
            return 1;
    }
    return 0;
}
