// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>
#include <QString>
#include <QTimeZone>

// Writes dates with Unicode (UTS #35) date-format patterns such as "HH:mm" or
// "EEEE, d MMMM yyyy", for text panels and clock panels. Every call uses the user's
// locale and time zone as they are then, so a change of either shows on the next refresh.
namespace corkwheel::DateTokenFormatter {

// `textTemplate` with every "{date:PATTERN}" token replaced by `date` written with
// PATTERN, in the user's default locale and time zone. Everything else stays as it is.
QString expand(const QString& textTemplate, const QDateTime& date);

// The current date and time written with `format` in `timeZone` (default locale).
QString formatNow(const QString& format, const QTimeZone& timeZone);

// `date` written with `pattern` in `timeZone` (default locale); formatNow with a fixed instant.
QString format(const QString& pattern, const QDateTime& date, const QTimeZone& timeZone);

} // namespace corkwheel::DateTokenFormatter
