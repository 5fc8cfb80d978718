// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/DateTokenFormatter.h"

#include <QTest>

#include <unicode/locid.h>

using namespace corkwheel;

namespace {

// Saturday 14 March 2026, 12:34:56 UTC: 13:34:56 in Berlin (still winter time), whose
// fields all differ, so a swapped or misplaced field shows.
QDateTime fixedInstant() {
    return QDateTime(QDate(2026, 3, 14), QTime(12, 34, 56), QTimeZone::utc());
}

QTimeZone zone(const char* ianaId) {
    return QTimeZone(QByteArray(ianaId));
}

} // namespace

// Runs with LC_ALL=en_US.UTF-8 and TZ=Europe/Berlin (see CMakeLists.txt): the user's
// locale and time zone, as the formatter finds them in the environment.
class DateTokenFormatterTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void templateWithoutTokensIsUnchanged_data();
    void templateWithoutTokensIsUnchanged();
    void unclosedTokenStaysLiteral();
    void tokenWithEmptyPatternStaysLiteral();
    void severalTokensAreAllReplacedFromOneInstant();
    void braceInsidePatternEndsTokenAtFirstClosingBrace();
    void tokenPrefixIsCaseSensitive();
    void textAroundTokensIsKeptExactly();
    void characterOutsideBmpBeforeTokenIsKept();
    void expandWritesFixedPatternsInUserLocaleAndZone_data();
    void expandWritesFixedPatternsInUserLocaleAndZone();
    void quotedTextInPatternIsLiteral();
    void formatUsesGivenTimeZone_data();
    void formatUsesGivenTimeZone();
    void formatNowWithEmptyFormatIsEmpty();
    void formatNowShowsCurrentTime();
    void aChangedLocaleShowsOnTheNextCall();
    void aChangedTimeZoneShowsOnTheNextCall();
};

void DateTokenFormatterTest::initTestCase() {
    // Every expected text below is English in Berlin; stop early with a clear message if
    // the environment the test was registered with didn't reach the formatter.
    QCOMPARE(DateTokenFormatter::expand(QStringLiteral("{date:VV}"), fixedInstant()),
             QStringLiteral("Europe/Berlin"));
    QCOMPARE(DateTokenFormatter::expand(QStringLiteral("{date:EEEE}"), fixedInstant()),
             QStringLiteral("Saturday"));
}

void DateTokenFormatterTest::templateWithoutTokensIsUnchanged_data() {
    QTest::addColumn<QString>("textTemplate");
    QTest::newRow("empty") << QString();
    QTest::newRow("plain text") << QStringLiteral("Good morning");
    QTest::newRow("braces only") << QStringLiteral("{} {{}} }{");
    QTest::newRow("date without colon") << QStringLiteral("{date}");
    QTest::newRow("pattern letters outside a token") << QStringLiteral("date:HH:mm yyyy");
}

void DateTokenFormatterTest::templateWithoutTokensIsUnchanged() {
    QFETCH(QString, textTemplate);
    QCOMPARE(DateTokenFormatter::expand(textTemplate, fixedInstant()), textTemplate);
}

void DateTokenFormatterTest::unclosedTokenStaysLiteral() {
    QCOMPARE(DateTokenFormatter::expand(QStringLiteral("Now {date:HH:mm"), fixedInstant()),
             QStringLiteral("Now {date:HH:mm"));
}

void DateTokenFormatterTest::tokenWithEmptyPatternStaysLiteral() {
    QCOMPARE(DateTokenFormatter::expand(QStringLiteral("{date:}"), fixedInstant()),
             QStringLiteral("{date:}"));
    QCOMPARE(DateTokenFormatter::expand(QStringLiteral("{date:}{date:HH}"), fixedInstant()),
             QStringLiteral("{date:}13"));
}

void DateTokenFormatterTest::severalTokensAreAllReplacedFromOneInstant() {
    QCOMPARE(DateTokenFormatter::expand(QStringLiteral("{date:HH}:{date:mm}"), fixedInstant()),
             QStringLiteral("13:34"));
    QCOMPARE(DateTokenFormatter::expand(QStringLiteral("{date:ss}/{date:HH}/{date:yyyy}"),
                                        fixedInstant()),
             QStringLiteral("56/13/2026"));
}

void DateTokenFormatterTest::braceInsidePatternEndsTokenAtFirstClosingBrace() {
    // The pattern is "{x": a literal brace and the zone's ISO offset.
    QCOMPARE(DateTokenFormatter::expand(QStringLiteral("{date:{x}}"), fixedInstant()),
             QStringLiteral("{+01}"));
}

void DateTokenFormatterTest::tokenPrefixIsCaseSensitive() {
    QCOMPARE(
        DateTokenFormatter::expand(QStringLiteral("{Date:HH} {DATE:HH} {date:HH}"), fixedInstant()),
        QStringLiteral("{Date:HH} {DATE:HH} 13"));
}

void DateTokenFormatterTest::textAroundTokensIsKeptExactly() {
    const QString textTemplate = QStringLiteral(" {a} }{date:yyyy}{ \t\n\u00e9{date:HH}}{\r\n");
    QCOMPARE(DateTokenFormatter::expand(textTemplate, fixedInstant()),
             QStringLiteral(" {a} }2026{ \t\n\u00e913}{\r\n"));
}

void DateTokenFormatterTest::characterOutsideBmpBeforeTokenIsKept() {
    // U+1F600 takes two UTF-16 code units; the token after it must still be cut out whole.
    const QString smile = QString::fromUcs4(U"\U0001F600");
    QCOMPARE(DateTokenFormatter::expand(smile + QStringLiteral(" {date:HH:mm} ") + smile,
                                        fixedInstant()),
             smile + QStringLiteral(" 13:34 ") + smile);
}

void DateTokenFormatterTest::expandWritesFixedPatternsInUserLocaleAndZone_data() {
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("expected");
    QTest::newRow("numeric") << QStringLiteral("yyyy-MM-dd HH:mm")
                             << QStringLiteral("2026-03-14 13:34");
    QTest::newRow("names") << QStringLiteral("EEEE, MMMM d")
                           << QStringLiteral("Saturday, March 14");
    QTest::newRow("twelve-hour") << QStringLiteral("h:mm a") << QStringLiteral("1:34 PM");
}

void DateTokenFormatterTest::expandWritesFixedPatternsInUserLocaleAndZone() {
    QFETCH(QString, pattern);
    QFETCH(QString, expected);
    const QString token = QStringLiteral("{date:") + pattern + QStringLiteral("}");
    QCOMPARE(DateTokenFormatter::expand(token, fixedInstant()), expected);
}

void DateTokenFormatterTest::quotedTextInPatternIsLiteral() {
    QCOMPARE(
        DateTokenFormatter::expand(QStringLiteral("{date:'Week' w 'of' yyyy}"), fixedInstant()),
        QStringLiteral("Week 11 of 2026"));
}

void DateTokenFormatterTest::formatUsesGivenTimeZone_data() {
    QTest::addColumn<QTimeZone>("timeZone");
    QTest::addColumn<QString>("expected");
    QTest::newRow("UTC") << QTimeZone::utc() << QStringLiteral("2026-03-14 12:34");
    QTest::newRow("Tokyo") << zone("Asia/Tokyo") << QStringLiteral("2026-03-14 21:34");
    // Summer time started on 8 March there.
    QTest::newRow("New York") << zone("America/New_York") << QStringLiteral("2026-03-14 08:34");
    QTest::newRow("date line") << zone("Pacific/Kiritimati") << QStringLiteral("2026-03-15 02:34");
    QTest::newRow("fixed offset") << QTimeZone(5 * 3600 + 1800)
                                  << QStringLiteral("2026-03-14 18:04");
}

void DateTokenFormatterTest::formatUsesGivenTimeZone() {
    QFETCH(QTimeZone, timeZone);
    QFETCH(QString, expected);
    QCOMPARE(
        DateTokenFormatter::format(QStringLiteral("yyyy-MM-dd HH:mm"), fixedInstant(), timeZone),
        expected);
}

void DateTokenFormatterTest::formatNowWithEmptyFormatIsEmpty() {
    QCOMPARE(DateTokenFormatter::formatNow(QString(), QTimeZone::systemTimeZone()), QString());
    QCOMPARE(DateTokenFormatter::format(QString(), fixedInstant(), QTimeZone::utc()), QString());
}

void DateTokenFormatterTest::formatNowShowsCurrentTime() {
    const QString pattern = QStringLiteral("yyyy-MM-dd HH:mm:ss");
    const QTimeZone tokyo = zone("Asia/Tokyo");
    const QDateTime before = QDateTime::currentDateTime();
    const QString now = DateTokenFormatter::formatNow(pattern, tokyo);
    const QDateTime after = QDateTime::currentDateTime();
    const QString expected = before.toTimeZone(tokyo).toString(u"yyyy-MM-dd HH:mm:ss");
    if (now != expected)
        QCOMPARE(now, after.toTimeZone(tokyo).toString(u"yyyy-MM-dd HH:mm:ss"));
}

void DateTokenFormatterTest::aChangedLocaleShowsOnTheNextCall() {
    const QString weekday = QStringLiteral("{date:EEEE}");
    QCOMPARE(DateTokenFormatter::expand(weekday, fixedInstant()), QStringLiteral("Saturday"));
    const icu::Locale user = icu::Locale::getDefault();
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale::setDefault(icu::Locale::getGerman(), status);
    const QString german = DateTokenFormatter::expand(weekday, fixedInstant());
    icu::Locale::setDefault(user, status);
    QCOMPARE(german, QStringLiteral("Samstag"));
    QCOMPARE(DateTokenFormatter::expand(weekday, fixedInstant()), QStringLiteral("Saturday"));
}

void DateTokenFormatterTest::aChangedTimeZoneShowsOnTheNextCall() {
    const QString pattern = QStringLiteral("HH:mm");
    QCOMPARE(DateTokenFormatter::format(pattern, fixedInstant(), zone("Asia/Tokyo")),
             QStringLiteral("21:34"));
    QCOMPARE(DateTokenFormatter::format(pattern, fixedInstant(), zone("Europe/London")),
             QStringLiteral("12:34"));
    QCOMPARE(DateTokenFormatter::format(pattern, fixedInstant(), QTimeZone(-3 * 3600)),
             QStringLiteral("09:34"));
    QCOMPARE(DateTokenFormatter::format(pattern, fixedInstant(), zone("Asia/Tokyo")),
             QStringLiteral("21:34"));
}

QTEST_GUILESS_MAIN(DateTokenFormatterTest)
#include "tst_datetokenformatter.moc"
