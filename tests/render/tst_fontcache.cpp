// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/FontCache.h"

#include <QTest>

using namespace corkwheel;

class FontCacheTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keepsWhatItMadeUntilTheFontsChange() {
        FontCache<QString, int> cache(8);
        int made = 0;
        const auto make = [&made] { return ++made; };
        QCOMPARE(cache.value(QStringLiteral("CPU"), make), 1);
        QCOMPARE(cache.value(QStringLiteral("CPU"), make), 1);
        QCOMPARE(made, 1);
        Q_EMIT qGuiApp->fontDatabaseChanged();
        QCOMPARE(cache.size(), 0);
        QCOMPARE(cache.value(QStringLiteral("CPU"), make), 2);
    }

    void neverHoldsMoreThanItsBound() {
        constexpr qsizetype kBound = 8;
        FontCache<int, int> cache(kBound);
        for (int key = 0; key < 3 * kBound; ++key) {
            QCOMPARE(cache.value(key, [key] { return key * 10; }), key * 10);
            QVERIFY(cache.size() <= kBound);
        }
        QVERIFY(cache.size() > 0);
    }

    // A cache that is gone must not be emptied when the fonts change: it would write into
    // freed memory, which the sanitizer build catches.
    void aCacheGoneNoLongerListensToFontChanges() {
        FontCache<int, int> kept(4);
        kept.value(1, [] { return 1; });
        { FontCache<int, int> gone(4); }
        Q_EMIT qGuiApp->fontDatabaseChanged();
        QCOMPARE(kept.size(), 0);
    }
};

QTEST_MAIN(FontCacheTest)
#include "tst_fontcache.moc"
