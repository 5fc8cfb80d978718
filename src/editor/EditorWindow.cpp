// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/EditorWindow.h"

#include "editor/AppOptionsPopover.h"
#include "editor/EditorView.h"
#include "editor/FocusRing.h"
#include "editor/ReturnClicks.h"
#include "model/PanelStore.h"
#include "render/Symbols.h"

#include <QAction>
#include <QEvent>
#include <QToolBar>
#include <QToolButton>

#include <utility>

namespace corkwheel {

namespace {

// Tool buttons fall back to their text as hover help; this one is meant to have none.
class NoToolTip : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject*, QEvent* event) override { return event->type() == QEvent::ToolTip; }
};

} // namespace

EditorWindow::EditorWindow(PanelStore& store, AppSettings& settings, RunnerServices services,
                           QWidget* parent)
    : QMainWindow(parent), m_store(store) {
    setObjectName(QStringLiteral("editorWindow"));
    setWindowTitle(tr("Corkwheel"));
    m_view = new EditorView(store, std::move(services));
    setCentralWidget(m_view);
    m_appOptionsPopover = new AppOptionsPopover(settings, this);
    addToolbar();
    resize(kDefaultSize);
}

void EditorWindow::addToolbar() {
    QToolBar* toolbar = addToolBar(tr("Toolbar"));
    toolbar->setObjectName(QStringLiteral("editorToolbar"));
    toolbar->setMovable(false);
    toolbar->setFloatable(false);
    toolbar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    toolbar->toggleViewAction()->setVisible(false);
    setContextMenuPolicy(Qt::NoContextMenu);

    m_appOptions = toolbar->addAction(Symbols::icon(QStringLiteral("gearshape")), tr("App Options"),
                                      this, &EditorWindow::toggleAppOptions);
    m_appOptions->setToolTip(tr("Dock icon and menu bar options"));

    m_editMode = toolbar->addAction(tr("Edit Mode"));
    m_editMode->setCheckable(true);
    m_editMode->setToolTip(tr("Drag and resize panels directly on the desktop"));
    connect(m_editMode, &QAction::toggled, &m_store, &PanelStore::setEditMode);
    connect(&m_store, &PanelStore::isEditModeChanged, this, &EditorWindow::showEditMode);
    showEditMode(m_store.isEditMode());

    m_hideAll = toolbar->addAction(tr("Hide All"));
    m_hideAll->setCheckable(true);
    buttonFor(m_hideAll)->installEventFilter(new NoToolTip(this));
    connect(m_hideAll, &QAction::toggled, &m_store, &PanelStore::setPanelsHidden);
    connect(&m_store, &PanelStore::panelsHiddenChanged, this, &EditorWindow::showPanelsHidden);
    showPanelsHidden(m_store.panelsHidden());

    // A toolbar keeps its buttons out of Tab's way, as a mouse-only shortcut to what the
    // window offers elsewhere; here they are the only way to these three.
    const QList<std::pair<QAction*, const char*>> buttons{{m_appOptions, "appOptionsButton"},
                                                          {m_editMode, "editModeButton"},
                                                          {m_hideAll, "hideAllButton"}};
    for (const auto& [action, name] : buttons) {
        QToolButton* button = buttonFor(action);
        button->setObjectName(QLatin1String(name));
        button->setFocusPolicy(Qt::TabFocus);
        // The style shows no focus on a toolbar's flat buttons.
        new FocusRing(button);
        ReturnClicks::install(button);
    }
}

QToolButton* EditorWindow::buttonFor(QAction* action) const {
    auto* toolbar = findChild<QToolBar*>(QStringLiteral("editorToolbar"));
    return qobject_cast<QToolButton*>(toolbar->widgetForAction(action));
}

bool EditorWindow::showingAppOptions() const {
    return m_appOptionsPopover->isVisible();
}

void EditorWindow::toggleAppOptions() {
    if (showingAppOptions())
        m_appOptionsPopover->close();
    else
        m_appOptionsPopover->popUp(buttonFor(m_appOptions));
}

void EditorWindow::showEditMode(bool on) {
    m_editMode->setChecked(on);
    m_editMode->setIcon(
        Symbols::icon(on ? QStringLiteral("hand.draw.fill") : QStringLiteral("hand.draw")));
}

void EditorWindow::showPanelsHidden(bool hidden) {
    m_hideAll->setChecked(hidden);
    m_hideAll->setIcon(
        Symbols::icon(hidden ? QStringLiteral("eye.slash.fill") : QStringLiteral("eye")));
}

} // namespace corkwheel
