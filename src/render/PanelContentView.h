// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/StyledText.h"
#include "model/Panel.h"
#include "render/ImageBody.h"
#include "render/ShadowedLayer.h"
#include "render/StatsLayout.h"
#include "render/WebBody.h"

#include <QString>
#include <QWidget>

namespace corkwheel {

class PanelRunner;

// Draws what a panel shows, by its type and style: text, an image, a web page, or the
// system statistics with the network graph. Redraws whenever the runner publishes a
// change. Used by the desktop windows and by the editor's preview.
//
// It never handles the mouse itself: on the desktop the window lets the pointer through
// outside edit mode, and in edit mode only the host's chrome reacts to it.
class PanelContentView : public QWidget {
    Q_OBJECT

public:
    explicit PanelContentView(PanelRunner& runner, QWidget* parent = nullptr);

    void setPanel(const Panel& panel);
    const Panel& panel() const;

    // What a text-type panel shows right now, placeholder included.
    QString displayedText() const;
    // The same with the colours of a shell or file panel's output.
    StyledText displayedStyledText() const;
    // The statistics as they are laid out at the present size with the present
    // measurements.
    StatsLayout statsLayout() const;
    // The heights last measured by laying out the statistics; 0 until the first layout.
    double measuredRowHeight() const { return m_measuredRowHeight; }
    double measuredNetworkHeight() const { return m_measuredNetworkHeight; }

    // Replaces where the web view of a webpage panel comes from (the web engine plugin).
    void setWebViewFactory(WebBody::ViewFactory factory);
    // The web view, once a webpage panel has made one; null before.
    QWidget* webView() const;

    // Lets this view fade the whole window it is in, for a webpage panel: the web view's
    // page is composed by the window system apart from what this view paints, so only the
    // window's own opacity reaches it. Only a view that fills its window asks for this.
    void setFadesWindow(bool fades);
    // The opacity this view paints its panel at; 1 while the window carries the panel's.
    double paintedOpacity() const;

    // The hover help at `position`: on the summary of hidden disks, how to see them all.
    QString toolTipAt(const QPoint& position) const;

Q_SIGNALS:
    // Part of what the view shows has changed and is about to be painted again: `area`, in
    // the view's coordinates. Lets what lies over the view follow what lies beneath it.
    void changed(const QRegion& area);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

private:
    void paintContent(QPainter& painter);
    void paintBody(QPainter& painter, const QRectF& rect);
    void paintShadowedBody(QPainter& painter);
    void drawBody(QPainter& painter);
    void paintWeb(QPainter& painter, const QRectF& rect);
    void remember(const StatsLayout& layout);
    void syncWebView();
    bool windowCarriesOpacity() const;
    void redrawIfTextChanged();
    void bodyChanged();
    void redrawChangedBody();
    void redraw(const QRegion& area);
    void redrawAll();
    QRegion redrawBody(double ratio);

    PanelRunner& m_runner;
    // The text last asked to be drawn: a refresh that brings the same text in the same
    // colours costs no redraw.
    StyledText m_requestedText;
    Panel m_panel;
    double m_measuredRowHeight = 0;
    double m_measuredNetworkHeight = 0;
    // The text or statistics with their shadow, as last drawn; outdated when the runner or
    // the panel changed since.
    ShadowedLayer m_bodyLayer;
    bool m_bodyOutdated = true;
    bool m_bodyRedrawQueued = false;
    ImageBody m_imageBody;
    WebBody m_webBody;
    bool m_fadesWindow = false;
};

} // namespace corkwheel
