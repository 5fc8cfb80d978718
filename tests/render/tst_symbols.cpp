// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/ViewTesting.h"

#include "model/PanelType.h"
#include "render/Symbols.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

// Every symbol the panels, their chrome, the editor and the menu show.
const QStringList kUsedSymbols{
    QStringLiteral("terminal"),
    QStringLiteral("doc.text"),
    QStringLiteral("textformat"),
    QStringLiteral("clock"),
    QStringLiteral("photo"),
    QStringLiteral("gauge.with.dots.needle.50percent"),
    QStringLiteral("safari"),
    QStringLiteral("cpu"),
    QStringLiteral("memorychip"),
    QStringLiteral("internaldrive"),
    QStringLiteral("externaldrive"),
    QStringLiteral("wifi"),
    QStringLiteral("cable.connector"),
    QStringLiteral("network"),
    QStringLiteral("arrow.up.left.and.arrow.down.right"),
    QStringLiteral("square.grid.2x2.fill"),
    QStringLiteral("rectangle.on.rectangle"),
    QStringLiteral("gearshape"),
    QStringLiteral("hand.draw"),
    QStringLiteral("hand.draw.fill"),
    QStringLiteral("eye"),
    QStringLiteral("eye.slash"),
    QStringLiteral("eye.slash.fill"),
    QStringLiteral("plus"),
};

QImage paintSymbol(const QString& name, double ratio, const QColor& color) {
    return paintImage(QSizeF(20, 20), ratio, [&](QPainter& painter) {
        Symbols::paint(painter, QRectF(2, 2, 16, 16), name, color);
    });
}

// An icon theme `name` under `root` whose terminal icon is a filled square, unlike the
// bundled outline.
bool writeSquareTerminalTheme(const QString& root, const QString& name) {
    if (!QDir(root).mkpath(name + QStringLiteral("/scalable/apps")))
        return false;
    QFile index(root + u'/' + name + QStringLiteral("/index.theme"));
    if (!index.open(QIODevice::WriteOnly))
        return false;
    index.write("[Icon Theme]\nName=" + name.toUtf8() +
                "\nDirectories=scalable/apps\n\n"
                "[scalable/apps]\nSize=16\nMinSize=8\nMaxSize=512\nType=Scalable\n");
    QFile icon(root + u'/' + name + QStringLiteral("/scalable/apps/utilities-terminal.svg"));
    if (!icon.open(QIODevice::WriteOnly))
        return false;
    icon.write("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"16\" height=\"16\">"
               "<rect width=\"16\" height=\"16\" fill=\"#000\"/></svg>");
    return true;
}

} // namespace

class SymbolsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        // No icon theme: the bundled icons answer.
        QIcon::setThemeSearchPaths({});
        QIcon::setThemeName(QStringLiteral("corkwheel-test-none"));
    }

    void everyUsedSymbolIsKnown() {
        for (const QString& name : kUsedSymbols)
            QVERIFY2(Symbols::names().contains(name), qPrintable(name));
        for (PanelType type : allPanelTypes())
            QVERIFY(Symbols::names().contains(symbolName(type)));
    }

    void everySymbolHasABundledIcon() {
        for (const QString& name : Symbols::names()) {
            const QIcon icon = Symbols::bundledIcon(name);
            QVERIFY2(!icon.isNull(), qPrintable(name));
            QVERIFY2(!icon.pixmap(QSize(32, 32)).isNull(), qPrintable(name));
        }
    }

    void unknownNameGivesNoIcon() {
        QVERIFY(Symbols::icon(QStringLiteral("no.such.symbol")).isNull());
        const QImage image = paintSymbol(QStringLiteral("no.such.symbol"), 1, Qt::white);
        QCOMPARE(countPixels(image, QRectF(0, 0, 20, 20), isVisible), 0);
    }

    void symbolIsDrawnInTheGivenColourInsideItsBox_data() {
        QTest::addColumn<double>("ratio");
        QTest::newRow("ratio 1") << 1.0;
        QTest::newRow("ratio 2") << 2.0;
    }

    void symbolIsDrawnInTheGivenColourInsideItsBox() {
        QFETCH(double, ratio);
        const QColor orange(255, 128, 0);
        for (const QString& name : Symbols::names()) {
            const QImage image = paintSymbol(name, ratio, orange);
            QVERIFY2(countPixels(image, QRectF(2, 2, 16, 16), near(orange, 8, 100)) >
                         8 * ratio * ratio,
                     qPrintable(name));
            const int outside = countPixels(image, QRectF(0, 0, 20, 20), isVisible) -
                                countPixels(image, QRectF(2, 2, 16, 16), isVisible);
            QVERIFY2(outside == 0, qPrintable(name));
            QCOMPARE(countPixels(image, QRectF(0, 0, 20, 20),
                                 [&](QColor c) {
                                     return c.alpha() > 0 && c.rgb() != orange.rgb() &&
                                            c.alpha() == 255;
                                 }),
                     0);
        }
    }

    void symbolIsRenderedAtTheDeviceResolution() {
        const QImage tinted = Symbols::tinted(QStringLiteral("cpu"), QSizeF(16, 16), 2, Qt::white);
        QCOMPARE(tinted.size(), QSize(32, 32));
        QCOMPARE(tinted.devicePixelRatio(), 2.0);
    }

    void iconThemeComesFirst() {
        QTemporaryDir root;
        QVERIFY(writeSquareTerminalTheme(root.path(), QStringLiteral("testtheme")));
        QIcon::setThemeSearchPaths({root.path()});
        QIcon::setThemeName(QStringLiteral("testtheme"));

        QCOMPARE(Symbols::themeNames(QStringLiteral("terminal")).last(),
                 QStringLiteral("utilities-terminal"));
        const QImage themed = paintSymbol(QStringLiteral("terminal"), 1, Qt::white);
        QVERIFY(countPixels(themed, QRectF(2, 2, 16, 16), near(Qt::white, 8)) > 250);
        // Symbols the theme lacks still come from the bundle.
        const QImage bundled = paintSymbol(QStringLiteral("cpu"), 1, Qt::white);
        QVERIFY(countPixels(bundled, QRectF(2, 2, 16, 16), isVisible) > 16);
        QVERIFY(countPixels(bundled, QRectF(2, 2, 16, 16), isVisible) < 250);
    }

    void hicolorFallbackAloneGivesTheBundledSymbols() {
        // Qt names "hicolor" when the desktop names no theme; an application's terminal
        // icon there is not the user's choice of symbol.
        QTemporaryDir root;
        QVERIFY(writeSquareTerminalTheme(root.path(), QStringLiteral("hicolor")));
        QIcon::setThemeSearchPaths({root.path()});
        QIcon::setThemeName(QStringLiteral("hicolor"));

        const QImage image = paintSymbol(QStringLiteral("terminal"), 1, Qt::white);
        QVERIFY(countPixels(image, QRectF(2, 2, 16, 16), isVisible) > 16);
        QVERIFY(countPixels(image, QRectF(2, 2, 16, 16), isVisible) < 250);
    }
};

QTEST_MAIN(SymbolsTest)
#include "tst_symbols.moc"
