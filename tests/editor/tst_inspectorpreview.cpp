// SPDX-License-Identifier: GPL-3.0-or-later

// The inspector's preview: the panel drawn on its stage by the inspector's own runner.

#include "support/InspectorTesting.h"

#include "editor/FormSection.h"
#include "editor/InspectorView.h"
#include "editor/PreviewStage.h"
#include "engine/PanelRunner.h"
#include "render/PanelContentView.h"
#include "render/TerminalPalette.h"

#include <QLineEdit>

using namespace corkwheel;
using namespace corkwheel::test;

class InspectorPreviewTest : public QObject, private InspectorFixture {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { close(); }

    void largePanelPreviewsInA340By180Box() {
        Panel panel = textPanel(QStringLiteral("Notes"), {40, 40, 800, 600});
        InspectorView& inspector = open({panel});
        QCOMPARE(inspector.preview().size(), QSize(340, 180));
        QCOMPARE(inspector.preview().panel().frame.width, 340.0);
        QCOMPARE(inspector.preview().panel().frame.height, 180.0);
        QCOMPARE(stored(panel.id).frame, panel.frame);
        QCOMPARE(inspector.runner().panel().frame, panel.frame);
        auto* stage = control<PreviewStage>("previewStage");
        QVERIFY(stage->width() <= 360 && stage->height() <= 200);
        QCOMPARE(inspector.preview().geometry().center(), stage->rect().center());
    }

    void smallPanelPreviewsAtItsOwnSize() {
        InspectorView& inspector = open({textPanel(QStringLiteral("Notes"), {40, 40, 100, 50})});
        QCOMPARE(inspector.preview().size(), QSize(100, 50));
        auto* stage = control<PreviewStage>("previewStage");
        QCOMPARE(inspector.preview().geometry().center(), stage->rect().center());
        auto* section = control<FormSection>("previewSection");
        const int stageCentre = stage->mapTo(section, stage->rect().center()).x();
        QVERIFY(qAbs(stageCentre - section->rect().center().x()) <= 1);
    }

    void previewStandsOnADarkRoundedGradient() {
        Panel panel = textPanel(QStringLiteral("Notes"), {40, 40, 100, 50});
        panel.textTemplate = QStringLiteral(" ");
        open({panel});
        auto* stage = control<PreviewStage>("previewStage");
        QCOMPARE(stage->size(), QSize(360, 200));
        const QImage image = render(*stage, 1.0);
        const QColor top = colorAt(image, {180, 1});
        const QColor bottom = colorAt(image, {180, 198});
        QCOMPARE(top.red() + top.green() + top.blue(), 0);
        QVERIFY2(qAbs(top.alpha() - 216) <= 3, qPrintable(QString::number(top.alpha())));
        QVERIFY2(qAbs(bottom.alpha() - 154) <= 3, qPrintable(QString::number(bottom.alpha())));
        QCOMPARE(colorAt(image, {0, 0}).alpha(), 0);
        QCOMPARE(colorAt(image, {359, 199}).alpha(), 0);
        QVERIFY(qAbs(colorAt(image, {6, 6}).alpha() - top.alpha()) <= 3);
    }

    void previewShowsTheColoursOfTheCommandsOutput() {
        Panel panel = Panel::makeDefault(PanelType::Shell);
        panel.frame = {40, 40, 300, 80};
        panel.style.fontSize = 36;
        panel.style.showShadow = false;
        panel.shellCommand = QStringLiteral(R"(printf '\033[31mMMMM\033[0m')");
        InspectorView& inspector = open({panel});
        QTRY_COMPARE(inspector.preview().displayedText(), QStringLiteral("MMMM"));
        const QImage image = render(inspector.preview(), 1.0);
        const QRectF all(QPointF(), QSizeF(inspector.preview().size()));
        QVERIFY(countPixels(image, all, near(TerminalPalette::indexedColor(1), 12)) > 100);
    }

    void switchingPanelsStartsTheNewRunnerFromTheNewPanel() {
        const Panel alpha = textPanel(QStringLiteral("Alpha"), kInspectorFrame);
        const Panel beta = textPanel(QStringLiteral("Beta"), {40, 200, 200, 60});
        open({alpha, beta});
        QCOMPARE(m_inspector->runner().textOutput(), QStringLiteral("Alpha"));
        QCOMPARE(m_inspector->preview().displayedText(), QStringLiteral("Alpha"));

        // What the editor does when another row is picked.
        m_inspector.reset();
        InspectorView& inspector = makeFor(beta.id);
        inspector.show();
        QCOMPARE(inspector.panelID(), beta.id);
        QCOMPARE(inspector.runner().id(), beta.id);
        QCOMPARE(inspector.runner().panel(), beta);
        QVERIFY(refreshesOnTime(inspector.runner(), m_machine.clock()));
        QCOMPARE(inspector.runner().textOutput(), QStringLiteral("Beta"));
        QCOMPARE(inspector.preview().displayedText(), QStringLiteral("Beta"));
        QCOMPARE(inspector.preview().size(), QSize(200, 60));
        QCOMPARE(control<QLineEdit>("nameField")->text(), QStringLiteral("Beta"));
    }

    void previewRunnerStartsWhenFirstShown() {
        InspectorView& inspector = make({textPanel(QStringLiteral("Notes"), kInspectorFrame)});
        QVERIFY(!refreshesOnTime(inspector.runner(), m_machine.clock()));
        QVERIFY(inspector.runner().textOutput().isEmpty());
        inspector.show();
        QVERIFY(refreshesOnTime(inspector.runner(), m_machine.clock()));
        QCOMPARE(inspector.runner().textOutput(), QStringLiteral("Notes"));
    }
};

QTEST_MAIN(InspectorPreviewTest)
#include "tst_inspectorpreview.moc"
