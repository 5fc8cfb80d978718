// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QLocale>
#include <QStringList>

namespace corkwheel {

// The font names the inspector's font picker offers: the PostScript name of every installed
// face (a bold, an italic, a condensed face each have their own), sorted. Read once per
// process, on first use; fonts installed later appear after a restart.
const QStringList& fontChoices();

// `names` sorted ascending for `locale`, ignoring case; names that compare equal keep their
// order.
QStringList sortedFontNames(QStringList names, const QLocale& locale = QLocale());

} // namespace corkwheel
