// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/FontChoices.h"

#include "render/FontFaces.h"

#include <QCollator>

#include <algorithm>

namespace corkwheel {

const QStringList& fontChoices() {
    static const QStringList choices = [] {
        QStringList names;
        for (const FontFaces::Face& face : FontFaces::installed())
            names.append(face.postScriptName);
        return sortedFontNames(std::move(names));
    }();
    return choices;
}

QStringList sortedFontNames(QStringList names, const QLocale& locale) {
    QCollator collator(locale);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::stable_sort(names.begin(), names.end(), [&collator](const QString& a, const QString& b) {
        return collator.compare(a, b) < 0;
    });
    return names;
}

} // namespace corkwheel
