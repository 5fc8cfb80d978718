// SPDX-License-Identifier: GPL-3.0-or-later

#include "desktop/DesktopPanelWindow.h"

#include <QPainter>
#include <QPainterPath>

namespace corkwheel {

namespace {

const QColor kDarkBackdrop(24, 24, 27);

} // namespace

DesktopPanelWindow::DesktopPanelWindow(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_DeleteOnClose, false);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFocusPolicy(Qt::NoFocus);
}

void DesktopPanelWindow::setContent(QWidget* content) {
    m_content = content;
    content->setParent(this);
    content->setGeometry(rect());
}

void DesktopPanelWindow::setDarkBackdrop(bool on, qreal cornerRadius) {
    if (m_darkBackdrop == on && qFuzzyCompare(m_cornerRadius + 1, cornerRadius + 1))
        return;
    m_darkBackdrop = on;
    m_cornerRadius = cornerRadius;
    update();
}

void DesktopPanelWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (m_content)
        m_content->setGeometry(rect());
}

void DesktopPanelWindow::paintEvent(QPaintEvent*) {
    if (!m_darkBackdrop)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath outline;
    outline.addRoundedRect(QRectF(rect()), m_cornerRadius, m_cornerRadius);
    painter.fillPath(outline, kDarkBackdrop);
}

} // namespace corkwheel
