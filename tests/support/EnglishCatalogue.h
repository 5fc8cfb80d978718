// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Corkwheel's English catalogue, from the build tree, installed on the test's application as
// start-up installs it: it holds the English forms of the texts that show a count ("1 panel",
// "2 panels"), whose sources name both forms at once.

#include <QCoreApplication>
#include <QTranslator>

namespace corkwheel::test {

class EnglishCatalogue {
public:
    bool install() {
        return m_catalogue.load(QStringLiteral("corkwheel_en"),
                                QStringLiteral(CORKWHEEL_TEST_CATALOGUE_DIR)) &&
               QCoreApplication::installTranslator(&m_catalogue);
    }

private:
    QTranslator m_catalogue;
};

} // namespace corkwheel::test
