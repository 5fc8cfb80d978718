// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/MenuTesting.h"
#include "support/PanelFixtures.h"
#include "support/StoreFixture.h"

#include "editor/MiniSwitch.h"
#include "editor/PanelRow.h"
#include "editor/SidebarView.h"
#include "model/PanelStore.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <functional>
#include <memory>

namespace corkwheel::test {

inline constexpr int kWidth = 240;
inline constexpr int kHeight = 480;

inline QList<Panel> threePanels() {
    return {namedPanel(PanelType::Clock, QStringLiteral("Morning clock")),
            namedPanel(PanelType::Shell, QStringLiteral("Uptime")),
            namedPanel(PanelType::File, QStringLiteral("Notes"), false)};
}

inline QString nameText(PanelRow* row) {
    return row->findChild<QLabel*>(QStringLiteral("nameLabel"))->text();
}

inline QString typeText(PanelRow* row) {
    return row->findChild<QLabel*>(QStringLiteral("typeLabel"))->text();
}

inline MiniSwitch* switchOf(PanelRow* row) {
    return row->findChild<MiniSwitch*>(QStringLiteral("enabledSwitch"));
}

// The popup menu open and on screen, or null. A menu acted on before it is on screen gets
// the offscreen platform's late activation after it closes, which takes the keyboard from
// the window that opened it.
inline QMenu* shownPopupMenu() {
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    return menu && menu->windowHandle() && menu->windowHandle()->isExposed() ? menu : nullptr;
}

// Runs `act` on the popup menu as soon as one is shown, then closes it, so that code that
// opens a menu and waits for the user's choice carries on. Gives up after a few seconds.
inline void onPopup(const std::function<void(QMenu&)>& act) {
    auto* poll = new QTimer;
    poll->setInterval(10);
    auto attempts = std::make_shared<int>(0);
    QObject::connect(poll, &QTimer::timeout, [poll, attempts, act] {
        QMenu* menu = shownPopupMenu();
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

// Chooses the item labelled `text` from the next popup menu.
inline void chooseOnPopup(const QString& text) {
    onPopup([text](QMenu& menu) {
        if (QAction* choice = actionNamed(menu, text))
            choice->trigger();
    });
}

inline QListWidget* panelListOf(const SidebarView& sidebar) {
    return sidebar.findChild<QListWidget*>(QStringLiteral("panelList"));
}

inline QPushButton* addButtonOf(const SidebarView& sidebar) {
    return sidebar.findChild<QPushButton*>(QStringLiteral("addPanelButton"));
}

// The sidebar's rows as the list shows them, top to bottom.
inline QList<PanelRow*> rowsOf(const SidebarView& sidebar) {
    QListWidget* list = panelListOf(sidebar);
    QList<PanelRow*> shown;
    for (int index = 0; index < list->count(); ++index)
        shown.append(qobject_cast<PanelRow*>(list->itemWidget(list->item(index))));
    return shown;
}

// Lets the list lay its rows out.
inline void settleRows() {
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
}

// A click where the user would make it: `window` decides which of its widgets gets it.
inline void clickOn(QWidget& window, QWidget* widget, Qt::MouseButton button = Qt::LeftButton) {
    settleRows();
    QTest::mouseClick(window.windowHandle(), button, Qt::NoModifier,
                      widget->mapTo(&window, widget->rect().center()));
}

// A sidebar on screen over a store whose document holds the given panels.
class SidebarHarness {
public:
    explicit SidebarHarness(const QList<Panel>& panels, QSize size = QSize(kWidth, kHeight))
        : fixture(panels), sidebar(*fixture.store) {
        sidebar.resize(size);
        sidebar.show();
    }

    PanelStore& store() { return *fixture.store; }

    QListWidget* list() const { return panelListOf(sidebar); }

    QPushButton* addButton() const { return addButtonOf(sidebar); }

    QList<PanelRow*> rows() const { return rowsOf(sidebar); }

    PanelRow* row(int index) const { return rows().at(index); }

    QStringList names() const {
        QStringList texts;
        for (PanelRow* row : rows())
            texts.append(nameText(row));
        return texts;
    }

    void click(QWidget* widget, Qt::MouseButton button = Qt::LeftButton) {
        clickOn(sidebar, widget, button);
    }

    void settle() { settleRows(); }

    StoreFixture fixture;
    SidebarView sidebar;
};

} // namespace corkwheel::test
