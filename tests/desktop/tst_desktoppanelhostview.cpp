// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/Contrast.h"
#include "support/ViewTesting.h"

#include "desktop/DesktopPanelHostView.h"
#include "desktop/PanelResizeHandle.h"
#include "desktop/PanelTitleBar.h"
#include "engine/PanelRunner.h"
#include "render/PanelContentView.h"
#include "render/Theme.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <limits>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

const QSize kSize(240, 160);
constexpr int kBarHeight = DesktopPanelHostView::kTitleBarHeight;
// Halfway down the title bar.
constexpr int kBarMiddle = kBarHeight / 2;

Panel panelNamed(const QString& name, double cornerRadius = 16) {
    Panel panel = Panel::makeDefault(PanelType::Text);
    panel.name = name;
    panel.textTemplate = QString();
    panel.frame = PanelFrame{0, 0, double(kSize.width()), double(kSize.height())};
    panel.style.cornerRadius = cornerRadius;
    return panel;
}

// A mouse event at `local` on its widget whose pointer is at `global` on the screen; the
// two move independently while the window follows a drag.
void sendMouse(QWidget* widget, QEvent::Type type, QPointF local, QPointF global) {
    const Qt::MouseButtons buttons =
        type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(Qt::LeftButton);
    QMouseEvent event(type, local, local, global,
                      type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, buttons,
                      Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

std::function<bool(QColor)> accent() {
    return near(Theme::accent(), 30);
}

// The panel's text in black, tall thin strokes from the top-left corner on: sharp edges under
// the title bar.
Panel stripedPanel() {
    Panel panel = panelNamed(QStringLiteral("A"));
    panel.textTemplate = QStringLiteral("IIIIIIIIIIIIIIIIIIII");
    panel.style.fontSize = 40;
    panel.style.textColor = CodableColor{0, 0, 0, 1};
    panel.style.backgroundColor = CodableColor{1, 1, 1, 1};
    return panel;
}

// The title bar right of its short name, where only the glass shows.
const QRectF kBarBeyondName(60, 3, 170, 20);

// The largest step in brightness between neighbouring pixels along the rows of `area`.
int sharpestStep(const QImage& image, const QRectF& area) {
    const double ratio = image.devicePixelRatio();
    const QRect pixels = QRectF(area.topLeft() * ratio, area.size() * ratio).toAlignedRect();
    int sharpest = 0;
    for (int y = pixels.top(); y <= pixels.bottom(); ++y) {
        for (int x = pixels.left(); x < pixels.right(); ++x) {
            const int step = std::abs(qGray(image.pixel(x, y)) - qGray(image.pixel(x + 1, y)));
            sharpest = std::max(sharpest, step);
        }
    }
    return sharpest;
}

// How white stands out on the brightest pixel of `area`, as a contrast ratio.
double leastWhiteContrast(const QImage& image, const QRectF& area) {
    const double ratio = image.devicePixelRatio();
    const QRect pixels = QRectF(area.topLeft() * ratio, area.size() * ratio).toAlignedRect();
    double least = std::numeric_limits<double>::max();
    for (int y = pixels.top(); y <= pixels.bottom(); ++y) {
        for (int x = pixels.left(); x <= pixels.right(); ++x)
            least = std::min(least, whiteContrast(image.pixelColor(x, y)));
    }
    return least;
}
} // namespace

class DesktopPanelHostViewTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<FakeMachine> m_machine;
    std::unique_ptr<PanelRunner> m_runner;
    std::unique_ptr<DesktopPanelHostView> m_host;

    DesktopPanelHostView& host(const Panel& panel, bool editMode) {
        m_runner = std::make_unique<PanelRunner>(panel, m_machine->services());
        m_runner->start();
        m_host = std::make_unique<DesktopPanelHostView>(*m_runner);
        m_host->resize(kSize);
        m_host->setPanel(panel, editMode);
        return *m_host;
    }

    PanelTitleBar* titleBar() const { return m_host->findChild<PanelTitleBar*>(); }
    PanelResizeHandle* handle() const { return m_host->findChild<PanelResizeHandle*>(); }

private Q_SLOTS:
    void init() { m_machine = std::make_unique<FakeMachine>(); }

    void cleanup() {
        m_host.reset();
        m_runner.reset();
    }

    void contentFillsThePanel() {
        Panel panel = panelNamed(QStringLiteral("Notes"));
        panel.style.backgroundColor = CodableColor{1, 0, 0, 1};
        DesktopPanelHostView& view = host(panel, false);
        QCOMPARE(view.contentView()->geometry(), QRect(QPoint(), kSize));
        QCOMPARE(view.contentView()->panel(), panel);
        QCOMPARE(view.panel(), panel);
        QVERIFY(!view.editMode());
        QCOMPARE(colorAt(render(view, 1), QPointF(120, 80)), QColor(Qt::red));
    }

    void editModeOffShowsNoChromeAndNothingTakesTheMouse_data() { addRatios(); }

    void editModeOffShowsNoChromeAndNothingTakesTheMouse() {
        QFETCH(double, ratio);
        DesktopPanelHostView& view = host(panelNamed(QStringLiteral("Notes")), false);
        QCOMPARE(countPixels(render(view, ratio), QRectF(QPointF(), kSize), isVisible), 0);
        QVERIFY(titleBar()->isHidden());
        QVERIFY(handle()->isHidden());
        QCOMPARE(view.childAt(QPoint(100, 10)), view.contentView());
        QCOMPARE(view.childAt(QPoint(230, 150)), view.contentView());

        QSignalSpy moved(&view, &DesktopPanelHostView::moveDragged);
        QSignalSpy moveEnded(&view, &DesktopPanelHostView::moveDragEnded);
        QSignalSpy resized(&view, &DesktopPanelHostView::resizeDragged);
        QSignalSpy resizeEnded(&view, &DesktopPanelHostView::resizeDragEnded);
        for (const QPoint point : {QPoint(100, 10), QPoint(230, 150)}) {
            QWidget* target = view.childAt(point);
            sendMouse(target, QEvent::MouseButtonPress, point, point);
            sendMouse(target, QEvent::MouseMove, point + QPoint(20, 20), point + QPoint(20, 20));
            sendMouse(target, QEvent::MouseButtonRelease, point + QPoint(20, 20),
                      point + QPoint(20, 20));
        }
        QCOMPARE(moved.count() + moveEnded.count() + resized.count() + resizeEnded.count(), 0);
    }

    void editModeShowsOutlineTitleBarAndHandle_data() { addRatios(); }

    void editModeShowsOutlineTitleBarAndHandle() {
        QFETCH(double, ratio);
        DesktopPanelHostView& view = host(panelNamed(QStringLiteral("Notes")), true);
        const QImage image = render(view, ratio);
        // The outline: two points of accent just inside the left and right edges.
        QVERIFY(accent()(colorAt(image, QPointF(0.5, 80))));
        QVERIFY(accent()(colorAt(image, QPointF(1.5, 80))));
        QCOMPARE(colorAt(image, QPointF(2.5, 80)).alpha(), 0);
        QVERIFY(accent()(colorAt(image, QPointF(239.5, 80))));
        QVERIFY(accent()(colorAt(image, QPointF(120, 159.5))));
        // The title bar: 26 points of translucent glass with a faint line along its bottom.
        QCOMPARE(titleBar()->geometry(), QRect(0, 0, 240, 26));
        const QColor glass = colorAt(image, QPointF(200, 6));
        QVERIFY(glass.alpha() > 80 && glass.alpha() < 160);
        const QColor hairline = colorAt(image, QPointF(200, 25.5));
        QVERIFY(hairline.lightness() > glass.lightness());
        QCOMPARE(colorAt(image, QPointF(200, 27)).alpha(), 0);
        // The handle: an accent circle 6 points in from the corner, white arrows on it.
        QCOMPARE(handle()->geometry(), QRect(240 - 35, 160 - 35, 35, 35));
        const QPointF centre(240 - 17.5, 160 - 17.5);
        QVERIFY(accent()(colorAt(image, centre + QPointF(0, 10))));
        QVERIFY(countPixels(image, QRectF(centre - QPointF(5.5, 5.5), QSizeF(11, 11)),
                            near(Qt::white, 30, 200)) > 4 * ratio);
        QCOMPARE(colorAt(image, QPointF(236, 140)).alpha(), 0);
    }

    void titleBarShowsTheTypeSymbolAndTheName() {
        DesktopPanelHostView& view = host(panelNamed(QStringLiteral("Notes")), true);
        QCOMPARE(titleBar()->shownName(), QStringLiteral("Notes"));
        const QImage image = render(view, 1);
        const auto white = near(Qt::white, 30, 200);
        QVERIFY(countPixels(image, QRectF(10, 7.5, 11, 11), white) > 4);
        const QRectF name = inkBounds(image.copy(27, 0, 100, kBarHeight - 1), white);
        QVERIFY(name.width() > 20 && name.height() > 6);
    }

    void longNameIsCutWithAnEllipsisOnOneLine() {
        const QString name = QStringLiteral("A very long panel name ").repeated(10);
        DesktopPanelHostView& view = host(panelNamed(name), true);
        const QString shown = titleBar()->shownName();
        QVERIFY(shown.endsWith(QChar(0x2026)));
        QVERIFY(shown.size() < name.size());
        QCOMPARE(titleBar()->height(), kBarHeight);
        const QImage image = render(view, 1);
        const QRectF text =
            inkBounds(image.copy(27, 0, 240 - 27, kBarHeight), near(Qt::white, 30, 200));
        QVERIFY(text.right() <= 240 - 27 - 10 + 1);
        // Nothing spills below the bar apart from the outline.
        QCOMPARE(countPixels(image, QRectF(3, kBarHeight + 1, 234, 90), isVisible), 0);
    }

    void zeroCornerRadiusGivesSquareTitleBarAndOutline() {
        host(panelNamed(QStringLiteral("Notes"), 0), true);
        QImage image = render(*m_host, 1);
        QVERIFY(colorAt(image, QPointF(0.5, 0.5)).alpha() > 80);
        QVERIFY(accent()(colorAt(image, QPointF(0.5, 159.5))));
        QVERIFY(accent()(colorAt(image, QPointF(239.5, 159.5))));

        host(panelNamed(QStringLiteral("Notes"), 16), true);
        image = render(*m_host, 1);
        QCOMPARE(colorAt(image, QPointF(0.5, 0.5)).alpha(), 0);
        QCOMPARE(colorAt(image, QPointF(0.5, 159.5)).alpha(), 0);
        QCOMPARE(colorAt(image, QPointF(239.5, 159.5)).alpha(), 0);
    }

    void titleBarFrostsTheContentBeneathIt_data() { addRatios(); }

    void titleBarFrostsTheContentBeneathIt() {
        QFETCH(double, ratio);
        DesktopPanelHostView& view = host(stripedPanel(), false);
        // Pinned, the strokes are as sharp as they are drawn.
        QVERIFY(sharpestStep(render(view, ratio), kBarBeyondName) > 150);
        view.setPanel(stripedPanel(), true);
        QTRY_VERIFY(titleBar()->hasFrost());
        const int step = sharpestStep(render(view, ratio), kBarBeyondName);
        QVERIFY2(step < 25, qPrintable(QString::number(step)));
    }

    void titleBarNameStandsOutOnWhiteAndOnBlackPanel_data() {
        QTest::addColumn<double>("shade");
        QTest::newRow("white") << 1.0;
        QTest::newRow("black") << 0.0;
    }

    void titleBarNameStandsOutOnWhiteAndOnBlackPanel() {
        QFETCH(double, shade);
        Panel panel = panelNamed(QStringLiteral("A"));
        panel.style.backgroundColor = CodableColor{shade, shade, shade, 1};
        DesktopPanelHostView& view = host(panel, true);
        QTRY_VERIFY(titleBar()->hasFrost());
        const QImage image = render(view, 1);
        const double contrast = leastWhiteContrast(image, kBarBeyondName);
        QVERIFY2(contrast >= 4.5, qPrintable(QString::number(contrast)));
        // The name is drawn in white on it.
        QVERIFY(countPixels(image, QRectF(24, 3, 20, 20), near(Qt::white, 30)) > 0);
    }

    // Where the compositor blurs behind the bar, a clear panel's bar shows the desktop
    // through it, blurred there, with none of the panel's own strokes; elsewhere it hides it.
    void titleBarOverAClearPanelShowsTheDesktopOnlyWhenSeeThrough_data() {
        QTest::addColumn<bool>("seeThrough");
        QTest::newRow("see-through") << true;
        QTest::newRow("opaque") << false;
    }

    void titleBarOverAClearPanelShowsTheDesktopOnlyWhenSeeThrough() {
        QFETCH(bool, seeThrough);
        Panel panel = stripedPanel();
        panel.style.backgroundColor = CodableColor{1, 1, 1, 0};
        DesktopPanelHostView& view = host(panel, true);
        view.setTitleBarSeeThrough(seeThrough);
        QTRY_VERIFY(titleBar()->hasFrost());
        QCOMPARE(titleBar()->seeThrough(), seeThrough);
        // The window's pixels as the compositor lays them over the desktop.
        const QImage window = render(view, 1);
        const auto overDesktop = [&window](QColor desktop) {
            QImage image(window.size(), QImage::Format_ARGB32_Premultiplied);
            image.fill(desktop);
            QPainter(&image).drawImage(0, 0, window);
            return image;
        };
        const QImage white = overDesktop(Qt::white);
        const QImage black = overDesktop(Qt::black);
        const int lighter =
            qGray(white.pixel(200, kBarMiddle)) - qGray(black.pixel(200, kBarMiddle));
        QVERIFY2(seeThrough ? lighter > 30 : lighter == 0, qPrintable(QString::number(lighter)));
        for (const QImage& image : {white, black}) {
            const int step = sharpestStep(image, kBarBeyondName);
            QVERIFY2(step < 25, qPrintable(QString::number(step)));
            QVERIFY(leastWhiteContrast(image, kBarBeyondName) >= 4.5);
        }
    }

    // Moved to the screen of twice the scale, the window is drawn at twice the pixels, and
    // so is the bar's frost.
    void titleBarMovedToAScreenOfAnotherScaleIsFrostedAgain() {
        DesktopPanelHostView& view = host(stripedPanel(), true);
        view.move(100, 100);
        view.show();
        QTRY_VERIFY(titleBar()->hasFrost());
        QCOMPARE(view.devicePixelRatioF(), 1.0);
        view.move(2100, 100);
        QTRY_COMPARE(view.devicePixelRatioF(), 2.0);
        QTRY_VERIFY(titleBar()->hasFrost());
        const int step = sharpestStep(render(view, 2), kBarBeyondName);
        QVERIFY2(step < 25, qPrintable(QString::number(step)));
    }

    // Its own repaints paint the content beneath it too; that alone never frosts it again.
    void shownTitleBarComesToRestOverUnchangedContent() {
        DesktopPanelHostView& view = host(stripedPanel(), true);
        PaintCounter paints(*titleBar());
        view.show();
        QVERIFY(paints.settle());
        QTRY_VERIFY(titleBar()->hasFrost());
        QTest::qWait(100);
        const int before = paints.count;
        QTest::qWait(300);
        QCOMPARE(paints.count, before);
    }

    // A new second in the middle of the bar repaints only a few of its columns, away from
    // its rounded corners: they are frosted all the same.
    void titleBarRepaintedInItsMiddleIsFrostedThere() {
        DesktopPanelHostView& view = host(stripedPanel(), true);
        QTRY_VERIFY(titleBar()->hasFrost());
        const QRect middle(100, 0, 40, kBarHeight);
        QImage image(kSize, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        view.render(&image, middle.topLeft(), QRegion(middle), QWidget::DrawChildren);
        const QRectF glass = QRectF(middle).adjusted(0, 3, 0, -6);
        const int step = sharpestStep(image, glass);
        QVERIFY2(step < 25, qPrintable(QString::number(step)));
        QVERIFY(leastWhiteContrast(image, glass) >= 4.5);
    }

    // A frosted bar paints every pixel it covers: repainting it, as a new second under it
    // does, paints none of the panel beneath it again.
    void titleBarRepaintLeavesThePanelBeneathUnpainted() {
        DesktopPanelHostView& view = host(stripedPanel(), true);
        view.show();
        QTRY_VERIFY(titleBar()->hasFrost());
        PaintCounter content(*view.contentView());
        PaintCounter bar(*titleBar());
        QTest::qWait(50);
        const int before = content.count;
        titleBar()->update();
        QVERIFY(bar.settle());
        QCOMPARE(content.count, before);
    }

    void newContentUnderTheTitleBarIsFrostedAgain() {
        Panel panel = stripedPanel();
        DesktopPanelHostView& view = host(panel, true);
        view.show();
        QTRY_VERIFY(titleBar()->hasFrost());
        const QColor white = colorAt(render(view, 1), QPointF(200, kBarMiddle));
        panel.style.backgroundColor = CodableColor{0, 0, 1, 1};
        view.setPanel(panel, true);
        QTRY_VERIFY(colorAt(render(view, 1), QPointF(200, kBarMiddle)).blue() >
                    colorAt(render(view, 1), QPointF(200, kBarMiddle)).red() + 20);
        QVERIFY(white.blue() < white.red() + 5);
    }

    // Content changing inside the panel repaints the outline over it too; where such a
    // repaint meets the panel's edge or a round corner, the line is drawn there again.
    void outlineIsDrawnWhereARepaintMeetsTheEdge_data() {
        QTest::addColumn<QRect>("repainted");
        QTest::newRow("left edge") << QRect(0, 80, 30, 20);
        QTest::newRow("bottom-left corner") << QRect(0, 130, 30, 30);
        QTest::newRow("right edge") << QRect(200, 60, 40, 20);
    }

    void outlineIsDrawnWhereARepaintMeetsTheEdge() {
        QFETCH(QRect, repainted);
        DesktopPanelHostView& view = host(panelNamed(QStringLiteral("Notes")), true);
        QImage image(kSize, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        view.render(&image, repainted.topLeft(), QRegion(repainted), QWidget::DrawChildren);
        QVERIFY(countPixels(image, QRectF(repainted), accent()) > 0);
    }

    // Pinned, the bar is hidden and not frosted; what the panel came to show meanwhile is
    // under the bar when edit mode starts again.
    void contentChangedWhilePinnedIsFrostedWhenEditModeStartsAgain() {
        Panel panel = stripedPanel();
        DesktopPanelHostView& view = host(panel, true);
        view.show();
        QTRY_VERIFY(titleBar()->hasFrost());
        view.setPanel(panel, false);
        panel.style.backgroundColor = CodableColor{0, 0, 1, 1};
        view.setPanel(panel, false);
        QTest::qWait(50);
        view.setPanel(panel, true);
        QTRY_VERIFY(colorAt(render(view, 1), QPointF(200, kBarMiddle)).blue() >
                    colorAt(render(view, 1), QPointF(200, kBarMiddle)).red() + 20);
    }

    void titleBarDragReportsTheGlobalTranslation() {
        DesktopPanelHostView& view = host(panelNamed(QStringLiteral("Notes")), true);
        QSignalSpy moved(&view, &DesktopPanelHostView::moveDragged);
        QSignalSpy ended(&view, &DesktopPanelHostView::moveDragEnded);
        QCOMPARE(view.childAt(QPoint(100, 10)), titleBar());
        // The window follows the pointer, so the local position hardly changes.
        sendMouse(titleBar(), QEvent::MouseButtonPress, QPointF(100, 10), QPointF(600, 300));
        sendMouse(titleBar(), QEvent::MouseMove, QPointF(100, 10), QPointF(630, 320));
        sendMouse(titleBar(), QEvent::MouseMove, QPointF(101, 10), QPointF(580, 290));
        sendMouse(titleBar(), QEvent::MouseButtonRelease, QPointF(101, 10), QPointF(580, 290));
        QCOMPARE(moved.count(), 2);
        QCOMPARE(moved.at(0).at(0).toPointF(), QPointF(30, 20));
        QCOMPARE(moved.at(1).at(0).toPointF(), QPointF(-20, -10));
        QCOMPARE(ended.count(), 1);
    }

    void resizeHandleDragReportsTheGlobalTranslation() {
        DesktopPanelHostView& view = host(panelNamed(QStringLiteral("Notes")), true);
        QSignalSpy resized(&view, &DesktopPanelHostView::resizeDragged);
        QSignalSpy ended(&view, &DesktopPanelHostView::resizeDragEnded);
        QSignalSpy moved(&view, &DesktopPanelHostView::moveDragged);
        // The handle's clear margin is part of it.
        QCOMPARE(view.childAt(QPoint(238, 158)), handle());
        sendMouse(handle(), QEvent::MouseButtonPress, QPointF(33, 33), QPointF(800, 500));
        sendMouse(handle(), QEvent::MouseMove, QPointF(40, 45), QPointF(850, 540));
        sendMouse(handle(), QEvent::MouseButtonRelease, QPointF(40, 45), QPointF(850, 540));
        QCOMPARE(resized.count(), 1);
        QCOMPARE(resized.at(0).at(0).toPointF(), QPointF(50, 40));
        QCOMPARE(ended.count(), 1);
        QCOMPARE(moved.count(), 0);
    }

    void dragWithoutMovementStillEnds() {
        DesktopPanelHostView& view = host(panelNamed(QStringLiteral("Notes")), true);
        QSignalSpy moved(&view, &DesktopPanelHostView::moveDragged);
        QSignalSpy moveEnded(&view, &DesktopPanelHostView::moveDragEnded);
        QSignalSpy resized(&view, &DesktopPanelHostView::resizeDragged);
        QSignalSpy resizeEnded(&view, &DesktopPanelHostView::resizeDragEnded);
        sendMouse(titleBar(), QEvent::MouseButtonPress, QPointF(50, 10), QPointF(50, 10));
        sendMouse(titleBar(), QEvent::MouseButtonRelease, QPointF(50, 10), QPointF(50, 10));
        sendMouse(handle(), QEvent::MouseButtonPress, QPointF(17, 17), QPointF(300, 300));
        sendMouse(handle(), QEvent::MouseButtonRelease, QPointF(17, 17), QPointF(300, 300));
        QCOMPARE(moved.count(), 0);
        QCOMPARE(moveEnded.count(), 1);
        QCOMPARE(resized.count(), 0);
        QCOMPARE(resizeEnded.count(), 1);
    }

    void panelThatOnlyMovedIsNotRepainted() {
        Panel panel = panelNamed(QStringLiteral("Moving"));
        DesktopPanelHostView& view = host(panel, true);
        PaintCounter paints(view);
        view.show();
        QVERIFY(paints.settle());
        const int before = paints.count;

        // What a drag step hands over: the same panel somewhere else.
        panel.frame.x += 40;
        panel.frame.y += 25;
        view.setPanel(panel, true);
        QTest::qWait(50);
        QCOMPARE(paints.count, before);

        panel.name = QStringLiteral("Renamed");
        view.setPanel(panel, true);
        QTRY_VERIFY(paints.count > before);
    }

    void chromeExplainsItselfOnHover() {
        host(panelNamed(QStringLiteral("Notes")), true);
        QCOMPARE(titleBar()->toolTip(), QStringLiteral("Drag to move this panel"));
        QCOMPARE(handle()->toolTip(), QStringLiteral("Drag to resize this panel"));
    }

    void leavingEditModeRemovesTheChrome() {
        Panel panel = panelNamed(QStringLiteral("Notes"));
        DesktopPanelHostView& view = host(panel, true);
        QVERIFY(countPixels(render(view, 1), QRectF(QPointF(), kSize), isVisible) > 0);
        view.setPanel(panel, false);
        QVERIFY(!view.editMode());
        QCOMPARE(countPixels(render(view, 1), QRectF(QPointF(), kSize), isVisible), 0);
    }

    void chromeFollowsTheSize() {
        DesktopPanelHostView& view = host(panelNamed(QStringLiteral("Notes")), true);
        view.show();
        view.resize(300, 200);
        QCOMPARE(titleBar()->geometry(), QRect(0, 0, 300, kBarHeight));
        QCOMPARE(handle()->geometry(), QRect(300 - 35, 200 - 35, 35, 35));
        QCOMPARE(view.contentView()->geometry(), QRect(0, 0, 300, 200));
    }
};

// Two screens side by side, the second one scaled to twice the pixels, as a user's
// per-screen scale factors do.
int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM",
            "offscreen:configfile=" CORKWHEEL_TEST_DATA_DIR "/screens/two-scales.json");
    qputenv("QT_SCREEN_SCALE_FACTORS", "single=1;double=2");
    QApplication app(argc, argv);
    DesktopPanelHostViewTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_desktoppanelhostview.moc"
