// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/MonospacedDigits.h"

#include "support/ViewTesting.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QTest>

#include <algorithm>
#include <optional>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

const QString kFigures = QStringLiteral("CPU 7% 1.25 GB of 31.4 GB 908 KB/s");

double widestDigit(const QFontMetricsF& metrics) {
    double widest = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit)
        widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
    return widest;
}

// What the figures must look like: every digit drawn on its own, centred in a cell as wide
// as the widest digit, and the text between the digits drawn as it is.
void drawDigitByDigit(QPainter& painter, QPointF origin, const QString& text) {
    const QFontMetricsF metrics(painter.font());
    const double cell = widestDigit(metrics);
    double x = origin.x();
    for (qsizetype i = 0; i < text.size();) {
        if (text[i].isDigit()) {
            const double advance = metrics.horizontalAdvance(text[i]);
            painter.drawText(QPointF(x + (cell - advance) / 2, origin.y()), QString(text[i]));
            x += cell;
            ++i;
            continue;
        }
        qsizetype end = i;
        while (end < text.size() && !text[end].isDigit())
            ++end;
        const QString part = text.mid(i, end - i);
        painter.drawText(QPointF(x, origin.y()), part);
        x += metrics.horizontalAdvance(part);
        i = end;
    }
}

// Glyphs set a fraction of a pixel apart shade their edges differently, by up to a quarter
// of full coverage; a glyph out of place or of the wrong shape differs by far more.
constexpr int kEdgeShading = 64;

// The largest difference of any channel of any pixel of two images of one size.
int largestDifference(const QImage& a, const QImage& b) {
    if (a.size() != b.size())
        return 255;
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            largest =
                std::max({largest, std::abs(qAlpha(p) - qAlpha(q)), std::abs(qRed(p) - qRed(q)),
                          std::abs(qGreen(p) - qGreen(q)), std::abs(qBlue(p) - qBlue(q))});
        }
    }
    return largest;
}

QImage figuresImage(const QFont& font, double ratio,
                    const std::function<void(QPainter&, QPointF)>& draw) {
    return textImage(QSizeF(400, 30), font, ratio,
                     [&](QPainter& painter) { draw(painter, QPointF(4, 20)); });
}

// A font of this machine whose digits differ in width, where the centring in the cells
// shows; none when every font here has digits of one width.
std::optional<QFont> fontWithUnevenDigits() {
    for (const QString& family : QFontDatabase::families()) {
        QFont font(family);
        font.setPixelSize(13);
        if (!QFontInfo(font).exactMatch())
            continue;
        const QFontMetricsF metrics(font);
        double narrowest = widestDigit(metrics);
        for (char16_t digit = u'0'; digit <= u'9'; ++digit)
            narrowest = std::min(narrowest, metrics.horizontalAdvance(QChar(digit)));
        if (narrowest < widestDigit(metrics))
            return font;
    }
    return std::nullopt;
}

} // namespace

class MonospacedDigitsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyDigitTakesTheWidestDigitsCell() {
        const QFont font = proportionalFont();
        const QFontMetricsF metrics(font);
        const double cell = widestDigit(metrics);
        QCOMPARE(MonospacedDigits::width(font, QStringLiteral("1111")), 4 * cell);
        QCOMPARE(MonospacedDigits::width(font, QStringLiteral("8080")), 4 * cell);
        QCOMPARE(MonospacedDigits::width(font, QStringLiteral("1 GB")),
                 cell + metrics.horizontalAdvance(QStringLiteral(" GB")));
    }

    void figuresLookAsIfDrawnDigitByDigit_data() {
        QTest::addColumn<QFont>("font");
        QTest::addColumn<double>("ratio");
        QTest::newRow("proportional, 1x") << proportionalFont() << 1.0;
        QTest::newRow("proportional, 2x") << proportionalFont() << 2.0;
        QTest::newRow("fixed width, 1x") << fixedFont() << 1.0;
        QTest::newRow("fixed width, 2x") << fixedFont() << 2.0;
        if (const auto uneven = fontWithUnevenDigits())
            QTest::newRow("digits of different widths, 2x") << *uneven << 2.0;
    }

    void figuresLookAsIfDrawnDigitByDigit() {
        QFETCH(QFont, font);
        QFETCH(double, ratio);
        const QImage drawn = figuresImage(font, ratio, [](QPainter& painter, QPointF origin) {
            MonospacedDigits::draw(painter, origin, kFigures);
        });
        const QImage expected = figuresImage(font, ratio, [](QPainter& painter, QPointF origin) {
            drawDigitByDigit(painter, origin, kFigures);
        });
        QVERIFY(countPixels(drawn, QRectF(0, 0, 400, 30), isVisible) > 100);
        QVERIFY(largestDifference(drawn, expected) <= kEdgeShading);
    }

    void changingFigureKeepsItsNeighboursInPlace() {
        const QFont font = proportionalFont();
        const auto image = [&](const QString& text) {
            return figuresImage(font, 1.0, [&](QPainter& painter, QPointF origin) {
                MonospacedDigits::draw(painter, origin, text);
            });
        };
        const QImage ones = image(QStringLiteral("11 GB"));
        const QImage eights = image(QStringLiteral("88 GB"));
        const double digitsEnd = 4 + 2 * widestDigit(QFontMetricsF(font));
        const QRect after = QRectF(digitsEnd, 0, 400 - digitsEnd, 30).toAlignedRect();
        QCOMPARE(ones.copy(after), eights.copy(after));
    }
};

QTEST_MAIN(MonospacedDigitsTest)
#include "tst_monospaceddigits.moc"
