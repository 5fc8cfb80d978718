// SPDX-License-Identifier: GPL-3.0-or-later

// Coloured command output drawn as a terminal would draw it: the runs' colours and
// attributes on the panel, and the panel's own look everywhere else.

#include "support/ViewTesting.h"

#include "engine/PanelRunner.h"
#include "engine/TerminalText.h"
#include "render/PanelContentView.h"
#include "render/TerminalPalette.h"
#include "render/TextBody.h"

#include <QSignalSpy>
#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

const QSizeF kSize(420, 80);

PanelStyle largeWhiteText() {
    PanelStyle style;
    style.fontSize = 40;
    style.showShadow = false;
    return style;
}

// `output` as a panel of `style` draws it, at device pixel ratio `ratio`.
QImage draw(const char* output, const PanelStyle& style = largeWhiteText(), double ratio = 1) {
    const StyledText text = TerminalText::parse(QString::fromUtf8(output));
    return paintImage(kSize, ratio, [&](QPainter& painter) {
        TextBody::paint(painter, QRectF(QPointF(), kSize), text.text, style, text.runs);
    });
}

int pixelsNear(const QImage& image, QColor color) {
    return countPixels(image, QRectF(QPointF(), kSize), near(color, 12));
}

const QColor kWhite(Qt::white);

// A started shell panel running `command`, in large white text, and its view.
struct ShellPanelView {
    explicit ShellPanelView(const char* command)
        : runner(panelRunning(command), machine.services()), view(runner) {
        view.resize(kSize.toSize());
        view.setPanel(runner.panel());
        runner.start();
    }

    static Panel panelRunning(const char* command) {
        Panel panel = Panel::makeDefault(PanelType::Shell);
        panel.shellCommand = QString::fromUtf8(command);
        panel.frame = PanelFrame{0, 0, kSize.width(), kSize.height()};
        panel.style = largeWhiteText();
        return panel;
    }

    FakeMachine machine;
    PanelRunner runner;
    PanelContentView view;
};

} // namespace

class TerminalColorsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void redRunIsDrawnInThePalettesRed_data() { addRatios(); }

    void redRunIsDrawnInThePalettesRed() {
        QFETCH(double, ratio);
        const QImage image = draw("\033[31mMMMM\033[0m", largeWhiteText(), ratio);
        QVERIFY(pixelsNear(image, TerminalPalette::indexedColor(1)) > 100);
        QCOMPARE(pixelsNear(image, kWhite), 0);
    }

    void uncolouredTextKeepsThePanelsColour() {
        const QImage image = draw("MM\033[31mMM\033[0mMM");
        QVERIFY(pixelsNear(image, kWhite) > 100);
        QVERIFY(pixelsNear(image, TerminalPalette::indexedColor(1)) > 100);
    }

    void colour256IsDrawnFromTheColourCube() {
        const QImage image = draw("\033[38;5;33mMMMM");
        QVERIFY(pixelsNear(image, QColor(0, 135, 255)) > 100);
    }

    void colour24BitIsDrawnExactly() {
        const QImage image = draw("\033[38;2;200;100;50mMMMM");
        QVERIFY(pixelsNear(image, QColor(200, 100, 50)) > 100);
    }

    void backgroundFillsBehindTheRun() {
        const QImage image = draw("\033[48;2;0;128;0mgreen\033[0m plain");
        const int filled = pixelsNear(image, QColor(0, 128, 0));
        // Behind five letters of a 40-point font: well over a thousand pixels.
        QVERIFY2(filled > 2000, qPrintable(QString::number(filled)));
    }

    void boldIsDrawnHeavier() {
        const auto ink = [](const QImage& image) {
            return countPixels(image, QRectF(QPointF(), kSize), near(kWhite, 60));
        };
        QVERIFY(ink(draw("\033[1mllll")) > ink(draw("llll")) * 11 / 10);
    }

    void dimIsDrawnAtHalfAlpha() {
        const QImage image = draw("\033[2mMMMM");
        QCOMPARE(countPixels(image, QRectF(QPointF(), kSize), near(kWhite, 12)), 0);
        QVERIFY(countPixels(image, QRectF(QPointF(), kSize), [](QColor color) {
                    return color.alpha() >= 120 && color.alpha() <= 135;
                }) > 100);
    }

    void reverseSwapsTheColours() {
        const QImage image = draw("\033[7;31mMMMM");
        // The red becomes the background, the text the colour that stands out on it.
        QVERIFY(pixelsNear(image, TerminalPalette::indexedColor(1)) > 2000);
        QVERIFY(pixelsNear(image, QColor(Qt::black)) > 100);
    }

    void shellPanelShowsItsOutputsColours() {
        ShellPanelView shown(R"(printf '\033[31mMMMM\033[0m')");
        QTRY_COMPARE(shown.view.displayedText(), QStringLiteral("MMMM"));
        QVERIFY(pixelsNear(render(shown.view, 1), TerminalPalette::indexedColor(1)) > 100);
    }

    void commandWithOnlyEscapesShowsNoOutput() {
        ShellPanelView shown(R"(printf '\033[31m\033[0m\033]0;title\007\n')");
        QTRY_VERIFY(!shown.runner.isRunning());
        QCOMPARE(shown.view.displayedText(), QStringLiteral("(no output)"));
    }

    void sameTextInAnotherColourIsRedrawn() {
        ShellPanelView shown(R"(printf '\033[31mMMMM')");
        shown.view.show();
        QTRY_COMPARE(shown.view.displayedText(), QStringLiteral("MMMM"));
        QTRY_VERIFY(pixelsNear(render(shown.view, 1), TerminalPalette::indexedColor(1)) > 100);

        Panel panel = shown.runner.panel();
        panel.shellCommand = QStringLiteral(R"(printf '\033[32mMMMM')");
        shown.runner.apply(panel);
        QTRY_VERIFY(pixelsNear(render(shown.view, 1), TerminalPalette::indexedColor(2)) > 100);
        QCOMPARE(pixelsNear(render(shown.view, 1), TerminalPalette::indexedColor(1)), 0);
    }
};

QTEST_MAIN(TerminalColorsTest)
#include "tst_terminalcolors.moc"
