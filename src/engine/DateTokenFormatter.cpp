#include "engine/DateTokenFormatter.h"

#include <QList>
#include <QRegularExpression>

#include <unicode/simpletz.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/ucal.h>

#include <memory>

namespace corkwheel::DateTokenFormatter {

namespace {

// "{date:" then the pattern, which runs to the first closing brace and is never empty.
const QRegularExpression& tokenPattern() {
    static const QRegularExpression pattern = [] {
        QRegularExpression compiled(QStringLiteral(R"(\{date:([^}]+)\})"));
        if (!compiled.isValid())
            qFatal("Corkwheel: the date token pattern does not compile");
        return compiled;
    }();
    return pattern;
}

icu::UnicodeString toIcu(const QString& text) {
    return icu::UnicodeString(reinterpret_cast<const char16_t*>(text.constData()),
                              static_cast<int32_t>(text.size()));
}

QString fromIcu(const icu::UnicodeString& text) {
    return QString::fromUtf16(text.getBuffer(), text.length());
}

// ICU's zone with the IANA id of `zone`. Qt also accepts zones ICU has no rules for (a
// POSIX TZ string, say); those keep at least their offset at `date`.
std::unique_ptr<icu::TimeZone> toIcuZone(const QTimeZone& zone, const QDateTime& date) {
    if (!zone.isValid())
        return std::unique_ptr<icu::TimeZone>(icu::TimeZone::createDefault());
    const icu::UnicodeString id = icu::UnicodeString::fromUTF8(zone.id().constData());
    std::unique_ptr<icu::TimeZone> icuZone(icu::TimeZone::createTimeZone(id));
    icu::UnicodeString resolvedId;
    if (icuZone->getID(resolvedId) != icu::UnicodeString(UCAL_UNKNOWN_ZONE_ID))
        return icuZone;
    return std::make_unique<icu::SimpleTimeZone>(zone.offsetFromUtc(date) * 1000, id);
}

// A fresh formatter in the default locale for every call; without `zone` it also uses the
// default time zone. Letters that are no pattern field come out as ICU writes them.
QString formatWithIcu(const QString& pattern, const QDateTime& date,
                      std::unique_ptr<icu::TimeZone> zone) {
    UErrorCode status = U_ZERO_ERROR;
    icu::SimpleDateFormat formatter(toIcu(pattern), status);
    if (U_FAILURE(status))
        return {};
    if (zone)
        formatter.adoptTimeZone(zone.release());
    icu::UnicodeString text;
    formatter.format(static_cast<UDate>(date.toMSecsSinceEpoch()), text);
    return fromIcu(text);
}

QList<QRegularExpressionMatch> tokensIn(const QString& textTemplate) {
    QList<QRegularExpressionMatch> matches;
    QRegularExpressionMatchIterator it = tokenPattern().globalMatch(textTemplate);
    while (it.hasNext())
        matches.append(it.next());
    return matches;
}

} // namespace

QString expand(const QString& textTemplate, const QDateTime& date) {
    const QList<QRegularExpressionMatch> matches = tokensIn(textTemplate);
    if (matches.isEmpty())
        return textTemplate;
    // Match positions are UTF-16 offsets into the QString itself, so every one maps onto
    // the template. Every range comes from the template as passed in. Replacing from the last token
    // back to the first keeps each range still to be replaced in front of all changed text, so the
    // ranges stay valid in the working copy. Keep that order.
    QString expanded = textTemplate;
    for (auto match = matches.crbegin(); match != matches.crend(); ++match) {
        const QString pattern = match->captured(1);
        expanded.replace(match->capturedStart(0), match->capturedLength(0),
                         formatWithIcu(pattern, date, nullptr));
    }
    return expanded;
}

QString formatNow(const QString& format, const QTimeZone& timeZone) {
    return DateTokenFormatter::format(format, QDateTime::currentDateTime(), timeZone);
}

QString format(const QString& pattern, const QDateTime& date, const QTimeZone& timeZone) {
    return formatWithIcu(pattern, date, toIcuZone(timeZone, date));
}

} // namespace corkwheel::DateTokenFormatter
