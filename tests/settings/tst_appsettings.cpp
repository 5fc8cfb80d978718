// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/PrivateConfigHome.h"

#include "settings/AppSettings.h"
#include "settings/DockPolicy.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

// Stands for the taskbar presence of the editor window, and counts what was asked of it.
class RecordingDockPolicy final : public DockPolicy {
public:
    bool isRegular() const override { return regular; }
    void setRegular(bool value) override {
        regular = value;
        ++changes;
    }
    void activate() override { ++activations; }

    bool regular = true;
    int changes = 0;
    int activations = 0;
};

void store(const QString& key, bool value) {
    QSettings settings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Corkwheel"),
                       QStringLiteral("Corkwheel"));
    settings.setValue(key, value);
}

QVariant stored(const QString& key) {
    QSettings settings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Corkwheel"),
                       QStringLiteral("Corkwheel"));
    settings.sync();
    return settings.value(key);
}

} // namespace

class AppSettingsTest : public QObject {
    Q_OBJECT

private:
    PrivateConfigHome m_configHome;

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_configHome.use()); }

    void init() { PrivateConfigHome::clearPreferences(); }

    void preferencesLiveInXdgConfigHome() {
        AppSettings settings;
        settings.setShowDockIcon(false);
        QVERIFY(QFile::exists(m_configHome.path() + QStringLiteral("/Corkwheel/Corkwheel.conf")));
    }

    void firstLaunchHasBothOnAndRegularPolicy() {
        AppSettings settings;
        QVERIFY(settings.showDockIcon());
        QVERIFY(settings.showMenuBarItem());
        RecordingDockPolicy policy;
        policy.regular = false;
        settings.setDockPolicy(&policy);
        settings.applyDockPolicy();
        QVERIFY(policy.regular);
        QCOMPARE(policy.activations, 1);
        // Nothing is written until the user changes something.
        QVERIFY(!stored(AppSettings::kShowDockIconKey).isValid());
    }

    void bothStoredOffStartBothOn() {
        store(AppSettings::kShowDockIconKey, false);
        store(AppSettings::kShowMenuBarItemKey, false);
        AppSettings settings;
        QVERIFY(settings.showDockIcon());
        QVERIFY(settings.showMenuBarItem());
        // Not written back.
        QCOMPARE(stored(AppSettings::kShowDockIconKey).toBool(), false);
        QCOMPARE(stored(AppSettings::kShowMenuBarItemKey).toBool(), false);
    }

    void oneStoredOffStartsAsStored() {
        store(AppSettings::kShowDockIconKey, false);
        AppSettings settings;
        QVERIFY(!settings.showDockIcon());
        QVERIFY(settings.showMenuBarItem());
    }

    void dockIconOffThenMenuItemOffBringsDockIconBack() {
        AppSettings settings;
        RecordingDockPolicy policy;
        settings.setDockPolicy(&policy);
        QSignalSpy dockChanged(&settings, &AppSettings::showDockIconChanged);
        QSignalSpy menuChanged(&settings, &AppSettings::showMenuBarItemChanged);

        settings.setShowDockIcon(false);
        QVERIFY(!policy.regular);
        QVERIFY(settings.showMenuBarItem());
        QCOMPARE(stored(AppSettings::kShowDockIconKey).toBool(), false);
        QCOMPARE(dockChanged.count(), 1);
        QCOMPARE(menuChanged.count(), 0);

        // The menu item goes as asked; the dock icon comes back so Settings stays reachable.
        settings.setShowMenuBarItem(false);
        QVERIFY(settings.showDockIcon());
        QVERIFY(!settings.showMenuBarItem());
        QCOMPARE(stored(AppSettings::kShowDockIconKey).toBool(), true);
        QCOMPARE(stored(AppSettings::kShowMenuBarItemKey).toBool(), false);
        QVERIFY(policy.regular);
        QCOMPARE(dockChanged.count(), 2);
        QCOMPARE(menuChanged.count(), 1);
    }

    void menuItemOffThenDockIconOffBringsMenuItemBack() {
        AppSettings settings;
        RecordingDockPolicy policy;
        settings.setDockPolicy(&policy);
        settings.setShowMenuBarItem(false);
        QCOMPARE(policy.changes, 0); // the menu item alone leaves the policy as it is
        settings.setShowDockIcon(false);
        QVERIFY(settings.showMenuBarItem());
        QVERIFY(!settings.showDockIcon());
        QVERIFY(!policy.regular);
        QCOMPARE(stored(AppSettings::kShowMenuBarItemKey).toBool(), true);
        QCOMPARE(stored(AppSettings::kShowDockIconKey).toBool(), false);
    }

    void settingTheSameValueDoesNothing() {
        AppSettings settings;
        RecordingDockPolicy policy;
        settings.setDockPolicy(&policy);
        QSignalSpy dockChanged(&settings, &AppSettings::showDockIconChanged);
        settings.setShowDockIcon(true);
        settings.setShowMenuBarItem(true);
        QCOMPARE(dockChanged.count(), 0);
        QCOMPARE(policy.changes, 0);
        QVERIFY(!stored(AppSettings::kShowDockIconKey).isValid());
    }

    void choicesAreRememberedAcrossLaunches() {
        {
            AppSettings settings;
            settings.setShowMenuBarItem(false);
        }
        AppSettings relaunched;
        QVERIFY(!relaunched.showMenuBarItem());
        QVERIFY(relaunched.showDockIcon());
    }
};

QTEST_GUILESS_MAIN(AppSettingsTest)
#include "tst_appsettings.moc"
