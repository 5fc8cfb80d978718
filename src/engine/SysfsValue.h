// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>

namespace corkwheel {

// A whole number as the kernel writes one into a sysfs attribute: an optional minus sign
// and decimal digits, with white space around them and nothing else, within 64 bits.
// Nothing for anything else: a driver that cannot answer leaves the file empty or fails
// the read, and a half-written number must not read as a smaller one.
std::optional<qint64> parseSysfsInteger(QByteArrayView text);

// A sysfs attribute that holds a word or a label ("Charging", "Package id 0"): the text
// without the white space around it, as UTF-8.
QString parseSysfsText(QByteArrayView text);

} // namespace corkwheel
