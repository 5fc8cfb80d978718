// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/ShapedText.h"

#include "support/ViewTesting.h"

#include <QFontMetricsF>
#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

constexpr QSizeF kCanvas(300, 30);
constexpr QPointF kBaselineOrigin(4, 20);

QImage lineImage(const QFont& font, double ratio, const std::function<void(QPainter&)>& draw) {
    return textImage(kCanvas, font, ratio, draw);
}

QImage drawnText(const QFont& font, double ratio, const QString& text) {
    return lineImage(font, ratio,
                     [&](QPainter& painter) { painter.drawText(kBaselineOrigin, text); });
}

} // namespace

class ShapedTextTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void linesLookExactlyAsDrawnText_data() {
        QTest::addColumn<QFont>("font");
        QTest::addColumn<double>("ratio");
        QTest::addColumn<QString>("text");
        const QString rates = QStringLiteral("Mbps ↓  ");
        QTest::newRow("label, proportional, 1x") << proportionalFont() << 1.0 << "Memory";
        QTest::newRow("label, proportional, 2x") << proportionalFont() << 2.0 << "Memory";
        QTest::newRow("label, fixed width, 1x") << fixedFont() << 1.0 << "Backup Drive";
        QTest::newRow("label, fixed width, 2x") << fixedFont() << 2.0 << "Backup Drive";
        QTest::newRow("unit with arrow, 1x") << proportionalFont() << 1.0 << rates;
        QTest::newRow("unit with arrow, 2x") << fixedFont() << 2.0 << rates;
    }

    void linesLookExactlyAsDrawnText() {
        QFETCH(QFont, font);
        QFETCH(double, ratio);
        QFETCH(QString, text);
        const QImage shaped = lineImage(font, ratio, [&](QPainter& painter) {
            ShapedText::draw(painter, kBaselineOrigin, text);
        });
        QVERIFY(countPixels(shaped, QRectF(QPointF(), kCanvas), isVisible) > 20);
        QCOMPARE(shaped, drawnText(font, ratio, text));
    }

    void widthIsTheAdvanceOfTheText_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("word") << QStringLiteral("Memory");
        QTest::newRow("trailing spaces count") << QStringLiteral(" ↓  ");
        QTest::newRow("empty") << QString();
    }

    void widthIsTheAdvanceOfTheText() {
        QFETCH(QString, text);
        const QFont font = proportionalFont();
        QCOMPARE(ShapedText::width(font, text), QFontMetricsF(font).horizontalAdvance(text));
    }

    void sameTextInAnotherSizeIsShapedForThatSize() {
        const QFont small = proportionalFont();
        QFont large = small;
        large.setPixelSize(20);
        const QString text = QStringLiteral("CPU");
        const auto shaped = [&](const QFont& font) {
            return lineImage(font, 1.0, [&](QPainter& painter) {
                ShapedText::draw(painter, kBaselineOrigin, text);
            });
        };
        QCOMPARE(shaped(small), drawnText(small, 1.0, text));
        QCOMPARE(shaped(large), drawnText(large, 1.0, text));
        QVERIFY(ShapedText::width(large, text) > ShapedText::width(small, text));
    }

    void lineThatFitsIsDrawnWhole() {
        const QFont font = proportionalFont();
        const QString text = QStringLiteral("Memory");
        const QImage elided = lineImage(font, 1.0, [&](QPainter& painter) {
            ShapedText::drawElided(painter, kBaselineOrigin, text, ShapedText::width(font, text));
        });
        QCOMPARE(elided, drawnText(font, 1.0, text));
    }

    void longerLineEndsInAnEllipsisWithinTheWidth_data() { addRatios(); }

    void longerLineEndsInAnEllipsisWithinTheWidth() {
        QFETCH(double, ratio);
        const QFont font = proportionalFont();
        const QString text = QStringLiteral("A disk with a very long name indeed");
        constexpr double kWidth = 80;
        const QImage elided = lineImage(font, ratio, [&](QPainter& painter) {
            ShapedText::drawElided(painter, kBaselineOrigin, text, kWidth);
        });
        const QString expected = QFontMetricsF(font).elidedText(text, Qt::ElideRight, kWidth);
        QVERIFY(expected.endsWith(QChar(0x2026)));
        QCOMPARE(elided, drawnText(font, ratio, expected));
        const QRectF ink = inkBounds(elided, isVisible);
        QVERIFY(!ink.isEmpty());
        QVERIFY(ink.right() <= kBaselineOrigin.x() + kWidth + 1);
    }
};

QTEST_MAIN(ShapedTextTest)
#include "tst_shapedtext.moc"
