// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/ViewTesting.h"

#include "render/NetworkGraphView.h"
#include "render/PanelFonts.h"

#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

NetworkSample sample(double down, double up,
                     NetworkInterfaceKind kind = NetworkInterfaceKind::Ethernet,
                     const QString& name = QStringLiteral("Ethernet")) {
    return NetworkSample{name, kind, down, up};
}

QList<NetworkSample> constantHistory(int count, double down, double up) {
    QList<NetworkSample> history;
    for (int i = 0; i < count; ++i)
        history.append(sample(down, up));
    return history;
}

QList<QPointF> pointsOf(const QPainterPath& path) {
    QList<QPointF> points;
    for (int i = 0; i < path.elementCount(); ++i)
        points.append(path.elementAt(i));
    return points;
}

const QSizeF kViewSize(240, 80);
const QColor kTint(40, 200, 255);

QImage renderGraph(const QList<NetworkSample>& history, double ratio) {
    const QFont font = PanelFonts::styleFont(QStringLiteral("SFMono-Regular"), 11);
    return paintImage(kViewSize, ratio, [&](QPainter& painter) {
        NetworkGraphView(history, kTint).paint(painter, QRectF(QPointF(), kViewSize), font, kTint);
    });
}

QRectF canvasOf() {
    const QFont font = PanelFonts::styleFont(QStringLiteral("SFMono-Regular"), 11);
    return NetworkGraphView::canvasRect(QRectF(QPointF(), kViewSize), font);
}

} // namespace

class NetworkGraphViewTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void rateUsesDecimalSteps_data() {
        QTest::addColumn<double>("bytesPerSecond");
        QTest::addColumn<QString>("text");
        QTest::newRow("just under a megabit") << 124'999.0 << QStringLiteral("1000 Kbps");
        QTest::newRow("one megabit") << 125'000.0 << QStringLiteral("1.0 Mbps");
        QTest::newRow("800 bits") << 100.0 << QStringLiteral("800 bps");
        QTest::newRow("one kilobit") << 125.0 << QStringLiteral("1 Kbps");
        QTest::newRow("nothing") << 0.0 << QStringLiteral("0 bps");
        QTest::newRow("fast") << 12'345'678.0 << QStringLiteral("98.8 Mbps");
    }

    void rateUsesDecimalSteps() {
        QFETCH(double, bytesPerSecond);
        QFETCH(QString, text);
        QCOMPARE(NetworkGraphView::rate(bytesPerSecond), text);
    }

    void maxValueIsTheLargestRateButNeverUnder32768() {
        QCOMPARE(NetworkGraphView::maxValue({}), 32768.0);
        QCOMPARE(NetworkGraphView::maxValue(constantHistory(3, 10'000, 500)), 32768.0);
        QCOMPARE(NetworkGraphView::maxValue({sample(40'000, 10), sample(20, 90'000)}), 90'000.0);
    }

    void pathOfNoValuesIsEmpty() {
        QVERIFY(NetworkGraphView::path({}, QSizeF(100, 34), 32768).isEmpty());
    }

    void pathOfOneValueIsASinglePointAtTheLeftEdge() {
        const QPainterPath path = NetworkGraphView::path({32768}, QSizeF(100, 34), 32768);
        QCOMPARE(pointsOf(path), QList<QPointF>{QPointF(0, 0)});
    }

    void twoSamplesSitAtTheLeftAndRightEdges() {
        const QPainterPath path = NetworkGraphView::path({0, 32768}, QSizeF(100, 34), 32768);
        QCOMPARE(pointsOf(path), (QList<QPointF>{QPointF(0, 34), QPointF(100, 0)}));
    }

    void tenSamplesSitAtNinthsOfTheWidth() {
        const QList<double> values(10, 16384);
        const QList<QPointF> points =
            pointsOf(NetworkGraphView::path(values, QSizeF(90, 34), 32768));
        QCOMPARE(points.size(), 10);
        for (int i = 0; i < 10; ++i)
            QCOMPARE(points[i], QPointF(90.0 * i / 9, 17));
    }

    void emptyHistoryShowsNoNetworkAndZeroRates() {
        const NetworkGraphView view({}, kTint);
        QCOMPARE(view.title(), QStringLiteral("No Network"));
        QCOMPARE(view.symbolName(), QStringLiteral("network"));
        QCOMPARE(view.ratesText(), QStringLiteral("0 bps ↓  0 bps ↑"));
    }

    void emptyHistoryDrawsTheHeaderButAnEmptyGraph_data() {
        QTest::addColumn<double>("ratio");
        QTest::newRow("ratio 1") << 1.0;
        QTest::newRow("ratio 2") << 2.0;
    }

    void emptyHistoryDrawsTheHeaderButAnEmptyGraph() {
        QFETCH(double, ratio);
        const QImage image = renderGraph({}, ratio);
        const QRectF canvas = canvasOf();
        QVERIFY(countPixels(image, QRectF(0, 0, kViewSize.width(), canvas.top()), isVisible) > 20);
        QCOMPARE(countPixels(image, canvas, isVisible), 0);
    }

    void headerNamesTheConnectionWithTheSymbolOfItsKind_data() {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("symbol");
        QTest::newRow("wifi") << int(NetworkInterfaceKind::Wifi) << QStringLiteral("wifi");
        QTest::newRow("ethernet") << int(NetworkInterfaceKind::Ethernet)
                                  << QStringLiteral("cable.connector");
        QTest::newRow("other") << int(NetworkInterfaceKind::Other) << QStringLiteral("network");
    }

    void headerNamesTheConnectionWithTheSymbolOfItsKind() {
        QFETCH(int, kind);
        QFETCH(QString, symbol);
        const NetworkGraphView view(
            {sample(1, 1), sample(125'000, 100, NetworkInterfaceKind(kind), QStringLiteral("wg0"))},
            kTint);
        QCOMPARE(view.title(), QStringLiteral("wg0"));
        QCOMPARE(view.symbolName(), symbol);
        QCOMPARE(view.ratesText(), QStringLiteral("1.0 Mbps ↓  800 bps ↑"));
    }

    void smallRatesStayInTheLowerThird_data() { emptyHistoryDrawsTheHeaderButAnEmptyGraph_data(); }

    void smallRatesStayInTheLowerThird() {
        QFETCH(double, ratio);
        const QImage image = renderGraph(constantHistory(20, 10'000, 10'000), ratio);
        const QRectF canvas = canvasOf();
        const QRectF upperTwoThirds(canvas.left(), canvas.top(), canvas.width(),
                                    canvas.height() * 2 / 3 - 1);
        const QRectF lowerThird(canvas.left(), canvas.top() + canvas.height() * 2 / 3,
                                canvas.width(), canvas.height() / 3);
        QCOMPARE(countPixels(image, upperTwoThirds, isVisible), 0);
        QVERIFY(countPixels(image, lowerThird, isVisible) > 50);
    }

    void downloadIsDrawnInFullTintOverTheFainterUpload_data() {
        emptyHistoryDrawsTheHeaderButAnEmptyGraph_data();
    }

    void downloadIsDrawnInFullTintOverTheFainterUpload() {
        QFETCH(double, ratio);
        // Two flat lines, each centred on a row of pixels so that row is fully covered.
        const auto valueAt = [](double y) { return 32768 * (1 - y / 34); };
        const QImage image = renderGraph(constantHistory(5, valueAt(16.5), valueAt(28.5)), ratio);
        const QRectF canvas = canvasOf();
        const QColor down = colorAt(image, QPointF(canvas.center().x(), canvas.top() + 16.5));
        const QColor up = colorAt(image, QPointF(canvas.center().x(), canvas.top() + 28.5));
        QVERIFY2(down.alpha() > 240, qPrintable(down.name(QColor::HexArgb)));
        QCOMPARE(down.rgb(), kTint.rgb());
        QVERIFY2(up.alpha() > 90 && up.alpha() < 130, qPrintable(up.name(QColor::HexArgb)));
    }

    void linesAreOneAndAHalfPointsWide_data() { emptyHistoryDrawsTheHeaderButAnEmptyGraph_data(); }

    void linesAreOneAndAHalfPointsWide() {
        QFETCH(double, ratio);
        const QImage image = renderGraph(constantHistory(5, 16384, 0), ratio);
        const QRectF canvas = canvasOf();
        // A flat line: down a column of the middle, the covered pixels add up to its width.
        const QRectF column(canvas.center().x(), canvas.top(), 1 / ratio, canvas.height() - 4);
        double coverage = 0;
        countPixels(image, column, [&](QColor color) {
            coverage += color.alphaF();
            return false;
        });
        QVERIFY2(std::abs(coverage / ratio - 1.5) < 0.2, qPrintable(QString::number(coverage)));
    }
};

QTEST_MAIN(NetworkGraphViewTest)
#include "tst_networkgraphview.moc"
