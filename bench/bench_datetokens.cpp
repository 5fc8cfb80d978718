// SPDX-License-Identifier: GPL-3.0-or-later

// One text-panel refresh: a template with three date tokens, expanded with the user's
// locale and time zone.
//
//   build/bench/bench_datetokens

#include "BenchTimer.h"

#include "engine/DateTokenFormatter.h"

#include <QDateTime>

using namespace corkwheel;

int main() {
    const QString textTemplate =
        QStringLiteral("Today is {date:EEEE, MMMM d}, week {date:w}, {date:HH:mm:ss}");
    const QDateTime now = QDateTime::currentDateTime();
    bench::measure("expand, three tokens", 5000,
                   [&] { (void)DateTokenFormatter::expand(textTemplate, now); });
    bench::measure("formatNow, clock pattern", 5000, [] {
        (void)DateTokenFormatter::formatNow(QStringLiteral(u"EEEE, MMMM d  \u2022  h:mm:ss a"),
                                            QTimeZone::systemTimeZone());
    });
    return 0;
}
