// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/AppTranslations.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibraryInfo>

namespace corkwheel {

AppTranslations::AppTranslations(const QLocale& locale, const QString& folder) {
    // The application asks the translator installed last first: the language's own catalogue
    // before the English plural forms.
    if (m_qt.load(locale, QStringLiteral("qtbase"), QStringLiteral("_"),
                  QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&m_qt);
    if (m_english.load(QStringLiteral("corkwheel_en"), folder))
        QCoreApplication::installTranslator(&m_english);
    if (m_language.load(locale, QStringLiteral("corkwheel"), QStringLiteral("_"), folder))
        QCoreApplication::installTranslator(&m_language);
}

QString AppTranslations::catalogueFolder() {
    return QDir(QCoreApplication::applicationDirPath())
        .absoluteFilePath(QStringLiteral("../" CORKWHEEL_CATALOGUE_SUBDIR));
}

} // namespace corkwheel
