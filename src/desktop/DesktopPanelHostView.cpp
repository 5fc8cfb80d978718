#include "desktop/DesktopPanelHostView.h"

#include "desktop/PanelOutline.h"
#include "desktop/PanelResizeHandle.h"
#include "desktop/PanelSnapGuides.h"
#include "desktop/PanelTitleBar.h"
#include "engine/PanelRunner.h"
#include "render/PanelContentView.h"

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
    setPanel(m_panel, false);
}

void DesktopPanelHostView::setPanel(const Panel& panel, bool editMode) {
    m_panel = panel;
    m_editMode = editMode;
    m_content->setPanel(panel);
    m_outline->setCornerRadius(panel.style.cornerRadius);
    m_outline->setVisible(editMode);
    m_resizeHandle->setVisible(editMode);
    m_snapGuides->setVisible(editMode);
    m_titleBar->setVisible(editMode);
    layoutChildren();
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
