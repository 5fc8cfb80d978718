// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/Panel.h"

#include <QLineF>
#include <QList>
#include <QPointF>
#include <QRegion>
#include <QWidget>

namespace corkwheel {

class PanelContentView;
class PanelOutline;
class PanelResizeHandle;
class PanelRunner;
class PanelSnapGuides;
class PanelTitleBar;

// The root view of a panel window: the panel's content at the panel's size and, in edit
// mode, the editing chrome: an accent outline, a title bar that moves the panel and a
// round handle in the bottom-right corner that resizes it. Drags are reported as
// translations from where the drag began, in global coordinates (x right, y down), so they
// stay right while the window moves under the pointer; Shift held during a drag asks for
// the frame as dragged, without lining it up with anything.
class DesktopPanelHostView : public QWidget {
    Q_OBJECT

public:
    explicit DesktopPanelHostView(PanelRunner& runner, QWidget* parent = nullptr);

    // Shows `panel` (its type, name and style) with or without the editing chrome.
    void setPanel(const Panel& panel, bool editMode);
    const Panel& panel() const;
    bool editMode() const;

    PanelContentView* contentView() const;

    // Lines where a drag has lined the panel up, in this view's coordinates; none clears them.
    void setSnapGuides(const QList<QLineF>& guides);
    // Whether the title bar lets the desktop show through where the panel is clear, for
    // when the compositor blurs what lies behind it.
    void setTitleBarSeeThrough(bool seeThrough);
    PanelSnapGuides* snapGuides() const { return m_snapGuides; }

    static constexpr int kTitleBarHeight = 26;

Q_SIGNALS:
    void moveDragged(QPointF translation, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void moveDragEnded();
    void resizeDragged(QPointF translation, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void resizeDragEnded();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void layoutChildren();
    void queueFrost();
    void refreshFrost();

    Panel m_panel;
    bool m_editMode = false;
    bool m_frostQueued = false;
    // What the content changed under the title bar since it was last frosted.
    QRegion m_changedUnderTitleBar;
    // In stacking order, bottom first: the chrome lies over the content, the title bar over
    // the rest of it, and the snap guides on top, so that one along the top edge shows.
    PanelContentView* m_content;
    PanelOutline* m_outline;
    PanelResizeHandle* m_resizeHandle;
    PanelTitleBar* m_titleBar;
    PanelSnapGuides* m_snapGuides;
};

} // namespace corkwheel
