// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/FocusRing.h"

#include "render/Theme.h"

#include <QEvent>
#include <QPainter>

namespace corkwheel {

FocusRing::FocusRing(QWidget* control) : QWidget(control), m_control(control) {
    setObjectName(QStringLiteral("focusRing"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setGeometry(control->rect());
    setVisible(control->hasFocus());
    control->installEventFilter(this);
}

bool FocusRing::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_control) {
        switch (event->type()) {
        case QEvent::Resize:
            setGeometry(m_control->rect());
            break;
        case QEvent::FocusIn:
            // Above every other part of the control, however many it gained since.
            raise();
            show();
            break;
        case QEvent::FocusOut:
            hide();
            break;
        default:
            break;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void FocusRing::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Theme::accent(), kWidth));
    painter.setBrush(Qt::NoBrush);
    const double inset = kWidth / 2;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kRadius,
                            kRadius);
}

} // namespace corkwheel
