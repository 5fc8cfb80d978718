// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "desktop/PanelSnapping.h"
#include "engine/RunnerServices.h"
#include "model/Panel.h"

#include <QObject>
#include <QPainterPath>
#include <QPointF>
#include <QPointer>
#include <QRectF>

#include <functional>
#include <memory>
#include <optional>

namespace corkwheel {

class DesktopPanelHostView;
class DesktopPanelWindow;
class DesktopPlatform;
class PanelRunner;
class PanelStore;

// Keeps one panel's desktop window in step with the panel: places it at the panel's frame,
// switches it between pinned to the desktop and editable, shows or hides it, and turns the
// user's move and resize drags into frames, lined up with the other panels and the screen,
// that it writes back to the store.
class DesktopPanelController : public QObject {
    Q_OBJECT

public:
    // Shows the panel at once, pinned. The runner reads the world through `services`.
    DesktopPanelController(const Panel& panel, PanelStore* store, DesktopPlatform& platform,
                           RunnerServices services = RunnerServices::shared(),
                           QObject* parent = nullptr);
    ~DesktopPanelController() override;

    // `hidden` is the effective flag: everything hidden, or this panel disabled. Returns at
    // once when nothing changed, so the store's echo of a drag costs one comparison.
    void apply(const Panel& panel, bool editMode, bool hidden);

    const Panel& panel() const { return m_panel; }
    PanelFrame lastPushedFrame() const { return m_lastPushedFrame; }
    DesktopPanelWindow* window() const { return m_window.get(); }
    DesktopPanelHostView* hostView() const { return m_hostView; }
    // Where the window is, in global coordinates, unrounded: the panel's frame, or where it
    // is shown instead while no screen holds that.
    QRectF placedFrame() const { return m_placedFrame; }

    // The frames, in global coordinates, of the other panels that a drag lines this one up
    // with; asked at every step of a drag.
    using SnapTargets = std::function<QList<QRectF>()>;
    void setSnapTargets(SnapTargets targets);
    PanelRunner& runner() const { return *m_runner; }

    // Translucent over a compositor, over a dark fill without one; again whenever a
    // compositor starts or quits, which can take its blur with it.
    void updateBackdrop();
    // Places the window at the panel's frame again, measured from where the main screen's
    // corner is now, on the screen that holds most of it; inside the main screen when no
    // screen holds any of it.
    void followScreens();

private:
    void connectDrags();
    void pushHostContent(bool editMode);
    void showBackdrop();
    bool blursTitleBar() const;
    void updateBlurShape();
    void moveDragged(QPointF translation, Qt::KeyboardModifiers modifiers);
    void resizeDragged(QPointF translation, Qt::KeyboardModifiers modifiers);
    void applySnapped(const QRectF& proposed, PanelSnapping::Drag drag,
                      Qt::KeyboardModifiers modifiers);
    QRectF screenArea(const QRectF& rect) const;
    void dragEnded();
    void applyLiveFrame(const QRectF& rect);
    void commitFrame(const PanelFrame& frame);
    void placeWindow(const QRectF& rect);
    QRectF toScreen(const PanelFrame& frame) const;
    PanelFrame toPanel(const QRectF& rect) const;

    DesktopPlatform& m_platform;
    QPointer<PanelStore> m_store;
    Panel m_panel;
    PanelFrame m_lastPushedFrame;
    // In global coordinates, unrounded: the window itself can only sit on whole pixels.
    QRectF m_placedFrame;
    // The geometry of the screen the window is shown on; empty without a screen.
    QRect m_placedScreen;
    std::optional<QRectF> m_dragStartFrame;
    SnapTargets m_snapTargets;
    std::optional<bool> m_lastEditMode;
    std::optional<bool> m_lastHidden;
    QPainterPath m_blurShape;
    // Asked when edit mode starts and when the compositor changes, not at every step of a
    // drag: it takes a round trip to the window system.
    bool m_compositorBlurs = false;
    // Declared before the window: the host view inside the window reads the runner until
    // the window is gone.
    std::unique_ptr<PanelRunner> m_runner;
    std::unique_ptr<DesktopPanelWindow> m_window;
    DesktopPanelHostView* m_hostView = nullptr;
};

} // namespace corkwheel
