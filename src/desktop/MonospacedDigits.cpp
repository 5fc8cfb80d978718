#include "desktop/MonospacedDigits.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>

namespace corkwheel::MonospacedDigits {

namespace {

double digitCell(const QFontMetricsF& metrics) {
    double widest = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit)
        widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
    return widest;
}

bool isDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

// The text cut into runs of digits and runs of anything else.
template <class Visit> void forEachRun(const QString& text, Visit visit) {
    qsizetype start = 0;
    while (start < text.size()) {
        const bool digits = isDigit(text[start]);
        qsizetype end = start + 1;
        while (end < text.size() && isDigit(text[end]) == digits)
            ++end;
        visit(QStringView(text).sliced(start, end - start), digits);
        start = end;
    }
}

} // namespace

double width(const QFontMetricsF& metrics, const QString& text) {
    const double cell = digitCell(metrics);
    double total = 0;
    forEachRun(text, [&](QStringView run, bool digits) {
        total += digits ? cell * run.size() : metrics.horizontalAdvance(run.toString());
    });
    return total;
}

void draw(QPainter& painter, QPointF baselineOrigin, const QString& text) {
    const QFontMetricsF metrics(painter.font());
    const double cell = digitCell(metrics);
    double x = baselineOrigin.x();
    forEachRun(text, [&](QStringView run, bool digits) {
        if (!digits) {
            const QString part = run.toString();
            painter.drawText(QPointF(x, baselineOrigin.y()), part);
            x += metrics.horizontalAdvance(part);
            return;
        }
        for (const QChar digit : run) {
            const double advance = metrics.horizontalAdvance(digit);
            painter.drawText(QPointF(x + (cell - advance) / 2, baselineOrigin.y()), QString(digit));
            x += cell;
        }
    });
}

} // namespace corkwheel::MonospacedDigits
