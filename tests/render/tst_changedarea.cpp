// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/ChangedArea.h"

#include <QTest>

using namespace corkwheel;

namespace {

QImage blank() {
    QImage image(40, 30, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

} // namespace

class ChangedAreaTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void sameImagesHaveNoChange() {
        QImage image = blank();
        image.setPixel(3, 4, qRgba(255, 0, 0, 255));
        QVERIFY(ChangedArea::between(image, image.copy(), 0).isEmpty());
    }

    void aChangeIsAsWideAndTallAsTheChangedPixels() {
        const QImage before = blank();
        QImage after = blank();
        after.setPixel(5, 7, qRgba(255, 255, 255, 255));
        after.setPixel(12, 9, qRgba(0, 0, 0, 128));
        QCOMPARE(ChangedArea::between(before, after, 2), QList<QRect>{QRect(5, 7, 8, 3)});
    }

    void changesFarApartStaySeparate() {
        const QImage before = blank();
        QImage after = blank();
        after.setPixel(2, 1, qRgba(255, 255, 255, 255));
        after.setPixel(30, 20, qRgba(255, 255, 255, 255));
        const QList<QRect> expected{QRect(2, 1, 1, 1), QRect(30, 20, 1, 1)};
        QCOMPARE(ChangedArea::between(before, after, 4), expected);
    }

    void changesCloserThanTheGapAreJoined() {
        const QImage before = blank();
        QImage after = blank();
        after.setPixel(2, 10, qRgba(255, 255, 255, 255));
        after.setPixel(30, 13, qRgba(255, 255, 255, 255));
        // Two unchanged rows between them: joined under a gap of 3, apart at 2.
        QCOMPARE(ChangedArea::between(before, after, 3), QList<QRect>{QRect(2, 10, 29, 4)});
        QCOMPARE(ChangedArea::between(before, after, 2).size(), 2);
    }

    void aChangeOfColourAloneCounts() {
        QImage before = blank();
        QImage after = blank();
        before.fill(qRgba(255, 0, 0, 255));
        after.fill(qRgba(255, 0, 0, 255));
        after.setPixel(39, 29, qRgba(0, 0, 255, 255));
        QCOMPARE(ChangedArea::between(before, after, 0), QList<QRect>{QRect(39, 29, 1, 1)});
    }
};

QTEST_MAIN(ChangedAreaTest)
#include "tst_changedarea.moc"
