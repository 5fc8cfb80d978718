// SPDX-License-Identifier: GPL-3.0-or-later

#include "desktop/DesktopPanelController.h"

#include "desktop/DesktopPanelHostView.h"
#include "desktop/DesktopPanelWindow.h"
#include "desktop/PanelGeometry.h"
#include "engine/PanelRunner.h"
#include "model/PanelStore.h"
#include "platform/DesktopPlatform.h"
#include "render/PanelContentView.h"
#include "render/PanelShapes.h"

namespace corkwheel {

DesktopPanelController::DesktopPanelController(const Panel& panel, PanelStore* store,
                                               DesktopPlatform& platform, RunnerServices services,
                                               QObject* parent)
    : QObject(parent), m_platform(platform), m_store(store), m_panel(panel),
      m_lastPushedFrame(panel.frame),
      m_runner(std::make_unique<PanelRunner>(panel, std::move(services))),
      m_window(std::make_unique<DesktopPanelWindow>()) {
    m_platform.preparePanelWindow(m_window.get());
    m_hostView = new DesktopPanelHostView(*m_runner);
    m_window->setContent(m_hostView);
    m_hostView->contentView()->setFadesWindow(true);
    placeWindow(toScreen(panel.frame));
    m_hostView->setPanel(m_panel, false);
    m_runner->start();
    // Not ordered front here: the first apply() shows the window or keeps it out. A window
    // shown and at once ordered out again can still be mapped by a window manager that takes
    // the map request after the window was withdrawn (xfwm4 does), leaving a disabled panel
    // on the desktop; and elsewhere it flashes.
    pushHostContent(false);
    connectDrags();
}

DesktopPanelController::~DesktopPanelController() = default;

void DesktopPanelController::connectDrags() {
    connect(m_hostView, &DesktopPanelHostView::moveDragged, this,
            &DesktopPanelController::moveDragged);
    connect(m_hostView, &DesktopPanelHostView::resizeDragged, this,
            &DesktopPanelController::resizeDragged);
    connect(m_hostView, &DesktopPanelHostView::moveDragEnded, this,
            &DesktopPanelController::dragEnded);
    connect(m_hostView, &DesktopPanelHostView::resizeDragEnded, this,
            &DesktopPanelController::dragEnded);
}

void DesktopPanelController::apply(const Panel& panel, bool editMode, bool hidden) {
    if (panel == m_panel && m_lastEditMode == editMode && m_lastHidden == hidden)
        return;
    if (editMode && m_lastEditMode != editMode)
        m_compositorBlurs = m_platform.offersBlurBehind();
    m_panel = panel;
    m_lastEditMode = editMode;
    m_lastHidden = hidden;
    m_runner->apply(panel);
    if (!PanelGeometry::isSameFrame(panel.frame, m_lastPushedFrame)) {
        placeWindow(toScreen(panel.frame));
        m_lastPushedFrame = panel.frame;
    }
    m_platform.setPinned(m_window.get(), !editMode);
    if (hidden)
        m_platform.orderOut(m_window.get());
    else
        m_platform.orderFront(m_window.get());
    pushHostContent(editMode);
}

void DesktopPanelController::pushHostContent(bool editMode) {
    m_hostView->setPanel(m_panel, editMode);
    if (m_window->windowTitle() != m_panel.name)
        m_window->setWindowTitle(m_panel.name);
    showBackdrop();
}

void DesktopPanelController::updateBackdrop() {
    m_compositorBlurs = m_platform.offersBlurBehind();
    showBackdrop();
}

void DesktopPanelController::showBackdrop() {
    m_window->setDarkBackdrop(!m_platform.hasCompositor(), m_panel.style.cornerRadius);
    m_hostView->setTitleBarSeeThrough(blursTitleBar());
    updateBlurShape();
}

bool DesktopPanelController::blursTitleBar() const {
    return m_compositorBlurs && m_lastEditMode.value_or(false);
}

// Only the blur shape follows the size during a drag; the backdrop stays as it was. In edit
// mode the title bar is glass too, where the compositor blurs.
void DesktopPanelController::updateBlurShape() {
    const QRectF panel(QPointF(), m_placedFrame.size());
    const double radius = m_panel.style.cornerRadius;
    QPainterPath glass;
    if (m_panel.style.showGlassBackground)
        glass.addRoundedRect(panel, radius, radius);
    else if (blursTitleBar())
        glass = PanelShapes::topStrip(panel, radius, DesktopPanelHostView::kTitleBarHeight);
    if (glass == m_blurShape)
        return;
    m_blurShape = glass;
    m_platform.requestBlurBehind(m_window.get(), glass);
}

void DesktopPanelController::followScreens() {
    placeWindow(toScreen(m_panel.frame));
}

// The drag's translation is measured from where it began, so every frame is computed from
// the frame at the start of the drag; nothing accumulates.
void DesktopPanelController::moveDragged(QPointF translation, Qt::KeyboardModifiers modifiers) {
    if (!m_dragStartFrame)
        m_dragStartFrame = m_placedFrame;
    applySnapped(PanelGeometry::moved(*m_dragStartFrame, translation), PanelSnapping::Drag::Move,
                 modifiers);
}

void DesktopPanelController::resizeDragged(QPointF translation, Qt::KeyboardModifiers modifiers) {
    if (!m_dragStartFrame)
        m_dragStartFrame = m_placedFrame;
    applySnapped(PanelGeometry::resized(*m_dragStartFrame, translation),
                 PanelSnapping::Drag::Resize, modifiers);
}

void DesktopPanelController::setSnapTargets(SnapTargets targets) {
    m_snapTargets = std::move(targets);
}

void DesktopPanelController::applySnapped(const QRectF& proposed, PanelSnapping::Drag drag,
                                          Qt::KeyboardModifiers modifiers) {
    const QList<QRectF> others = m_snapTargets ? m_snapTargets() : QList<QRectF>();
    const PanelSnapping::Snapped snapped =
        PanelSnapping::snap(proposed, drag, others, screenArea(proposed), modifiers);
    applyLiveFrame(snapped.frame);
    QList<QLineF> guides;
    guides.reserve(snapped.guides.size());
    for (const QLineF& guide : snapped.guides)
        guides.append(guide.translated(-snapped.frame.topLeft()));
    m_hostView->setSnapGuides(guides);
}

// The work area of the screen the frame is on, or of the main one when it is on none.
QRectF DesktopPanelController::screenArea(const QRectF& rect) const {
    return QRectF(m_platform.workAreaAt(rect.center().toPoint()).value_or(QRect()));
}

void DesktopPanelController::dragEnded() {
    const bool moved = m_dragStartFrame.has_value();
    m_dragStartFrame.reset();
    m_hostView->setSnapGuides({});
    if (!moved) {
        // A press on the title bar that did not move the panel leaves its frame as it was,
        // also where the panel is shown elsewhere for want of its monitor.
        commitFrame(m_panel.frame);
        return;
    }
    // Placed again now that the drag is over: on the screen that holds most of it, which
    // may be another than the one the drag began on.
    placeWindow(m_placedFrame);
    commitFrame(toPanel(m_placedFrame));
}

void DesktopPanelController::applyLiveFrame(const QRectF& rect) {
    placeWindow(rect);
    const PanelFrame frame = toPanel(rect);
    m_lastPushedFrame = frame;
    m_panel.frame = frame;
    if (m_store)
        m_store->updateFrame(m_panel.id, frame);
    m_hostView->setPanel(m_panel, true);
    updateBlurShape();
}

void DesktopPanelController::commitFrame(const PanelFrame& frame) {
    m_lastPushedFrame = frame;
    m_panel.frame = frame;
    if (m_store)
        m_store->updateFrame(m_panel.id, frame);
}

// The window's own geometry is not read back: the window system reports positions late,
// and during a drag a report can arrive a step behind the frame placed since. The frame
// placed last is where the window is.
void DesktopPanelController::placeWindow(const QRectF& rect) {
    // During a drag the window stays on the screen it began on: on Wayland, putting a
    // surface on another output makes it anew, which would end the drag.
    if (m_dragStartFrame) {
        m_placedFrame = rect;
    } else {
        const QList<QRect> screens = m_platform.screens();
        m_placedFrame = PanelGeometry::shownFrame(rect, screens);
        m_placedScreen = PanelGeometry::screenHolding(m_placedFrame, screens).value_or(QRect());
    }
    const WindowPlace place = PanelGeometry::windowPlace(m_placedFrame, m_placedScreen);
    m_platform.setFrame(m_window.get(), place);
    m_hostView->setGeometry(QRect(QPoint(), place.frame.size()));
}

QRectF DesktopPanelController::toScreen(const PanelFrame& frame) const {
    return PanelGeometry::toScreen(frame, m_platform.mainScreenGeometry());
}

PanelFrame DesktopPanelController::toPanel(const QRectF& rect) const {
    return PanelGeometry::toPanel(rect, m_platform.mainScreenGeometry());
}

} // namespace corkwheel
