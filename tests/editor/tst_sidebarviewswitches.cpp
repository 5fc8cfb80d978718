// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/SidebarHarness.h"
#include "support/ViewTesting.h"

#include "render/Theme.h"

#include <QSignalSpy>
#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

// The switches of the sidebar's rows, which turn panels on and off.

class SidebarViewSwitchesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void switchShowsWhetherThePanelIsEnabled();
    void switchIsAccentColouredOnlyWhenOn();
    void flippingASwitchChangesOnlyIsEnabledOfThatPanel();
    void disabledRowStaysInPlaceAndSelectable();
};

void SidebarViewSwitchesTest::switchShowsWhetherThePanelIsEnabled() {
    SidebarHarness harness(threePanels());
    QVERIFY(switchOf(harness.row(0))->isChecked());
    QVERIFY(switchOf(harness.row(1))->isChecked());
    QVERIFY(!switchOf(harness.row(2))->isChecked());
    QVERIFY(switchOf(harness.row(0))->text().isEmpty());

    Panel disabled = harness.store().panels().at(0);
    disabled.isEnabled = false;
    harness.store().update(disabled);
    QVERIFY(!switchOf(harness.row(0))->isChecked());
}

void SidebarViewSwitchesTest::switchIsAccentColouredOnlyWhenOn() {
    SidebarHarness harness(threePanels());
    harness.settle();
    MiniSwitch* on = switchOf(harness.row(0));
    MiniSwitch* off = switchOf(harness.row(2));
    // The track, with the margin kept for the focus ring round it.
    constexpr int margin = MiniSwitch::kRingMargin;
    QCOMPARE(on->size(), QSize(MiniSwitch::kWidth + 2 * margin, MiniSwitch::kHeight + 2 * margin));
    const auto accent = near(Theme::accent(), 30);
    const QImage onImage = render(*on, 2.0);
    const QImage offImage = render(*off, 2.0);
    const QRectF whole(margin, margin, MiniSwitch::kWidth, MiniSwitch::kHeight);
    QVERIFY(countPixels(onImage, whole, accent) > 40);
    QCOMPARE(countPixels(offImage, whole, accent), 0);
    // Nothing in the margin while the switch does not have the keyboard.
    QCOMPARE(countPixels(onImage, QRectF(0, 0, on->width(), margin), isVisible), 0);
    // The white knob sits at the trailing end when on and at the leading end when off.
    const auto white = near(Qt::white, 10);
    const QRectF leading(margin, margin, MiniSwitch::kWidth / 2.0, MiniSwitch::kHeight);
    const QRectF trailing(margin + MiniSwitch::kWidth / 2.0, margin, MiniSwitch::kWidth / 2.0,
                          MiniSwitch::kHeight);
    QVERIFY(countPixels(onImage, trailing, white) > countPixels(onImage, leading, white));
    QVERIFY(countPixels(offImage, leading, white) > countPixels(offImage, trailing, white));
}

void SidebarViewSwitchesTest::flippingASwitchChangesOnlyIsEnabledOfThatPanel() {
    SidebarHarness harness(threePanels());
    const QList<Panel> before = harness.store().panels();
    PanelRow* row = harness.row(1);
    harness.click(switchOf(row));

    QList<Panel> expected = before;
    expected[1].isEnabled = false;
    QCOMPARE(harness.store().panels(), expected);
    QVERIFY(!switchOf(harness.row(1))->isChecked());
    QTRY_COMPARE(harness.fixture.savedPanels(), expected);

    harness.click(switchOf(harness.row(1)));
    QCOMPARE(harness.store().panels(), before);
    QVERIFY(switchOf(harness.row(1))->isChecked());
}

void SidebarViewSwitchesTest::disabledRowStaysInPlaceAndSelectable() {
    SidebarHarness harness(threePanels());
    const QUuid id = harness.store().panels().at(1).id;
    PanelRow* row = harness.row(1);
    QSignalSpy picked(&harness.sidebar, &SidebarView::selectionChanged);
    harness.click(switchOf(row));
    // Flipping the switch is not picking the row.
    QCOMPARE(picked.count(), 0);
    QCOMPARE(harness.row(1), row);
    QCOMPARE(harness.row(1)->panel().id, id);
    QCOMPARE(harness.names(), (QStringList{QStringLiteral("Morning clock"),
                                           QStringLiteral("Uptime"), QStringLiteral("Notes")}));

    harness.click(harness.row(1)->findChild<QLabel*>(QStringLiteral("typeLabel")));
    QCOMPARE(harness.sidebar.selection(), id);
    QCOMPARE(picked.count(), 1);
    QCOMPARE(picked.at(0).at(0).toUuid(), id);
    QVERIFY(!harness.store().panels().at(1).isEnabled);
}

QTEST_MAIN(SidebarViewSwitchesTest)
#include "tst_sidebarviewswitches.moc"
