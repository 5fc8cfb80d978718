// SPDX-License-Identifier: GPL-3.0-or-later

#include "desktop/DesktopPanelHostView.h"

#include "desktop/PanelOutline.h"
#include "desktop/PanelResizeHandle.h"
#include "desktop/PanelSnapGuides.h"
#include "desktop/PanelTitleBar.h"
#include "desktop/TitleBarFrost.h"
#include "engine/PanelRunner.h"
#include "render/PanelContentView.h"

#include <QPaintEvent>

namespace corkwheel {

DesktopPanelHostView::DesktopPanelHostView(PanelRunner& runner, QWidget* parent)
    : QWidget(parent), m_panel(runner.panel()), m_content(new PanelContentView(runner, this)),
      m_outline(new PanelOutline(this)), m_resizeHandle(new PanelResizeHandle(this)),
      m_titleBar(new PanelTitleBar(this)), m_snapGuides(new PanelSnapGuides(this)) {
    connect(m_titleBar, &PanelTitleBar::dragged, this, &DesktopPanelHostView::moveDragged);
    connect(m_titleBar, &PanelTitleBar::dragEnded, this, &DesktopPanelHostView::moveDragEnded);
    connect(m_resizeHandle, &PanelResizeHandle::dragged, this,
            &DesktopPanelHostView::resizeDragged);
    connect(m_resizeHandle, &PanelResizeHandle::dragEnded, this,
            &DesktopPanelHostView::resizeDragEnded);
    m_content->installEventFilter(this);
    setPanel(m_panel, false);
}

void DesktopPanelHostView::setPanel(const Panel& panel, bool editMode) {
    const bool editModeStarts = editMode && !m_editMode;
    m_panel = panel;
    m_editMode = editMode;
    m_content->setPanel(panel);
    m_outline->setCornerRadius(panel.style.cornerRadius);
    m_outline->setVisible(editMode);
    m_resizeHandle->setVisible(editMode);
    m_snapGuides->setVisible(editMode);
    m_titleBar->setVisible(editMode);
    layoutChildren();
    // Later changes reach the bar through the content's paints; the first frost must not
    // wait for a paint that a hidden window never gets.
    if (editModeStarts)
        queueFrost();
}

const Panel& DesktopPanelHostView::panel() const {
    return m_panel;
}

bool DesktopPanelHostView::editMode() const {
    return m_editMode;
}

PanelContentView* DesktopPanelHostView::contentView() const {
    return m_content;
}

void DesktopPanelHostView::setSnapGuides(const QList<QLineF>& guides) {
    m_snapGuides->setGuides(guides);
}

void DesktopPanelHostView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layoutChildren();
}

// The title bar is frosted again whenever the content paints under it: a new second of a
// clock, a resize. Its own repaints paint the content beneath it too, but then what the
// content draws there is the same, and the frost stays as it is.
bool DesktopPanelHostView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_content && event->type() == QEvent::Paint && !m_drawingFrost &&
        static_cast<QPaintEvent*>(event)->region().intersects(m_titleBar->geometry())) {
        queueFrost();
    }
    return QWidget::eventFilter(watched, event);
}

// After the paint that asked for it, once, however many paints asked.
void DesktopPanelHostView::queueFrost() {
    if (!m_editMode || m_frostQueued)
        return;
    m_frostQueued = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_frostQueued = false;
            refreshFrost();
        },
        Qt::QueuedConnection);
}

void DesktopPanelHostView::refreshFrost() {
    if (!m_editMode || m_titleBar->width() <= 0)
        return;
    const double ratio = devicePixelRatioF();
    const QSize size = m_titleBar->size();
    QImage under(size * ratio, QImage::Format_ARGB32_Premultiplied);
    under.setDevicePixelRatio(ratio);
    under.fill(Qt::transparent);
    m_drawingFrost = true;
    m_content->render(&under, QPoint(), QRegion(QRect(QPoint(), size)), QWidget::DrawChildren);
    m_drawingFrost = false;
    if (under == m_underTitleBar && m_titleBar->hasFrost())
        return;
    m_underTitleBar = under;
    m_titleBar->setFrost(TitleBarFrost::frost(under));
}

void DesktopPanelHostView::layoutChildren() {
    const QRect bounds = rect();
    m_content->setGeometry(bounds);
    m_outline->setGeometry(bounds);
    m_snapGuides->setGeometry(bounds);
    m_resizeHandle->move(bounds.right() + 1 - PanelResizeHandle::kSize,
                         bounds.bottom() + 1 - PanelResizeHandle::kSize);
    m_titleBar->setGeometry(0, 0, bounds.width(), kTitleBarHeight);
    m_titleBar->setContent(m_panel.name, symbolName(m_panel.type), m_panel.style.cornerRadius,
                           bounds.height());
}

} // namespace corkwheel
