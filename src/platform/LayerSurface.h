// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <LayerShellQt/Window>

#include <QMargins>
#include <QObject>
#include <QPointer>

class QScreen;
class QWidget;
class QWindow;

namespace corkwheel {

// The layer surface of one panel window: the bottom or top layer, anchored to the top-left
// corner of one screen's output at the given margins, pushing nothing aside, without
// keyboard. It is kept through the native window being made anew: Qt does that when a web
// view first joins the window, and the new native window would otherwise be an ordinary
// one, which a tiling compositor spreads over the whole screen.
class LayerSurface : public QObject {
public:
    // Makes `window` (not shown yet) a layer surface, owned by the window.
    explicit LayerSurface(QWidget* window);

    // The layer surface of `window`, or null.
    static LayerSurface* of(const QWidget* window);

    void setPinned(bool pinned);
    void setMargins(const QMargins& margins);
    // The screen on whose output the surface is shown, the main one until set. A surface
    // stays on the output it was made for, so a shown one is made anew on the new output,
    // as is one whose output went away.
    void setOutput(QScreen* screen);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void apply();
    void chooseOutput();

    QWidget* m_window;
    // The native window the settings were made for.
    QPointer<QWindow> m_handle;
    QPointer<LayerShellQt::Window> m_settings;
    LayerShellQt::Window::Layer m_layer = LayerShellQt::Window::LayerBottom;
    QMargins m_margins;
    QPointer<QScreen> m_output;
    // The screen on whose output the surface was last made; null once that is gone.
    QPointer<QScreen> m_shownOn;
};

} // namespace corkwheel
