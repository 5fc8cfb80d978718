// SPDX-License-Identifier: GPL-3.0-or-later

// Every number of a panel, edited by hand to a value far from anything the inspector offers,
// loaded at start, drawn on the desktop and shown in the editor: Corkwheel runs on, and the
// document stays as the user wrote it. The sanitizer build stops the test at anything
// undefined done with such a number (a double rounded into an int it does not fit, say).

#include "app/AppDelegate.h"
#include "desktop/DesktopPanelController.h"
#include "desktop/DesktopPanelWindow.h"
#include "desktop/DesktopWindowsManager.h"
#include "editor/EditorView.h"
#include "editor/EditorWindow.h"
#include "editor/InspectorView.h"
#include "engine/PanelRunner.h"
#include "model/PanelDocument.h"
#include "settings/AppSettings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <functional>

using namespace corkwheel;

namespace {

struct NumberField {
    const char* name;
    std::function<double&(Panel&)> in;
    // Shown by an inspector stepper, whose label converts the number to a 64-bit whole
    // number and stops the program on one outside that range, on purpose.
    bool stepped;
};

const NumberField kFields[] = {
    {"frame.x", [](Panel& p) -> double& { return p.frame.x; }, false},
    {"frame.y", [](Panel& p) -> double& { return p.frame.y; }, false},
    {"frame.width", [](Panel& p) -> double& { return p.frame.width; }, false},
    {"frame.height", [](Panel& p) -> double& { return p.frame.height; }, false},
    {"refreshInterval", [](Panel& p) -> double& { return p.refreshInterval; }, true},
    {"style.fontSize", [](Panel& p) -> double& { return p.style.fontSize; }, true},
    {"style.cornerRadius", [](Panel& p) -> double& { return p.style.cornerRadius; }, true},
    {"style.opacity", [](Panel& p) -> double& { return p.style.opacity; }, false},
    {"style.textColor.red", [](Panel& p) -> double& { return p.style.textColor.red; }, false},
    {"style.textColor.green", [](Panel& p) -> double& { return p.style.textColor.green; }, false},
    {"style.textColor.blue", [](Panel& p) -> double& { return p.style.textColor.blue; }, false},
    {"style.textColor.alpha", [](Panel& p) -> double& { return p.style.textColor.alpha; }, false},
    {"style.backgroundColor.red", [](Panel& p) -> double& { return p.style.backgroundColor.red; },
     false},
    {"style.backgroundColor.green",
     [](Panel& p) -> double& { return p.style.backgroundColor.green; }, false},
    {"style.backgroundColor.blue", [](Panel& p) -> double& { return p.style.backgroundColor.blue; },
     false},
    {"style.backgroundColor.alpha",
     [](Panel& p) -> double& { return p.style.backgroundColor.alpha; }, false},
};

const struct {
    const char* name;
    double value;
} kValues[] = {
    {"1e300", 1e300},   {"-1e300", -1e300}, {"0", 0},         {"-1", -1},
    {"1e-300", 1e-300}, {"2^31", 0x1p31},   {"2^53", 0x1p53},
};

bool fitsAWholeNumber(double value) {
    return std::abs(value) < 0x1p63;
}

// A panel of `type` that draws all it can: a background and glass, so that the inspector
// shows its corner radius too.
Panel drawingPanel(PanelType type, const QString& name) {
    Panel panel = Panel::makeDefault(type);
    panel.name = name;
    panel.frame = {40, 40, 300, 200};
    panel.style.backgroundColor = {0.2, 0.3, 0.4, 0.8};
    panel.style.showGlassBackground = true;
    panel.textTemplate = QStringLiteral("Hello {date:EEEE}");
    panel.imageSource = QStringLiteral(CORKWHEEL_TEST_DATA_DIR "/images/blue-8x6.svg");
    return panel;
}

QByteArray fileBytes(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class OddPanelNumbersTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_home;

    QString documentPath() const {
        return m_home.filePath(QStringLiteral("data/Corkwheel/panels.json"));
    }

    QByteArray writeDocument(const QList<Panel>& panels) {
        QDir().mkpath(QFileInfo(documentPath()).absolutePath());
        QFile file(documentPath());
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return {};
        const QByteArray bytes = PanelDocument::encode(panels).value_or(QByteArray());
        file.write(bytes);
        return bytes;
    }

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(m_home.isValid());
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_home.filePath(QStringLiteral("config"))));
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_home.filePath(QStringLiteral("data"))));
    }

    void oddNumberIsLoadedDrawnAndEditedAsWritten_data() {
        QTest::addColumn<int>("field");
        QTest::addColumn<double>("value");
        for (int field = 0; field < int(std::size(kFields)); ++field) {
            for (const auto& value : kValues) {
                if (kFields[field].stepped && !fitsAWholeNumber(value.value))
                    continue;
                QTest::addRow("%s = %s", kFields[field].name, value.name) << field << value.value;
            }
        }
    }

    void oddNumberIsLoadedDrawnAndEditedAsWritten() {
        QFETCH(int, field);
        QFETCH(double, value);
        QList<Panel> panels{drawingPanel(PanelType::Text, QStringLiteral("Odd text")),
                            drawingPanel(PanelType::SystemStats, QStringLiteral("Odd stats")),
                            drawingPanel(PanelType::Image, QStringLiteral("Odd image"))};
        for (Panel& panel : panels)
            kFields[field].in(panel) = value;
        const QByteArray written = writeDocument(panels);
        QVERIFY(!written.isEmpty());

        AppSettings settings;
        AppDelegate delegate(settings);
        QCOMPARE(delegate.store().panels(), panels);
        delegate.applicationDidFinishLaunching();
        for (const Panel& panel : panels) {
            DesktopPanelController* controller = delegate.windowsManager()->controller(panel.id);
            QVERIFY(controller);
            if (panel.type == PanelType::Image)
                QTRY_VERIFY(!controller->runner().image().isNull());
            QVERIFY(!controller->window()->grab().isNull());
        }

        delegate.openSettingsWindow();
        EditorWindow* editor = delegate.editorWindow();
        QVERIFY(QTest::qWaitForWindowExposed(editor));
        for (const Panel& panel : panels) {
            editor->view().select(panel.id);
            QVERIFY(editor->view().inspector());
            QCOMPARE(editor->view().inspector()->panelID(), panel.id);
            QVERIFY(!editor->grab().isNull());
        }
        editor->close();
        QCOMPARE(delegate.store().panels(), panels);
        QCOMPARE(fileBytes(documentPath()), written);
    }
};

QTEST_MAIN(OddPanelNumbersTest)
#include "tst_oddpanelnumbers.moc"
