// SPDX-License-Identifier: GPL-3.0-or-later

// The catalogues that start-up installs: Corkwheel's own for the user's language, the English
// plural forms of the texts that show a count, and Qt's for the standard texts of its widgets;
// and the binary finding them as it runs from the build tree.

#include "support/PanelFixtures.h"
#include "support/StoreFixture.h"

#include "app/AppTranslations.h"
#include "tray/MenuBarView.h"

#include <QAction>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

const QString kCatalogues = QStringLiteral(CORKWHEEL_TEST_CATALOGUE_DIR);
const QLocale kGerman(QLocale::German, QLocale::Germany);

Panel panelAt(double x) {
    return textPanel(QStringLiteral("Mine"), {x, 40, 200, 80});
}

// The tray menu's entries as the user reads them.
QStringList menuTexts(const MenuBarView& view) {
    QStringList texts;
    for (const QAction* action : view.menu()->actions()) {
        if (!action->isSeparator())
            texts << action->text();
    }
    return texts;
}

// A folder of catalogues as installed, with the pseudo-translation in it as the German one.
bool makeGermanFolder(const QTemporaryDir& folder) {
    return QFile::copy(kCatalogues + QStringLiteral("/corkwheel_en.qm"),
                       folder.filePath(QStringLiteral("corkwheel_en.qm"))) &&
           QFile::copy(QStringLiteral(CORKWHEEL_PSEUDO_CATALOGUE),
                       folder.filePath(QStringLiteral("corkwheel_de.qm")));
}

} // namespace

class AppTranslationsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void countsInEnglishAreSingularOrPlural() {
        const AppTranslations translations(QLocale::c(), kCatalogues);
        StoreFixture fixture({panelAt(40)});
        MenuBarView view(*fixture.store);
        QVERIFY(menuTexts(view).contains(QStringLiteral("1 panel")));
        fixture.store->addPanel(PanelType::Text);
        QVERIFY(menuTexts(view).contains(QStringLiteral("2 panels")));
    }

    void qtsStandardTextsFollowTheLocale() {
        const AppTranslations translations(kGerman, kCatalogues);
        QVERIFY(translations.hasQtCatalogue());
        QLineEdit field;
        const std::unique_ptr<QMenu> menu(field.createStandardContextMenu());
        QStringList texts;
        // Each entry's text, without the shortcut that follows it after a tab.
        for (const QAction* action : menu->actions())
            texts << action->text().section(u'\t', 0, 0);
        QVERIFY2(texts.contains(QStringLiteral("&Kopieren")), qPrintable(texts.join(u'|')));
        QVERIFY2(texts.contains(QStringLiteral("Einf&ügen")), qPrintable(texts.join(u'|')));
    }

    void theLanguagesCatalogueShowsCorkwheelsTexts() {
        QTemporaryDir folder;
        QVERIFY(makeGermanFolder(folder));
        const AppTranslations translations(kGerman, folder.path());
        QVERIFY(translations.hasCorkwheelCatalogue());
        StoreFixture fixture({panelAt(40)});
        MenuBarView view(*fixture.store);
        const QStringList texts = menuTexts(view);
        QVERIFY2(texts.contains(QStringLiteral("[!! Quit Corkwheel~~~~~~ !!]")),
                 qPrintable(texts.join(u'|')));
    }

    void aLanguageWithoutACatalogueKeepsTheEnglishTexts() {
        QTemporaryDir folder;
        QVERIFY(makeGermanFolder(folder));
        const AppTranslations translations(QLocale(QLocale::French, QLocale::France),
                                           folder.path());
        QVERIFY(!translations.hasCorkwheelCatalogue());
        StoreFixture fixture({panelAt(40)});
        MenuBarView view(*fixture.store);
        const QStringList texts = menuTexts(view);
        QVERIFY2(texts.contains(QStringLiteral("Quit Corkwheel")), qPrintable(texts.join(u'|')));
        QVERIFY2(texts.contains(QStringLiteral("1 panel")), qPrintable(texts.join(u'|')));
    }

    // The binary's help in German: Qt's heading from Qt's catalogue, loaded before the help is
    // written.
    void theBinarysHelpFollowsTheLocale() {
        QProcess corkwheel;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("de_DE.UTF-8"));
        environment.remove(QStringLiteral("LANGUAGE"));
        corkwheel.setProcessEnvironment(environment);
        corkwheel.start(QStringLiteral(CORKWHEEL_BINARY), {QStringLiteral("--help")});
        QVERIFY(corkwheel.waitForFinished());
        QCOMPARE(corkwheel.exitCode(), 0);
        const QString help = QString::fromUtf8(corkwheel.readAllStandardOutput());
        QVERIFY2(help.contains(QStringLiteral("Optionen:")), qPrintable(help));
        QVERIFY2(help.startsWith(QStringLiteral("Usage: corkwheel [options]")), qPrintable(help));
    }
};

QTEST_MAIN(AppTranslationsTest)
#include "tst_apptranslations.moc"
