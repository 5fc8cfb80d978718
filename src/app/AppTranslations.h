// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QLocale>
#include <QString>
#include <QTranslator>

namespace corkwheel {

// The catalogues that show Corkwheel's texts, and the standard texts of Qt's own widgets
// ("Copy", "Paste" in a text field's menu), in the user's language. They are installed on the
// application object, which must exist, for as long as this object lives.
class AppTranslations {
public:
    // The catalogues for `locale`: Corkwheel's from `folder`, Qt's from the folder Qt keeps
    // its translations in. A language without a catalogue keeps the English texts.
    explicit AppTranslations(const QLocale& locale = QLocale(),
                             const QString& folder = catalogueFolder());

    AppTranslations(const AppTranslations&) = delete;
    AppTranslations& operator=(const AppTranslations&) = delete;

    // Where Corkwheel's compiled catalogues are: share/corkwheel/translations beside the
    // executable's bin/, in the build tree as when installed.
    static QString catalogueFolder();

    bool hasCorkwheelCatalogue() const { return !m_language.isEmpty(); }
    bool hasQtCatalogue() const { return !m_qt.isEmpty(); }

private:
    QTranslator m_qt;
    // English is the sources' language; its catalogue holds only the plural forms ("1 panel",
    // "2 panels") of the texts that show a count, and stands in for a language that has none.
    QTranslator m_english;
    QTranslator m_language;
};

} // namespace corkwheel
