// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/Panel.h"

#include <QPointF>
#include <QWidget>

namespace corkwheel {

class PanelContentView;
class PanelOutline;
class PanelResizeHandle;
class PanelRunner;
class PanelTitleBar;

// The root view of a panel window: the panel's content at the panel's size and, in edit
// mode, the editing chrome: an accent outline, a title bar that moves the panel and a
// round handle in the bottom-right corner that resizes it. Drags are reported as
// translations from where the drag began, in global coordinates (x right, y down), so they
// stay right while the window moves under the pointer.
class DesktopPanelHostView : public QWidget {
    Q_OBJECT

public:
    explicit DesktopPanelHostView(PanelRunner& runner, QWidget* parent = nullptr);

    // Shows `panel` (its type, name and style) with or without the editing chrome.
    void setPanel(const Panel& panel, bool editMode);
    const Panel& panel() const;
    bool editMode() const;

    PanelContentView* contentView() const;

    static constexpr int kTitleBarHeight = 26;

Q_SIGNALS:
    void moveDragged(QPointF translation);
    void moveDragEnded();
    void resizeDragged(QPointF translation);
    void resizeDragEnded();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void layoutChildren();

    Panel m_panel;
    bool m_editMode = false;
    // In stacking order, bottom first: the chrome lies over the content, the title bar on
    // top of everything.
    PanelContentView* m_content;
    PanelOutline* m_outline;
    PanelResizeHandle* m_resizeHandle;
    PanelTitleBar* m_titleBar;
};

} // namespace corkwheel
