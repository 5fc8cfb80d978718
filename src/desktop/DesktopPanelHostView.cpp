// SPDX-License-Identifier: GPL-3.0-or-later

#include "desktop/DesktopPanelHostView.h"

#include "desktop/PanelOutline.h"
#include "desktop/PanelResizeHandle.h"
#include "desktop/PanelSnapGuides.h"
#include "desktop/PanelTitleBar.h"
#include "desktop/TitleBarFrost.h"
#include "engine/PanelRunner.h"
#include "render/PanelContentView.h"

#include <QRegion>

#include <utility>

namespace corkwheel {

DesktopPanelHostView::DesktopPanelHostView(PanelRunner& runner, QWidget* parent)
    : QWidget(parent), m_panel(runner.panel()), m_content(new PanelContentView(runner, this)),
      m_outline(new PanelOutline(this)), m_resizeHandle(new PanelResizeHandle(this)),
      m_titleBar(new PanelTitleBar(this)), m_snapGuides(new PanelSnapGuides(this)) {
    connect(m_titleBar, &PanelTitleBar::dragged, this, &DesktopPanelHostView::moveDragged);
    connect(m_titleBar, &PanelTitleBar::dragEnded, this, &DesktopPanelHostView::moveDragEnded);
    connect(m_titleBar, &PanelTitleBar::frostMissing, this, &DesktopPanelHostView::queueFrost);
    connect(m_resizeHandle, &PanelResizeHandle::dragged, this,
            &DesktopPanelHostView::resizeDragged);
    connect(m_resizeHandle, &PanelResizeHandle::dragEnded, this,
            &DesktopPanelHostView::resizeDragEnded);
    connect(m_content, &PanelContentView::changed, this, [this](const QRegion& area) {
        if (!m_editMode || !area.intersects(m_titleBar->geometry()))
            return;
        m_changedUnderTitleBar |= area;
        queueFrost();
    });
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
    // Changes are followed only in edit mode: what the content shows when it starts is
    // frosted under the whole bar, at once.
    if (editModeStarts) {
        m_changedUnderTitleBar = QRect(QPoint(), m_titleBar->size());
        queueFrost();
    }
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

void DesktopPanelHostView::setTitleBarSeeThrough(bool seeThrough) {
    if (seeThrough == m_titleBar->seeThrough())
        return;
    m_titleBar->setSeeThrough(seeThrough);
    queueFrost();
}

void DesktopPanelHostView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layoutChildren();
}

// The title bar is frosted again whenever the content changes under it: a new second of a
// clock, a resize. Once the content is up to date, however many changes asked.
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

// Only what changed under the bar is drawn again, unless the bar has no frost of its size.
void DesktopPanelHostView::refreshFrost() {
    const QRegion changed = std::exchange(m_changedUnderTitleBar, QRegion());
    if (!m_editMode || m_titleBar->width() <= 0)
        return;
    const QSize size = m_titleBar->size();
    const QRect area = m_titleBar->hasFrost() ? TitleBarFrost::areaFor(changed.boundingRect(), size)
                                              : QRect(QPoint(), size);
    if (area.isEmpty())
        return;
    const double ratio = devicePixelRatioF();
    QImage part(area.size() * ratio, QImage::Format_ARGB32_Premultiplied);
    part.setDevicePixelRatio(ratio);
    part.fill(Qt::transparent);
    m_content->render(&part, QPoint(), QRegion(area), QWidget::DrawChildren);
    m_titleBar->frostUnder(part, area);
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
