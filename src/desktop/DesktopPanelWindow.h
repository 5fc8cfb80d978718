// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QWidget>

namespace corkwheel {

// The top-level window of one desktop panel. It holds one content view that always fills
// it, never takes the keyboard focus, and is never freed by closing: its controller owns
// it. Without a compositor a translucent window shows whatever the server left in its
// pixels, so it can paint a dark backdrop behind the content instead.
class DesktopPanelWindow : public QWidget {
    Q_OBJECT

public:
    explicit DesktopPanelWindow(QWidget* parent = nullptr);

    void setContent(QWidget* content);
    QWidget* content() const { return m_content; }

    // A dark rounded fill behind the content, for when translucency cannot work.
    void setDarkBackdrop(bool on, qreal cornerRadius);
    bool hasDarkBackdrop() const { return m_darkBackdrop; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QWidget* m_content = nullptr;
    bool m_darkBackdrop = false;
    qreal m_cornerRadius = 0;
};

} // namespace corkwheel
