// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/DateTokenFormatter.h"

#include <QList>
#include <QRegularExpression>

#include <unicode/simpletz.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/ucal.h>

#include <memory>
#include <unordered_map>

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

// What makes one formatter differ from another: the pattern, the zone (with its offset
// at `date`, which is all a zone without ICU rules keeps) and the default locale.
QString formatterKey(const QString& pattern, const QTimeZone& zone, const QDateTime& date) {
    QString key = pattern;
    key += QChar(0);
    if (zone.isValid()) {
        key += QString::fromUtf8(zone.id());
        key += QChar(0);
        key += QString::number(zone.offsetFromUtc(date));
    }
    key += QChar(0);
    key += QString::fromLatin1(icu::Locale::getDefault().getName());
    return key;
}

// Building an ICU formatter loads its locale's names and its zone's rules: most of the
// cost of a clock tick. So formatters are kept, one per pattern, zone and locale; a
// change of the user's locale or time zone makes a new one. A formatter may not be
// shared between threads, so each thread keeps its own.
icu::SimpleDateFormat* cachedFormatter(const QString& pattern, const QTimeZone& zone,
                                       const QDateTime& date) {
    constexpr qsizetype kMaxFormatters = 32;
    thread_local std::unordered_map<QString, std::unique_ptr<icu::SimpleDateFormat>> cache;
    const QString key = formatterKey(pattern, zone, date);
    if (const auto found = cache.find(key); found != cache.end())
        return found->second.get();
    UErrorCode status = U_ZERO_ERROR;
    auto formatter = std::make_unique<icu::SimpleDateFormat>(toIcu(pattern), status);
    if (U_FAILURE(status))
        return nullptr;
    if (zone.isValid())
        formatter->adoptTimeZone(toIcuZone(zone, date).release());
    if (static_cast<qsizetype>(cache.size()) >= kMaxFormatters)
        cache.clear();
    return cache.emplace(key, std::move(formatter)).first->second.get();
}

// In the default locale; without a valid `zone`, in the default time zone. Letters that
// are no pattern field come out as ICU writes them.
QString formatWithIcu(const QString& pattern, const QDateTime& date, const QTimeZone& zone) {
    const icu::SimpleDateFormat* formatter = cachedFormatter(pattern, zone, date);
    if (!formatter)
        return {};
    icu::UnicodeString text;
    formatter->format(static_cast<UDate>(date.toMSecsSinceEpoch()), text);
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
                         formatWithIcu(pattern, date, QTimeZone()));
    }
    return expanded;
}

QString formatNow(const QString& format, const QTimeZone& timeZone) {
    return DateTokenFormatter::format(format, QDateTime::currentDateTime(), timeZone);
}

QString format(const QString& pattern, const QDateTime& date, const QTimeZone& timeZone) {
    return formatWithIcu(pattern, date, timeZone);
}

} // namespace corkwheel::DateTokenFormatter
