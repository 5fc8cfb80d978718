// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/BoxBlur.h"

#include <QTest>

using namespace corkwheel;

namespace {

QImage blank(int width, int height) {
    QImage image(width, height, QImage::Format_Alpha8);
    image.fill(0);
    return image;
}

int at(const QImage& image, int x, int y) {
    return image.constScanLine(y)[x];
}

} // namespace

class BoxBlurTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void pointSpreadsEvenlyOverItsWindow() {
        QImage image = blank(7, 7);
        image.scanLine(3)[3] = 255;
        BoxBlur::blur(image, image.rect(), 1);
        // 255 / 3 = 85 along the row, then 85 / 3 = 28.3 along the columns.
        for (int y = 2; y <= 4; ++y) {
            for (int x = 2; x <= 4; ++x)
                QCOMPARE(at(image, x, y), 28);
        }
        QCOMPARE(at(image, 1, 3), 0);
        QCOMPARE(at(image, 3, 5), 0);
    }

    void meansAreRoundedToTheNearest() {
        // A column of 2 and one of 1, three rows tall: along the rows 2 / 3 = 0.67 rounds up
        // to 1 and 1 / 3 = 0.33 down to 0; the middle row then keeps its mean of 1 and 0.
        QImage image = blank(9, 3);
        for (int y = 0; y < 3; ++y) {
            image.scanLine(y)[2] = 2;
            image.scanLine(y)[6] = 1;
        }
        BoxBlur::blur(image, image.rect(), 1);
        QCOMPARE(at(image, 1, 1), 1);
        QCOMPARE(at(image, 3, 1), 1);
        QCOMPARE(at(image, 5, 1), 0);
        QCOMPARE(at(image, 6, 1), 0);
    }

    void evenAreaKeepsItsValueAwayFromItsEdges() {
        QImage image = blank(40, 40);
        image.fill(200);
        BoxBlur::blur(image, image.rect(), 3);
        QCOMPARE(at(image, 20, 20), 200);
        // Beyond the edge counts as transparent: 4 of 7 in the row, then of 7 in the column.
        QVERIFY(at(image, 0, 20) < 200);
        QVERIFY(at(image, 0, 0) < at(image, 0, 20));
    }

    void onlyTheAreaIsBlurred() {
        QImage image = blank(30, 30);
        image.scanLine(5)[5] = 255;
        image.scanLine(20)[20] = 255;
        BoxBlur::blur(image, QRect(15, 15, 10, 10), 2);
        QCOMPARE(at(image, 5, 5), 255);
        QCOMPARE(at(image, 6, 5), 0);
        QVERIFY(at(image, 20, 20) < 255);
        QVERIFY(at(image, 21, 21) > 0);
    }

    // Unlike the alpha blur, beyond the edges of a colour image its edge pixels repeat: an
    // even colour stays even right up to its edges.
    void colourBlurKeepsAnEvenColourUpToItsEdges() {
        QImage image(12, 5, QImage::Format_ARGB32_Premultiplied);
        image.fill(QColor(200, 40, 10));
        const QImage blurred = BoxBlur::blurColours(image, 2, 3);
        QCOMPARE(blurred.format(), QImage::Format_ARGB32_Premultiplied);
        QCOMPARE(blurred.pixelColor(0, 0), QColor(200, 40, 10));
        QCOMPARE(blurred.pixelColor(11, 4), QColor(200, 40, 10));
        QCOMPARE(blurred.pixelColor(6, 2), QColor(200, 40, 10));
    }

    void colourBlurSpreadsEachChannelAlone() {
        QImage image(9, 9, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::black);
        image.setPixelColor(4, 4, QColor(255, 0, 90));
        const QImage blurred = BoxBlur::blurColours(image, 1, 1);
        // 255 / 3 / 3 = 28.3 and 90 / 9 = 10 over the 3 × 3 around it; alpha stays whole.
        for (int y = 3; y <= 5; ++y) {
            for (int x = 3; x <= 5; ++x)
                QCOMPARE(blurred.pixelColor(x, y), QColor(28, 0, 10));
        }
        QCOMPARE(blurred.pixelColor(2, 4), QColor(Qt::black));
    }
};

QTEST_MAIN(BoxBlurTest)
#include "tst_boxblur.moc"
