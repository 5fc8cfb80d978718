// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/SidebarHarness.h"
#include "support/ViewTesting.h"

#include "editor/ElidedLabel.h"
#include "editor/SymbolBox.h"
#include "model/PanelType.h"
#include "render/Theme.h"

#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

// The sidebar's list: its rows, their selection and its layout.

Q_DECLARE_METATYPE(Qt::Key)

class SidebarViewTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void emptyDocumentShowsTheHeaderNoRowsAndTheAddButton();
    void rowsFollowTheDocumentOrderWithNameAndTypeLine();
    void rowShowsTheTypeSymbolDimmedInATwentyPointBox();
    void typeLineIsSmallerAndOnePointBelowTheName();
    void typeLineShowsTheDisplayNameEvenWhenTheNameIsEmpty();
    void selectedRowIsDrawnInTheHighlightedTextColour();
    void rowsFollowChangesOfTheStore();
    void clickingARowReportsItsId();
    void arrowKeysMoveTheSelectionAndReportIt();
    void setSelectionShowsTheRowWithoutReportingIt();
    void setSelectionOfAnUnknownIdShowsNothingSelected();
    void selectionSurvivesChangesOfOtherPanels();
    void deletedSelectedPanelLeavesNothingSelectedWithoutReporting();
    void addingWhileSomethingIsSelectedKeepsIt();
    void addingWhileNothingIsSelectedSelectsNothing();
    void addButtonIsPinnedBelowTheListWithTenPointsOfPadding();
    void columnIsAtLeast220PointsWideAndPrefers240();
    void longNameIsCutSoTheSwitchStaysInTheRow();
};

void SidebarViewTest::emptyDocumentShowsTheHeaderNoRowsAndTheAddButton() {
    SidebarHarness harness({});
    QVERIFY(harness.store().panels().isEmpty());
    auto* header = harness.sidebar.findChild<QLabel*>(QStringLiteral("panelsHeader"));
    QVERIFY(header);
    QCOMPARE(header->text(), QStringLiteral("Panels"));
    QVERIFY(header->isVisible());
    QCOMPARE(harness.list()->count(), 0);
    QVERIFY(harness.addButton()->isVisible());
    QCOMPARE(harness.addButton()->text(), QStringLiteral("Add Panel"));
    QVERIFY(!harness.addButton()->icon().isNull());
    QVERIFY(harness.sidebar.selection().isNull());
}

void SidebarViewTest::rowsFollowTheDocumentOrderWithNameAndTypeLine() {
    SidebarHarness harness(threePanels());
    const QList<PanelRow*> rows = harness.rows();
    QCOMPARE(rows.size(), 3);
    QCOMPARE(harness.names(), (QStringList{QStringLiteral("Morning clock"),
                                           QStringLiteral("Uptime"), QStringLiteral("Notes")}));
    QCOMPARE(typeText(rows.at(0)), QStringLiteral("Clock"));
    QCOMPARE(typeText(rows.at(1)), QStringLiteral("Shell Command"));
    QCOMPARE(typeText(rows.at(2)), QStringLiteral("File Content"));
    for (int index = 0; index < 3; ++index)
        QCOMPARE(rows.at(index)->panel(), harness.store().panels().at(index));
    // Top to bottom on screen, too.
    harness.settle();
    QVERIFY(rows.at(0)->y() < rows.at(1)->y());
    QVERIFY(rows.at(1)->y() < rows.at(2)->y());
}

void SidebarViewTest::rowShowsTheTypeSymbolDimmedInATwentyPointBox() {
    QList<Panel> panels;
    for (const PanelType type : allPanelTypes())
        panels.append(namedPanel(type, displayName(type)));
    SidebarHarness harness(panels);
    harness.settle();
    for (int index = 0; index < panels.size(); ++index) {
        auto* box = harness.row(index)->findChild<SymbolBox*>(QStringLiteral("symbolBox"));
        QVERIFY(box);
        QCOMPARE(box->symbolName(), symbolName(panels.at(index).type));
        QCOMPARE(box->width(), 20);
        const QImage image = render(*box, 2.0);
        const QRectF ink = inkBounds(image, isVisible);
        QVERIFY2(!ink.isEmpty(), qPrintable(box->symbolName()));
        // Dimmed: the symbol's ink is never fully opaque.
        QCOMPARE(countPixels(image, QRectF(0, 0, 20, 20),
                             [](QColor color) { return color.alpha() > 200; }),
                 0);
    }
}

void SidebarViewTest::typeLineIsSmallerAndOnePointBelowTheName() {
    SidebarHarness harness(threePanels());
    harness.settle();
    PanelRow* row = harness.row(0);
    auto* name = row->findChild<QLabel*>(QStringLiteral("nameLabel"));
    auto* type = row->findChild<QLabel*>(QStringLiteral("typeLabel"));
    QVERIFY(QFontInfo(type->font()).pixelSize() < QFontInfo(name->font()).pixelSize());
    QCOMPARE(type->y() - (name->y() + name->height()), 1);

    // Drawn over nothing, the dimmed type line never lays down fully opaque ink; the name does.
    const QImage image = render(*row, 2.0);
    const auto opaque = [](QColor color) { return color.alpha() > 200; };
    QVERIFY(countPixels(image, name->geometry(), opaque) > 0);
    QVERIFY(countPixels(image, type->geometry(), isVisible) > 0);
    QCOMPARE(countPixels(image, type->geometry(), opaque), 0);
}

void SidebarViewTest::typeLineShowsTheDisplayNameEvenWhenTheNameIsEmpty() {
    SidebarHarness harness({namedPanel(PanelType::SystemStats, QString()),
                            namedPanel(PanelType::Image, QStringLiteral("Photo"))});
    harness.settle();
    QCOMPARE(nameText(harness.row(0)), QString());
    QCOMPARE(typeText(harness.row(0)), QStringLiteral("System Stats"));
    QVERIFY(harness.row(0)->findChild<QLabel*>(QStringLiteral("typeLabel"))->isVisible());
    // The empty name still holds its line, so the rows line up.
    QCOMPARE(harness.row(0)->height(), harness.row(1)->height());
}

void SidebarViewTest::selectedRowIsDrawnInTheHighlightedTextColour() {
    SidebarHarness harness(threePanels());
    harness.settle();
    PanelRow* row = harness.row(1);
    auto* name = row->findChild<QLabel*>(QStringLiteral("nameLabel"));
    const QColor highlighted = harness.list()->palette().color(QPalette::HighlightedText);
    const QColor text = harness.list()->palette().color(QPalette::Text);
    QVERIFY(highlighted != text);
    const auto inHighlight = near(highlighted, 30);
    const auto inText = near(text, 30);
    QImage image = render(*row, 2.0);
    QCOMPARE(countPixels(image, name->geometry(), inHighlight), 0);
    QVERIFY(countPixels(image, name->geometry(), inText) > 0);

    harness.sidebar.setSelection(harness.store().panels().at(1).id);
    image = render(*row, 2.0);
    QVERIFY(countPixels(image, name->geometry(), inHighlight) > 0);
    QCOMPARE(countPixels(image, name->geometry(), inText), 0);
}

void SidebarViewTest::rowsFollowChangesOfTheStore() {
    SidebarHarness harness(threePanels());
    PanelRow* first = harness.row(0);
    Panel renamed = harness.store().panels().at(0);
    renamed.name = QStringLiteral("Evening clock");
    harness.store().update(renamed);
    QCOMPARE(harness.row(0), first);
    QCOMPARE(nameText(harness.row(0)), QStringLiteral("Evening clock"));

    Panel retyped = harness.store().panels().at(1);
    retyped.type = PanelType::Webpage;
    harness.store().update(retyped);
    QCOMPARE(typeText(harness.row(1)), QStringLiteral("Webpage"));
    QCOMPARE(harness.row(1)->findChild<SymbolBox*>()->symbolName(), QStringLiteral("safari"));

    harness.store().removePanel(harness.store().panels().at(1).id);
    QCOMPARE(harness.names(),
             (QStringList{QStringLiteral("Evening clock"), QStringLiteral("Notes")}));
    harness.store().addPanel(PanelType::Text);
    QCOMPARE(harness.names(), (QStringList{QStringLiteral("Evening clock"), QStringLiteral("Notes"),
                                           QStringLiteral("Text")}));
}

void SidebarViewTest::clickingARowReportsItsId() {
    SidebarHarness harness(threePanels());
    QSignalSpy picked(&harness.sidebar, &SidebarView::selectionChanged);
    harness.click(harness.row(1)->findChild<QLabel*>(QStringLiteral("nameLabel")));
    const QUuid id = harness.store().panels().at(1).id;
    QCOMPARE(picked.count(), 1);
    QCOMPARE(picked.at(0).at(0).toUuid(), id);
    QCOMPARE(harness.sidebar.selection(), id);
    QVERIFY(harness.row(1)->isSelected());
    QVERIFY(!harness.row(0)->isSelected());
}

void SidebarViewTest::arrowKeysMoveTheSelectionAndReportIt() {
    SidebarHarness harness(threePanels());
    harness.click(harness.row(0));
    QSignalSpy picked(&harness.sidebar, &SidebarView::selectionChanged);
    QTest::keyClick(harness.list(), Qt::Key_Down);
    QCOMPARE(harness.sidebar.selection(), harness.store().panels().at(1).id);
    QCOMPARE(picked.count(), 1);
    QCOMPARE(picked.at(0).at(0).toUuid(), harness.store().panels().at(1).id);
    QTest::keyClick(harness.list(), Qt::Key_Up);
    QCOMPARE(harness.sidebar.selection(), harness.store().panels().at(0).id);
    QCOMPARE(picked.count(), 2);
}

void SidebarViewTest::setSelectionShowsTheRowWithoutReportingIt() {
    SidebarHarness harness(threePanels());
    QSignalSpy picked(&harness.sidebar, &SidebarView::selectionChanged);
    const QUuid id = harness.store().panels().at(2).id;
    harness.sidebar.setSelection(id);
    QCOMPARE(harness.sidebar.selection(), id);
    QVERIFY(harness.list()->item(2)->isSelected());
    QVERIFY(harness.row(2)->isSelected());
    harness.sidebar.setSelection(QUuid());
    QVERIFY(harness.sidebar.selection().isNull());
    QVERIFY(harness.list()->selectedItems().isEmpty());
    QVERIFY(!harness.row(2)->isSelected());
    QCOMPARE(picked.count(), 0);
}

void SidebarViewTest::setSelectionOfAnUnknownIdShowsNothingSelected() {
    SidebarHarness harness(threePanels());
    harness.sidebar.setSelection(harness.store().panels().at(0).id);
    QSignalSpy picked(&harness.sidebar, &SidebarView::selectionChanged);
    harness.sidebar.setSelection(QUuid::createUuid());
    QVERIFY(harness.sidebar.selection().isNull());
    QVERIFY(harness.list()->selectedItems().isEmpty());
    QCOMPARE(picked.count(), 0);
}

void SidebarViewTest::selectionSurvivesChangesOfOtherPanels() {
    SidebarHarness harness(threePanels());
    const QUuid kept = harness.store().panels().at(2).id;
    harness.sidebar.setSelection(kept);
    QSignalSpy picked(&harness.sidebar, &SidebarView::selectionChanged);

    Panel renamed = harness.store().panels().at(0);
    renamed.name = QStringLiteral("Renamed");
    harness.store().update(renamed);
    QCOMPARE(harness.sidebar.selection(), kept);

    harness.store().removePanel(harness.store().panels().at(0).id);
    QCOMPARE(harness.sidebar.selection(), kept);
    QVERIFY(harness.list()->item(1)->isSelected());
    QVERIFY(harness.row(1)->isSelected());
    QCOMPARE(picked.count(), 0);
}

void SidebarViewTest::deletedSelectedPanelLeavesNothingSelectedWithoutReporting() {
    SidebarHarness harness(threePanels());
    const QUuid doomed = harness.store().panels().at(1).id;
    harness.sidebar.setSelection(doomed);
    QSignalSpy picked(&harness.sidebar, &SidebarView::selectionChanged);
    harness.store().removePanel(doomed);
    QVERIFY(harness.sidebar.selection().isNull());
    QVERIFY(harness.list()->selectedItems().isEmpty());
    QCOMPARE(picked.count(), 0);
}

void SidebarViewTest::addingWhileSomethingIsSelectedKeepsIt() {
    SidebarHarness harness(threePanels());
    const QUuid selected = harness.store().panels().at(1).id;
    harness.sidebar.setSelection(selected);
    QSignalSpy picked(&harness.sidebar, &SidebarView::selectionChanged);
    harness.addButton()->menu()->actions().at(0)->trigger();
    QCOMPARE(harness.store().panels().size(), 4);
    QCOMPARE(harness.list()->count(), 4);
    QCOMPARE(harness.sidebar.selection(), selected);
    QVERIFY(harness.row(1)->isSelected());
    QVERIFY(!harness.row(3)->isSelected());
    QCOMPARE(picked.count(), 0);
}

void SidebarViewTest::addingWhileNothingIsSelectedSelectsNothing() {
    SidebarHarness harness({});
    QSignalSpy picked(&harness.sidebar, &SidebarView::selectionChanged);
    harness.addButton()->menu()->actions().at(3)->trigger();
    QCOMPARE(harness.list()->count(), 1);
    // Selecting the new panel is the editor's decision, not the sidebar's.
    QVERIFY(harness.sidebar.selection().isNull());
    QCOMPARE(picked.count(), 0);
}

void SidebarViewTest::addButtonIsPinnedBelowTheListWithTenPointsOfPadding() {
    QList<Panel> many;
    for (int index = 0; index < 30; ++index)
        many.append(namedPanel(PanelType::Shell, QStringLiteral("Panel %1").arg(index)));
    SidebarHarness harness(many, QSize(kWidth, 400));
    harness.settle();
    QPushButton* button = harness.addButton();
    QVERIFY(!harness.list()->isAncestorOf(button));
    QVERIFY(button->isVisible());
    const QRect shown(button->mapTo(&harness.sidebar, QPoint()), button->size());
    QCOMPARE(shown.left(), 10);
    QCOMPARE(kWidth - (shown.left() + shown.width()), 10);
    QCOMPARE(400 - (shown.top() + shown.height()), 10);
    const QRect list(harness.list()->mapTo(&harness.sidebar, QPoint()), harness.list()->size());
    QCOMPARE(shown.top() - (list.top() + list.height()), 10);

    // The list scrolls under its own bounds; the button does not move.
    QVERIFY(harness.list()->verticalScrollBar()->maximum() > 0);
    harness.list()->verticalScrollBar()->setValue(harness.list()->verticalScrollBar()->maximum());
    harness.settle();
    QCOMPARE(button->mapTo(&harness.sidebar, QPoint()), shown.topLeft());
}

void SidebarViewTest::columnIsAtLeast220PointsWideAndPrefers240() {
    SidebarHarness harness(threePanels());
    QCOMPARE(harness.sidebar.minimumWidth(), 220);
    QVERIFY(harness.sidebar.minimumSizeHint().width() <= 220);
    QCOMPARE(harness.sidebar.sizeHint().width(), 240);
    harness.sidebar.resize(100, kHeight);
    QCOMPARE(harness.sidebar.width(), 220);
}

void SidebarViewTest::longNameIsCutSoTheSwitchStaysInTheRow() {
    const QString longName = QStringLiteral("A panel whose name is much too long for the column");
    SidebarHarness harness({namedPanel(PanelType::Text, longName)}, QSize(220, kHeight));
    harness.settle();
    PanelRow* row = harness.row(0);
    MiniSwitch* toggle = switchOf(row);
    const QRect viewport(QPoint(), harness.list()->viewport()->size());
    const QRect switchArea(toggle->mapTo(harness.list()->viewport(), QPoint()), toggle->size());
    QVERIFY(viewport.contains(switchArea));
    auto* name = row->findChild<ElidedLabel*>(QStringLiteral("nameLabel"));
    QCOMPARE(name->text(), longName);
    const QString shown = name->shownText();
    QVERIFY2(shown.endsWith(QChar(0x2026)), qPrintable(shown));
    QVERIFY(longName.startsWith(shown.chopped(1)));
    QVERIFY(name->x() + name->width() <= toggle->x());
}

QTEST_MAIN(SidebarViewTest)
#include "tst_sidebarview.moc"
