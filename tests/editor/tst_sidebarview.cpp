#include "support/PanelFixtures.h"
#include "support/ViewTesting.h"

#include "editor/ElidedLabel.h"
#include "editor/MiniSwitch.h"
#include "editor/PanelRow.h"
#include "editor/SidebarView.h"
#include "editor/SymbolBox.h"
#include "model/PanelStore.h"
#include "model/PanelType.h"
#include "render/Theme.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <functional>
#include <memory>

using namespace corkwheel;
using namespace corkwheel::test;

Q_DECLARE_METATYPE(Qt::Key)

namespace {

constexpr int kWidth = 240;
constexpr int kHeight = 480;

Panel panelOf(PanelType type, const QString& name, bool enabled = true) {
    Panel panel = Panel::makeDefault(type);
    panel.name = name;
    panel.isEnabled = enabled;
    return panel;
}

QList<Panel> threePanels() {
    return {panelOf(PanelType::Clock, QStringLiteral("Morning clock")),
            panelOf(PanelType::Shell, QStringLiteral("Uptime")),
            panelOf(PanelType::File, QStringLiteral("Notes"), false)};
}

QString nameText(PanelRow* row) {
    return row->findChild<QLabel*>(QStringLiteral("nameLabel"))->text();
}

QString typeText(PanelRow* row) {
    return row->findChild<QLabel*>(QStringLiteral("typeLabel"))->text();
}

MiniSwitch* switchOf(PanelRow* row) {
    return row->findChild<MiniSwitch*>(QStringLiteral("enabledSwitch"));
}

// Runs `act` on the popup menu as soon as one is open, then closes it, so that code that
// opens a menu and waits for the user's choice carries on. Gives up after a few seconds.
void onPopup(const std::function<void(QMenu&)>& act) {
    auto* poll = new QTimer;
    poll->setInterval(10);
    auto attempts = std::make_shared<int>(0);
    QObject::connect(poll, &QTimer::timeout, [poll, attempts, act] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu && ++*attempts < 500)
            return;
        poll->stop();
        poll->deleteLater();
        if (!menu)
            return;
        act(*menu);
        menu->close();
    });
    poll->start();
}

QAction* actionNamed(QMenu& menu, const QString& text) {
    for (QAction* action : menu.actions()) {
        if (action->text() == text)
            return action;
    }
    return nullptr;
}

// A sidebar on screen over a store whose document holds the given panels.
class Harness {
public:
    explicit Harness(const QList<Panel>& panels, QSize size = QSize(kWidth, kHeight))
        : fixture(panels), sidebar(*fixture.store) {
        sidebar.resize(size);
        sidebar.show();
    }

    PanelStore& store() { return *fixture.store; }

    QListWidget* list() const {
        return sidebar.findChild<QListWidget*>(QStringLiteral("panelList"));
    }

    QPushButton* addButton() const {
        return sidebar.findChild<QPushButton*>(QStringLiteral("addPanelButton"));
    }

    // The rows as the list shows them, top to bottom.
    QList<PanelRow*> rows() const {
        QList<PanelRow*> shown;
        for (int index = 0; index < list()->count(); ++index)
            shown.append(qobject_cast<PanelRow*>(list()->itemWidget(list()->item(index))));
        return shown;
    }

    PanelRow* row(int index) const { return rows().at(index); }

    QStringList names() const {
        QStringList texts;
        for (PanelRow* row : rows())
            texts.append(nameText(row));
        return texts;
    }

    // A click where the user would make it: the window decides which widget gets it.
    void click(QWidget* widget, Qt::MouseButton button = Qt::LeftButton) {
        settle();
        QTest::mouseClick(sidebar.windowHandle(), button, Qt::NoModifier,
                          widget->mapTo(&sidebar, widget->rect().center()));
    }

    // Lets the list lay its rows out.
    void settle() {
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    }

    StoreFixture fixture;
    SidebarView sidebar;
};

} // namespace

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
    void switchShowsWhetherThePanelIsEnabled();
    void switchIsAccentColouredOnlyWhenOn();
    void flippingASwitchChangesOnlyIsEnabledOfThatPanel();
    void disabledRowStaysInPlaceAndSelectable();
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
    void addButtonIsPinnedBelowTheListWithTenPointsOfPadding();
    void columnIsAtLeast220PointsWideAndPrefers240();
    void longNameIsCutSoTheSwitchStaysInTheRow();
};

void SidebarViewTest::emptyDocumentShowsTheHeaderNoRowsAndTheAddButton() {
    Harness harness({});
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
    Harness harness(threePanels());
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
        panels.append(panelOf(type, displayName(type)));
    Harness harness(panels);
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
    Harness harness(threePanels());
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

void SidebarViewTest::selectedRowIsDrawnInTheHighlightedTextColour() {
    Harness harness(threePanels());
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

void SidebarViewTest::typeLineShowsTheDisplayNameEvenWhenTheNameIsEmpty() {
    Harness harness({panelOf(PanelType::SystemStats, QString()),
                     panelOf(PanelType::Image, QStringLiteral("Photo"))});
    harness.settle();
    QCOMPARE(nameText(harness.row(0)), QString());
    QCOMPARE(typeText(harness.row(0)), QStringLiteral("System Stats"));
    QVERIFY(harness.row(0)->findChild<QLabel*>(QStringLiteral("typeLabel"))->isVisible());
    // The empty name still holds its line, so the rows line up.
    QCOMPARE(harness.row(0)->height(), harness.row(1)->height());
}

void SidebarViewTest::rowsFollowChangesOfTheStore() {
    Harness harness(threePanels());
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
    Harness harness(threePanels());
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
    Harness harness(threePanels());
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
    Harness harness(threePanels());
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
    Harness harness(threePanels());
    harness.sidebar.setSelection(harness.store().panels().at(0).id);
    QSignalSpy picked(&harness.sidebar, &SidebarView::selectionChanged);
    harness.sidebar.setSelection(QUuid::createUuid());
    QVERIFY(harness.sidebar.selection().isNull());
    QVERIFY(harness.list()->selectedItems().isEmpty());
    QCOMPARE(picked.count(), 0);
}

void SidebarViewTest::selectionSurvivesChangesOfOtherPanels() {
    Harness harness(threePanels());
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
    Harness harness(threePanels());
    const QUuid doomed = harness.store().panels().at(1).id;
    harness.sidebar.setSelection(doomed);
    QSignalSpy picked(&harness.sidebar, &SidebarView::selectionChanged);
    harness.store().removePanel(doomed);
    QVERIFY(harness.sidebar.selection().isNull());
    QVERIFY(harness.list()->selectedItems().isEmpty());
    QCOMPARE(picked.count(), 0);
}

void SidebarViewTest::addingWhileSomethingIsSelectedKeepsIt() {
    Harness harness(threePanels());
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
    Harness harness({});
    QSignalSpy picked(&harness.sidebar, &SidebarView::selectionChanged);
    harness.addButton()->menu()->actions().at(3)->trigger();
    QCOMPARE(harness.list()->count(), 1);
    // Selecting the new panel is the editor's decision, not the sidebar's.
    QVERIFY(harness.sidebar.selection().isNull());
    QCOMPARE(picked.count(), 0);
}

void SidebarViewTest::switchShowsWhetherThePanelIsEnabled() {
    Harness harness(threePanels());
    QVERIFY(switchOf(harness.row(0))->isChecked());
    QVERIFY(switchOf(harness.row(1))->isChecked());
    QVERIFY(!switchOf(harness.row(2))->isChecked());
    QVERIFY(switchOf(harness.row(0))->text().isEmpty());

    Panel disabled = harness.store().panels().at(0);
    disabled.isEnabled = false;
    harness.store().update(disabled);
    QVERIFY(!switchOf(harness.row(0))->isChecked());
}

void SidebarViewTest::switchIsAccentColouredOnlyWhenOn() {
    Harness harness(threePanels());
    harness.settle();
    MiniSwitch* on = switchOf(harness.row(0));
    MiniSwitch* off = switchOf(harness.row(2));
    QCOMPARE(on->size(), QSize(MiniSwitch::kWidth, MiniSwitch::kHeight));
    const auto accent = near(Theme::accent(), 30);
    const QImage onImage = render(*on, 2.0);
    const QImage offImage = render(*off, 2.0);
    const QRectF whole(0, 0, MiniSwitch::kWidth, MiniSwitch::kHeight);
    QVERIFY(countPixels(onImage, whole, accent) > 40);
    QCOMPARE(countPixels(offImage, whole, accent), 0);
    // The white knob sits at the trailing end when on and at the leading end when off.
    const auto white = near(Qt::white, 10);
    const QRectF leading(0, 0, MiniSwitch::kWidth / 2.0, MiniSwitch::kHeight);
    const QRectF trailing(MiniSwitch::kWidth / 2.0, 0, MiniSwitch::kWidth / 2.0,
                          MiniSwitch::kHeight);
    QVERIFY(countPixels(onImage, trailing, white) > countPixels(onImage, leading, white));
    QVERIFY(countPixels(offImage, leading, white) > countPixels(offImage, trailing, white));
}

void SidebarViewTest::flippingASwitchChangesOnlyIsEnabledOfThatPanel() {
    Harness harness(threePanels());
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

void SidebarViewTest::disabledRowStaysInPlaceAndSelectable() {
    Harness harness(threePanels());
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

void SidebarViewTest::contextMenuHoldsOnlyDelete() {
    Harness harness(threePanels());
    const std::unique_ptr<QMenu> menu = harness.sidebar.contextMenuFor(0);
    QCOMPARE(menu->actions().size(), 1);
    QCOMPARE(menu->actions().at(0)->text(), QStringLiteral("Delete"));
}

void SidebarViewTest::contextMenuDeleteRemovesThatRowsPanel() {
    Harness harness(threePanels());
    const QList<Panel> before = harness.store().panels();
    const std::unique_ptr<QMenu> menu = harness.sidebar.contextMenuFor(1);
    menu->actions().at(0)->trigger();
    QCOMPARE(harness.store().panels(), (QList<Panel>{before.at(0), before.at(2)}));
    QCOMPARE(harness.names(),
             (QStringList{QStringLiteral("Morning clock"), QStringLiteral("Notes")}));
}

void SidebarViewTest::rightClickDeleteRemovesThePanelUnderThePointer() {
    Harness harness(threePanels());
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

void SidebarViewTest::deletingTheSelectedRowThroughTheContextMenuLeavesNothingSelected() {
    Harness harness(threePanels());
    const QList<Panel> before = harness.store().panels();
    harness.click(harness.row(1));
    QSignalSpy picked(&harness.sidebar, &SidebarView::selectionChanged);
    onPopup([](QMenu& menu) {
        if (QAction* remove = actionNamed(menu, QStringLiteral("Delete")))
            remove->trigger();
    });
    harness.click(harness.row(1), Qt::RightButton);
    QCOMPARE(harness.store().panels(), (QList<Panel>{before.at(0), before.at(2)}));
    QVERIFY(harness.sidebar.selection().isNull());
    QVERIFY(harness.list()->selectedItems().isEmpty());
    // The editor keeps its own (now stale) selection: nothing tells it otherwise.
    QCOMPARE(picked.count(), 0);
}

void SidebarViewTest::deleteKeysRemoveTheSelectedPanel_data() {
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Delete") << Qt::Key_Delete;
    QTest::newRow("Backspace") << Qt::Key_Backspace;
}

void SidebarViewTest::deleteKeysRemoveTheSelectedPanel() {
    QFETCH(Qt::Key, key);
    Harness harness(threePanels());
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

void SidebarViewTest::deleteKeyWithNothingSelectedRemovesNothing() {
    Harness harness(threePanels());
    const QList<Panel> before = harness.store().panels();
    harness.list()->setFocus();
    QTest::keyClick(harness.list(), Qt::Key_Delete);
    QTest::keyClick(harness.list(), Qt::Key_Backspace);
    QCOMPARE(harness.store().panels(), before);
    QCOMPARE(harness.list()->count(), 3);
}

void SidebarViewTest::addMenuListsEveryTypeInDeclarationOrder() {
    Harness harness({});
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

void SidebarViewTest::choosingATypeAddsAPanelOfThatType_data() {
    QTest::addColumn<int>("index");
    for (const PanelType type : allPanelTypes())
        QTest::newRow(qPrintable(rawValue(type))) << int(allPanelTypes().indexOf(type));
}

void SidebarViewTest::choosingATypeAddsAPanelOfThatType() {
    QFETCH(int, index);
    const PanelType type = allPanelTypes().at(index);
    Harness harness(threePanels());
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

void SidebarViewTest::clickingAddPanelOpensTheMenuAndAddsTheChosenType() {
    Harness harness({});
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

void SidebarViewTest::addButtonIsPinnedBelowTheListWithTenPointsOfPadding() {
    QList<Panel> many;
    for (int index = 0; index < 30; ++index)
        many.append(panelOf(PanelType::Shell, QStringLiteral("Panel %1").arg(index)));
    Harness harness(many, QSize(kWidth, 400));
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
    Harness harness(threePanels());
    QCOMPARE(harness.sidebar.minimumWidth(), 220);
    QVERIFY(harness.sidebar.minimumSizeHint().width() <= 220);
    QCOMPARE(harness.sidebar.sizeHint().width(), 240);
    harness.sidebar.resize(100, kHeight);
    QCOMPARE(harness.sidebar.width(), 220);
}

void SidebarViewTest::longNameIsCutSoTheSwitchStaysInTheRow() {
    const QString longName = QStringLiteral("A panel whose name is much too long for the column");
    Harness harness({panelOf(PanelType::Text, longName)}, QSize(220, kHeight));
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
