// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/SidebarHarness.h"
#include "support/ViewTesting.h"

#include "editor/SymbolBox.h"
#include "model/PanelType.h"

#include <QSignalSpy>
#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

// Adding panels from the sidebar and deleting them from it.

Q_DECLARE_METATYPE(Qt::Key)

class SidebarViewEditingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void contextMenuHoldsOnlyDelete();
    void contextMenuDeleteRemovesThatRowsPanel();
    void rightClickDeleteRemovesThePanelUnderThePointer();
    void deletingTheSelectedRowThroughTheContextMenuLeavesNothingSelected();
    void deleteKeysRemoveTheSelectedPanel_data();
    void deleteKeysRemoveTheSelectedPanel();
    void deleteKeyWithNothingSelectedRemovesNothing();
    void addMenuListsEveryTypeInDeclarationOrder();
    void choosingATypeAddsAPanelOfThatType_data();
    void choosingATypeAddsAPanelOfThatType();
    void clickingAddPanelOpensTheMenuAndAddsTheChosenType();
};

void SidebarViewEditingTest::contextMenuHoldsOnlyDelete() {
    SidebarHarness harness(threePanels());
    const std::unique_ptr<QMenu> menu = harness.sidebar.contextMenuFor(0);
    QCOMPARE(menu->actions().size(), 1);
    QCOMPARE(menu->actions().at(0)->text(), QStringLiteral("Delete"));
}

void SidebarViewEditingTest::contextMenuDeleteRemovesThatRowsPanel() {
    SidebarHarness harness(threePanels());
    const QList<Panel> before = harness.store().panels();
    const std::unique_ptr<QMenu> menu = harness.sidebar.contextMenuFor(1);
    menu->actions().at(0)->trigger();
    QCOMPARE(harness.store().panels(), (QList<Panel>{before.at(0), before.at(2)}));
    QCOMPARE(harness.names(),
             (QStringList{QStringLiteral("Morning clock"), QStringLiteral("Notes")}));
}

void SidebarViewEditingTest::rightClickDeleteRemovesThePanelUnderThePointer() {
    SidebarHarness harness(threePanels());
    const QList<Panel> before = harness.store().panels();
    harness.sidebar.setSelection(before.at(0).id);
    QSignalSpy picked(&harness.sidebar, &SidebarView::selectionChanged);
    bool offered = false;
    onPopup([&offered](QMenu& menu) {
        offered = menu.actions().size() == 1;
        if (QAction* remove = actionNamed(menu, QStringLiteral("Delete")))
            remove->trigger();
    });
    harness.click(harness.row(2)->findChild<QLabel*>(QStringLiteral("nameLabel")), Qt::RightButton);
    QVERIFY(offered);
    QCOMPARE(harness.store().panels(), (QList<Panel>{before.at(0), before.at(1)}));
    // The context menu is not a pick: the selection stays where it was.
    QCOMPARE(harness.sidebar.selection(), before.at(0).id);
    QCOMPARE(picked.count(), 0);
}

void SidebarViewEditingTest::deletingTheSelectedRowThroughTheContextMenuLeavesNothingSelected() {
    SidebarHarness harness(threePanels());
    const QList<Panel> before = harness.store().panels();
    harness.click(harness.row(1));
    QSignalSpy picked(&harness.sidebar, &SidebarView::selectionChanged);
    chooseOnPopup(QStringLiteral("Delete"));
    harness.click(harness.row(1), Qt::RightButton);
    QCOMPARE(harness.store().panels(), (QList<Panel>{before.at(0), before.at(2)}));
    QVERIFY(harness.sidebar.selection().isNull());
    QVERIFY(harness.list()->selectedItems().isEmpty());
    // The editor keeps its own (now stale) selection: nothing tells it otherwise.
    QCOMPARE(picked.count(), 0);
}

void SidebarViewEditingTest::deleteKeysRemoveTheSelectedPanel_data() {
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Delete") << Qt::Key_Delete;
    QTest::newRow("Backspace") << Qt::Key_Backspace;
}

void SidebarViewEditingTest::deleteKeysRemoveTheSelectedPanel() {
    QFETCH(Qt::Key, key);
    SidebarHarness harness(threePanels());
    const QList<Panel> before = harness.store().panels();
    harness.click(harness.row(1));
    QCOMPARE(harness.sidebar.selection(), before.at(1).id);
    QSignalSpy picked(&harness.sidebar, &SidebarView::selectionChanged);
    QTest::keyClick(harness.list(), key);
    QCOMPARE(harness.store().panels(), (QList<Panel>{before.at(0), before.at(2)}));
    QCOMPARE(harness.names(),
             (QStringList{QStringLiteral("Morning clock"), QStringLiteral("Notes")}));
    QVERIFY(harness.sidebar.selection().isNull());
    QCOMPARE(picked.count(), 0);
    QTRY_COMPARE(harness.fixture.savedPanels(), (QList<Panel>{before.at(0), before.at(2)}));
}

void SidebarViewEditingTest::deleteKeyWithNothingSelectedRemovesNothing() {
    SidebarHarness harness(threePanels());
    const QList<Panel> before = harness.store().panels();
    harness.list()->setFocus();
    QTest::keyClick(harness.list(), Qt::Key_Delete);
    QTest::keyClick(harness.list(), Qt::Key_Backspace);
    QCOMPARE(harness.store().panels(), before);
    QCOMPARE(harness.list()->count(), 3);
}

void SidebarViewEditingTest::addMenuListsEveryTypeInDeclarationOrder() {
    SidebarHarness harness({});
    QMenu* menu = harness.addButton()->menu();
    QVERIFY(menu);
    QStringList labels;
    for (const QAction* action : menu->actions()) {
        labels.append(action->text());
        QVERIFY2(!action->icon().isNull(), qPrintable(action->text()));
    }
    QCOMPARE(labels,
             (QStringList{QStringLiteral("Shell Command"), QStringLiteral("File Content"),
                          QStringLiteral("Text"), QStringLiteral("Clock"), QStringLiteral("Image"),
                          QStringLiteral("System Stats"), QStringLiteral("Webpage")}));
}

void SidebarViewEditingTest::choosingATypeAddsAPanelOfThatType_data() {
    QTest::addColumn<int>("index");
    for (const PanelType type : allPanelTypes())
        QTest::newRow(qPrintable(rawValue(type))) << int(allPanelTypes().indexOf(type));
}

void SidebarViewEditingTest::choosingATypeAddsAPanelOfThatType() {
    QFETCH(int, index);
    const PanelType type = allPanelTypes().at(index);
    SidebarHarness harness(threePanels());
    const QList<Panel> before = harness.store().panels();
    QAction* choice = actionNamed(*harness.addButton()->menu(), displayName(type));
    QVERIFY(choice);
    choice->trigger();

    const QList<Panel> after = harness.store().panels();
    QCOMPARE(after.size(), 4);
    QCOMPARE(after.mid(0, 3), before);
    QCOMPARE(after.at(3).type, type);
    QCOMPARE(after.at(3).name, displayName(type));
    QCOMPARE(harness.list()->count(), 4);
    QCOMPARE(nameText(harness.row(3)), displayName(type));
    QCOMPARE(typeText(harness.row(3)), displayName(type));
    QCOMPARE(harness.row(3)->findChild<SymbolBox*>()->symbolName(), symbolName(type));
}

void SidebarViewEditingTest::clickingAddPanelOpensTheMenuAndAddsTheChosenType() {
    SidebarHarness harness({});
    QStringList offered;
    onPopup([&offered](QMenu& menu) {
        for (const QAction* action : menu.actions())
            offered.append(action->text());
        if (QAction* choice = actionNamed(menu, QStringLiteral("System Stats")))
            choice->trigger();
    });
    harness.click(harness.addButton());
    // Qt 6.8 opens a push button's menu without waiting for it to close.
    QTRY_COMPARE(offered.size(), 7);
    QTRY_COMPARE(harness.store().panels().size(), 1);
    QCOMPARE(harness.store().panels().at(0).type, PanelType::SystemStats);
    QCOMPARE(harness.names(), QStringList{QStringLiteral("System Stats")});
}

QTEST_MAIN(SidebarViewEditingTest)
#include "tst_sidebarviewediting.moc"
